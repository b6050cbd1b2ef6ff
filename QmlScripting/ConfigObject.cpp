#include "QmlScripting/ConfigObject.h"

#include <QDebug>

ConfigObject::ConfigObject(QObject *parent)
    : ScriptObject(QStringLiteral("config"), parent)
{
}

bool ConfigObject::layoutReverse(int index) const
{
    if (index < 1 || index > 3)
        return false;
    // Layouts count from 0 and the first is never reversed; the script's names count from 1.
    return scriptProperty(QStringLiteral("layoutReverse%1").arg(index + 1)).toBool();
}

void ConfigObject::correctProperties()
{
    const QVariantMap script = scriptProperties();
    const QVariantMap own = properties();
    for (auto it = own.cbegin(); it != own.cend(); ++it) {
        const auto found = script.constFind(it.key());
        if (found == script.cend() || found.value() == it.value())
            continue;
        qWarning() << "value" << it.key() << "is different, scriptValue:" << found.value()
                   << "thisValue:" << it.value();
        emit variableChanged(it.key(), found.value());
    }
}
