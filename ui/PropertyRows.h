#pragma once

#include <QHash>
#include <QObject>
#include <QVariant>
#include <functional>

class ModelValueComboBox;
class NumberEdit;
class QCheckBox;
class QGridLayout;
class QSpinBox;
class QToolButton;
class QWidget;

// Rows of a form, each bound to one property of a target object: a change by the
// user goes to the setter that the owner gives (the undo stack, as a rule), and
// update() shows the target's values with the editors' signals blocked, so that
// showing a value makes no command of it.
class PropertyRows : public QObject
{
    Q_OBJECT
public:
    using Setter = std::function<void(const QString &property, const QVariant &value)>;

    PropertyRows(QObject *target, QGridLayout *grid, Setter setter, QObject *parent);

    NumberEdit *addNumber(const QString &label, const char *property, const QString &unit, const QString &toolTip);
    QSpinBox *addCount(const QString &label, const char *property, const QString &toolTip);
    void addCombo(const QString &label, const char *property, ModelValueComboBox *box, const QString &unit,
                  const QString &toolTip);
    QCheckBox *addCheck(const QString &text, const char *property);
    // A button at the end of a property's row.
    QToolButton *addButton(const char *property, const QString &text, const QString &toolTip,
                           const std::function<void()> &clicked);
    // Sets a property through the setter, as an edit of its row does.
    void set(const char *property, const QVariant &value) const { m_setter(QLatin1String(property), value); }

    // The label, editor, unit and buttons of a property's row.
    QList<QWidget *> row(const char *property) const { return m_rows.value(QLatin1String(property)); }
    void setRowEnabled(const char *property, bool enabled) const;
    void setRowVisible(const char *property, bool visible) const;

    void update();

private:
    void addRow(const QString &label, const char *property, QWidget *editor, const QString &unit,
               const QString &toolTip);

    QObject *m_target;
    QGridLayout *m_grid;
    Setter m_setter;
    QHash<QString, QList<QWidget *>> m_rows;
    QHash<QString, QWidget *> m_editors;
};
