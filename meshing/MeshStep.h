#pragma once

#include <CGAL/exceptions.h>
#include <QString>
#include <exception>
#include <functional>

// Reports a failed step: its text and, when the kernel failed, the kernel's report.
using MeshStepError = std::function<void(const QString &text, const CGAL::Failure_exception *failure)>;

// Runs one step of a mesh build. Whatever the step throws is reported and
// swallowed, so that the build goes on with what it has. False on a failure.
template <typename Step>
bool runMeshStep(const QString &text, const MeshStepError &onError, Step &&step)
{
    try {
        step();
        return true;
    } catch (const CGAL::Failure_exception &failure) {
        onError(text, &failure);
    } catch (const std::exception &exception) {
        onError(text + QStringLiteral(", error: %1").arg(QString::fromLocal8Bit(exception.what())), nullptr);
    } catch (...) {
        onError(text, nullptr);
    }
    return false;
}
