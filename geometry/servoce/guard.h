#pragma once

// For the layer's own .cpp files: turns the kernel's and the standard library's
// exceptions into logged failures, so that none leaves the layer.

#include <Standard_Failure.hxx>
#include <exception>
#include <string>

namespace servoce::detail {

// Logs the layer's own failure text as it is and keeps it as the last failure.
void report(const std::string &message);

// Logs "operation: message" and keeps the message alone as the last failure.
void report(const char *operation, const std::string &message);

// Marks a call of the public interface. The outermost one on a thread clears
// the last failure, so that a failure inside a composed operation survives it.
class operation_scope
{
public:
    operation_scope();
    ~operation_scope();
    operation_scope(const operation_scope &) = delete;
    operation_scope &operator=(const operation_scope &) = delete;
};

std::string message_of(const Standard_Failure &failure);

// Runs an operation of the public interface; any exception becomes a logged
// failure and the fallback is the result.
template <class Result, class Operation>
Result guarded(const char *name, Result fallback, Operation &&operation)
{
    const operation_scope scope;
    try {
        return operation();
    } catch (const Standard_Failure &failure) {
        report(name, message_of(failure));
    } catch (const std::exception &exception) {
        report(name, exception.what());
    } catch (...) {
        report(name, "unknown exception");
    }
    return fallback;
}

} // namespace servoce::detail
