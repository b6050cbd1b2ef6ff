#pragma once

#include <QString>

// The last-chance hook of the process: on a fatal signal it writes the crash line to
// this run's log and to the shared crash log, then ends the process without a core.
void installCrashHandler();

// The run's log file, and beside it the shared crash log, kept in a form the
// signal handler can use without allocating.
void setCrashLogFilePath(const QString &path);

// The signal handler itself.
void unhandleCrashHandler(int signalNumber);
