#include "geometry/servoce/failure.h"

#include <QDebug>
#include <Standard_Type.hxx>

#include "geometry/servoce/guard.h"

namespace servoce {

namespace {

thread_local std::string lastFailure;
thread_local int operationDepth = 0;

} // namespace

std::string last_failure()
{
    return lastFailure;
}

namespace detail {

void report(const std::string &message)
{
    lastFailure = message;
    qWarning().noquote() << QString::fromStdString(message);
}

void report(const char *operation, const std::string &message)
{
    lastFailure = message;
    qWarning().noquote() << QStringLiteral("servoce::%1: %2").arg(QLatin1String(operation), QString::fromStdString(message));
}

operation_scope::operation_scope()
{
    if (operationDepth++ == 0)
        lastFailure.clear();
}

operation_scope::~operation_scope()
{
    --operationDepth;
}

std::string message_of(const Standard_Failure &failure)
{
    const char *text = failure.GetMessageString();
    if (text && *text)
        return text;
    return failure.DynamicType()->Name();
}

} // namespace detail

} // namespace servoce
