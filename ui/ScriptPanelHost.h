#pragma once

#include <QWidget>

// The widget that a script's panel function builds its editors on. It empties itself
// for the next panel, names the editors among the script's widgets and keeps the
// wheel from turning boxes that the user has not put the focus on.
class ScriptPanelHost : public QWidget
{
    Q_OBJECT
public:
    explicit ScriptPanelHost(QWidget *parent = nullptr);

    // Deletes the layout with its items, depth first, and every widget of the panel.
    void clear();
    // The widgets that edit a script variable: named, but not inner parts ("qt_").
    QList<QWidget *> editors() const;
    // The wheel guard on the panel's combo and spin boxes.
    void setWheelGuarded(bool guarded);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
