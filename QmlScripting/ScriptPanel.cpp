#include "QmlScripting/ScriptPanel.h"

#include <QDebug>
#include <QMetaProperty>
#include <QQmlEngine>
#include <QWidget>

#include "QmlScripting/JSEngine.h"

namespace {

// Widgets whose name makes them editors of a script variable.
bool isEditorName(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_"));
}

} // namespace

ScriptPanelEditors scriptPanelEditors(JSEngine &engine, const QJSValue &create)
{
    QWidget host;
    QJSValue hostValue = engine.newQObject(&host);
    QQmlEngine::setObjectOwnership(&host, QQmlEngine::CppOwnership);
    QJSValue function = create;
    const QJSValue result = function.call({hostValue});
    if (result.isError())
        return {{}, JSEngine::errorString(result)};

    ScriptPanelEditors editors;
    for (const QWidget *widget : host.findChildren<QWidget *>()) {
        const QString name = widget->objectName();
        if (!isEditorName(name))
            continue;
        const QMetaProperty user = widget->metaObject()->userProperty();
        if (!user.isReadable() || !user.hasNotifySignal()) {
            qCritical() << "Error: Widget" << name << "has not user property";
            continue;
        }
        if (editors.names.contains(name)) {
            qCritical() << "Has duplicate editor for" << name;
            continue;
        }
        editors.names << name;
    }
    return editors;
}
