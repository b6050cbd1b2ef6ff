#include "base/ScriptConsole.h"

#include <QJSValue>
#include <QJSValueIterator>
#include <QStringList>

namespace {

QString joined(std::initializer_list<QString> texts)
{
    return QStringList(texts).join(QLatin1Char(' '));
}

} // namespace

ScriptConsole::ScriptConsole(ScriptConsole::Scope scope, QObject *parent)
    : QObject(parent)
    , m_scope(scope)
{
    qRegisterMetaType<ScriptConsole::Scope>();
    qRegisterMetaType<ScriptConsole::Scopes>();
    setObjectName(QStringLiteral("console"));
}

void ScriptConsole::message(ScriptConsole::Method method, const QString &text)
{
    if (isMuted())
        return;
    switch (method) {
    case Log:
        emit signalLog(m_scope, text);
        break;
    case Error:
        emit signalError(m_scope, text);
        break;
    case Warn:
        emit signalWarn(m_scope, text);
        break;
    case Info:
        emit signalInfo(m_scope, text);
        break;
    }
}

void ScriptConsole::print(const QString &text)
{
    log(text);
}

void ScriptConsole::dir(const QJSValue &value)
{
    log(QStringLiteral("call dir:"));
    dirProperties(value, 0);
}

void ScriptConsole::dirProperties(const QJSValue &value, int indent)
{
    log(value.toString());
    if (value.isError() || value.isNull() || value.isUndefined())
        return;
    const QString indentation(indent, QLatin1Char(' '));
    QJSValueIterator it(value);
    while (it.hasNext()) {
        it.next();
        const QJSValue property = it.value();
        if (property.isCallable()) {
            // Anonymous functions show under the name of the property that holds them.
            QString text = property.toString().simplified();
            text.replace(QLatin1String("function()"), QStringLiteral("function %1()").arg(it.name()));
            log(indentation + text);
        } else {
            log(indentation + it.name() + QLatin1String(": ") + property.toString().simplified());
        }
    }
    const QJSValue prototype = value.prototype();
    if (prototype.isObject())
        dirProperties(prototype, indent + 4);
}

// A script picks the overload by its number of arguments, so each count is a slot of its own.
#define SCRIPT_CONSOLE_OVERLOADS(name, method) \
    void ScriptConsole::name(const QString &t1) \
    { message(method, t1); } \
    void ScriptConsole::name(const QString &t1, const QString &t2) \
    { message(method, joined({t1, t2})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3) \
    { message(method, joined({t1, t2, t3})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4) \
    { message(method, joined({t1, t2, t3, t4})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4, \
                             const QString &t5) \
    { message(method, joined({t1, t2, t3, t4, t5})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4, \
                             const QString &t5, const QString &t6) \
    { message(method, joined({t1, t2, t3, t4, t5, t6})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4, \
                             const QString &t5, const QString &t6, const QString &t7) \
    { message(method, joined({t1, t2, t3, t4, t5, t6, t7})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4, \
                             const QString &t5, const QString &t6, const QString &t7, const QString &t8) \
    { message(method, joined({t1, t2, t3, t4, t5, t6, t7, t8})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4, \
                             const QString &t5, const QString &t6, const QString &t7, const QString &t8, \
                             const QString &t9) \
    { message(method, joined({t1, t2, t3, t4, t5, t6, t7, t8, t9})); } \
    void ScriptConsole::name(const QString &t1, const QString &t2, const QString &t3, const QString &t4, \
                             const QString &t5, const QString &t6, const QString &t7, const QString &t8, \
                             const QString &t9, const QString &t10) \
    { message(method, joined({t1, t2, t3, t4, t5, t6, t7, t8, t9, t10})); }

SCRIPT_CONSOLE_OVERLOADS(log, Log)
SCRIPT_CONSOLE_OVERLOADS(error, Error)
SCRIPT_CONSOLE_OVERLOADS(warn, Warn)
SCRIPT_CONSOLE_OVERLOADS(info, Info)

#undef SCRIPT_CONSOLE_OVERLOADS
