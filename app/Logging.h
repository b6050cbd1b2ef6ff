#pragma once

#include <QDateTime>
#include <mutex>
#include <QString>
#include <QtGlobal>

// The log folder under the application's data folder.
QString logsPath();

// Keeps the log folder small: files older than 7 days go, then the ones that sort
// first by name until 500 remain. Runs before this process has a log file.
void removeOldLogs();
void removeOldLogs(const QString &folder, const QDateTime &now = QDateTime::currentDateTime());

// The name of the command-line operation, which stands in the log file's name.
void setLogOperationName(const QString &operation);

// Writes every message of the process to this run's log file, one open and close
// a message, so that a crash loses nothing that was logged.
void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);

// The full path of this run's log file; empty until the first message.
QString currentLogFilePath();

// Guards the log file; the crash handler only tries it.
std::mutex &logMutex();

// Formats of the log, shared with the crash handler and the tests.
QString logFileName(const QDateTime &now, qint64 pid, const QString &operation);
QString logLevelName(QtMsgType type);
QString logFileLine(const QDateTime &now, QtMsgType type, const QMessageLogContext &context, const QString &message);
QString debuggerLine(const QTime &now, QtMsgType type, const QString &message);
