#include "ui/ScriptPanelHost.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QLayout>

namespace {

void deleteLayout(QLayout *layout)
{
    while (QLayoutItem *item = layout->takeAt(0)) {
        if (QLayout *inner = item->layout()) {
            deleteLayout(inner);
            continue;
        }
        delete item->widget();
        delete item;
    }
    delete layout;
}

} // namespace

ScriptPanelHost::ScriptPanelHost(QWidget *parent)
    : QWidget(parent)
{
}

void ScriptPanelHost::clear()
{
    setWheelGuarded(false);
    if (QLayout *own = layout())
        deleteLayout(own);
    // Widgets that a script made without placing them go with the panel too.
    qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
}

QList<QWidget *> ScriptPanelHost::editors() const
{
    QList<QWidget *> named;
    for (QWidget *widget : findChildren<QWidget *>()) {
        const QString name = widget->objectName();
        if (!name.isEmpty() && !name.startsWith(QLatin1String("qt_")))
            named << widget;
    }
    return named;
}

void ScriptPanelHost::setWheelGuarded(bool guarded)
{
    for (QWidget *widget : findChildren<QWidget *>()) {
        if (!qobject_cast<QComboBox *>(widget) && !qobject_cast<QAbstractSpinBox *>(widget))
            continue;
        if (guarded)
            widget->installEventFilter(this);
        else
            widget->removeEventFilter(this);
    }
}

// The wheel scrolls the panel; it turns a box only once the user has put the focus there.
bool ScriptPanelHost::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel) {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && !widget->hasFocus()) {
            event->ignore();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
