#include "QmlScripting/ScriptObject.h"

#include <QJSValueIterator>

#include <QDebug>
#include <QDynamicPropertyChangeEvent>
#include <QJSEngine>

ScriptObject::ScriptObject(const QString &name, QObject *parent)
    : QObject(parent)
{
    QString capitalised = name;
    if (!capitalised.isEmpty())
        capitalised[0] = capitalised.at(0).toUpper();
    setObjectName(QStringLiteral("script") + capitalised);
}

std::unique_lock<std::recursive_mutex> ScriptObject::lockScript() const
{
    return m_lock ? std::unique_lock(*m_lock) : std::unique_lock<std::recursive_mutex>();
}

void ScriptObject::setScriptObject(const QJSValue &object, QJSEngine *engine)
{
    const auto locker = lockScript();
    m_enabled = false;
    m_scriptObject = object;
    m_engine = engine;
    const QList<QByteArray> names = dynamicPropertyNames();
    for (const QByteArray &name : names)
        setProperty(name.constData(), QVariant());
    if (object.isObject()) {
        const QVariantMap variables = object.toVariant().toMap();
        for (auto it = variables.cbegin(); it != variables.cend(); ++it)
            setProperty(it.key().toLatin1().constData(), it.value());
    }
    m_enabled = true;
}

QVariantMap ScriptObject::properties() const
{
    const auto locker = lockScript();
    QVariantMap map;
    const QList<QByteArray> names = dynamicPropertyNames();
    for (const QByteArray &name : names) {
        const QString key = QString::fromLatin1(name);
        const QJSValue scriptValue = m_scriptObject.property(key);
        if (scriptValue.isUndefined())
            qCritical() << "Error: value" << key << "is undefined";
        else if (scriptValue.isNull())
            qCritical() << "Error: value" << key << "is null";
        map.insert(key, property(name.constData()));
    }
    return map;
}

void ScriptObject::setProperties(const QVariantMap &map)
{
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (!it.value().isValid()) {
            qCritical() << "Error: Value of property" << it.key() << "is not valid";
            continue;
        }
        setProperty(it.key().toLatin1().constData(), it.value());
    }
}

QVariantMap ScriptObject::scriptProperties() const
{
    const auto locker = lockScript();
    if (!m_scriptObject.isObject())
        return {};
    // Functions such as update are the script's behaviour, not its variables.
    QVariantMap values;
    QJSValueIterator it(m_scriptObject);
    while (it.hasNext()) {
        it.next();
        if (!it.value().isCallable())
            values.insert(it.name(), it.value().toVariant());
    }
    return values;
}

QVariant ScriptObject::scriptProperty(const QString &name) const
{
    const auto locker = lockScript();
    if (!m_scriptObject.isObject()) {
        qCritical("m_scriptObject is not object");
        return {};
    }
    const QVariant value = m_scriptObject.property(name).toVariant();
    if (!value.isValid())
        qCritical() << "Error: value of property" << name << "is not valid";
    return value;
}

void ScriptObject::setScriptProperty(const QString &name, const QVariant &value)
{
    // Announced outside the lock: a listener may wait for a body whose script holds it.
    if (passToScript(name, value))
        emit variableChanged(name, value);
}

bool ScriptObject::passToScript(const QString &name, const QVariant &value)
{
    const auto locker = lockScript();
    if (!m_scriptObject.isObject()) {
        qCritical("m_scriptObject is not object");
        return false;
    }
    if (!value.isValid()) {
        qCritical("%s.%s is invalid", qUtf8Printable(objectName()), qUtf8Printable(name));
        return false;
    }
    qInfo("setScriptProperty: %s.%s = %s", qUtf8Printable(objectName()), qUtf8Printable(name),
          qUtf8Printable(value.toString()));
    const QVariant old = m_scriptObject.property(name).toVariant();
    if (old != value) {
        if (!m_engine) {
            qCritical("m_engine is null");
        } else {
            qInfo() << QStringLiteral("%1.%2").arg(objectName(), name) << "changed" << old << "->" << value;
            // The value crosses as a QVariant, so the script receives its content.
            m_scriptObject.setProperty(name, m_engine->toScriptValue(value));
        }
    }
    // Also when the script already held the value: a change that began in the
    // script reaches the listeners this way.
    return true;
}

bool ScriptObject::event(QEvent *event)
{
    if (event->type() != QEvent::DynamicPropertyChange)
        return QObject::event(event);
    if (m_enabled) {
        const QByteArray name = static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName();
        const QVariant value = property(name.constData());
        if (value.isValid())
            setScriptProperty(QString::fromLatin1(name), value);
        else
            qCritical() << "Error:" << objectName() << "value of property" << QString::fromLatin1(name)
                        << "is not valid";
    }
    return true;
}
