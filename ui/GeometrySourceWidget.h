#pragma once

#include <QWidget>

#include "base/Machine.h"

class QLabel;
class QMenu;
class QToolButton;
class ScriptDescribeList;

// The choice of an element's geometry script: a button with a menu of the catalogue,
// where the scripts that don't suit the machine are disabled, and buttons to open the
// scripts' folder, clear the choice and edit the script. It only proposes a script;
// its owner decides and shows what is current.
class GeometrySourceWidget : public QWidget
{
    Q_OBJECT
public:
    GeometrySourceWidget(const QString &title, const ScriptDescribeList &catalogue, QWidget *parent = nullptr);

    // The catalogue's name of the script is shown on the menu button.
    void setCurrentScript(const QString &script);
    QString currentScript() const { return m_script; }
    void setMachineType(Machine::Type type);

signals:
    // A script file name of the catalogue, or empty for none.
    void scriptChosen(const QString &script);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fillMenu();
    void entryTriggered(QAction *action);
    void showEntryMenu(QAction *action, const QPoint &position);
    void openScript(const QString &script);
    void openInSystem(const QString &path);

    const ScriptDescribeList &m_catalogue;
    QString m_script;
    Machine::Type m_machineType = Machine::UnknownType;
    QMenu *m_menu;
    QToolButton *m_buttonScript;
    QToolButton *m_buttonEdit;
};
