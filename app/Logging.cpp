#include "app/Logging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>
#include <cstdio>
#include <unistd.h>

#include "app/CrashHandler.h"

namespace {

QString &operationName()
{
    static QString name;
    return name;
}

QString &logFilePathStorage()
{
    static QString path;
    return path;
}

// Stands in for the debugger channel: standard error when somebody watches it.
void outputDebugString(const QString &line)
{
    if (!isatty(STDERR_FILENO))
        return;
    const QByteArray bytes = line.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
}

const char *debuggerPrefix(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "Debug: ";
    case QtWarningMsg:
        return "Warning: ";
    case QtCriticalMsg:
        return "Critical: ";
    case QtFatalMsg:
        return "Fatal: ";
    case QtInfoMsg:
        return "Information: ";
    }
    return "";
}

} // namespace

QString logsPath()
{
    return QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
                                    + QStringLiteral("/logs"));
}

void removeOldLogs()
{
    removeOldLogs(logsPath());
}

void removeOldLogs(const QString &folder, const QDateTime &now)
{
    QStringList kept;
    const QFileInfoList files =
        QDir(folder).entryInfoList({QStringLiteral("*.log")}, QDir::Files | QDir::NoDotDot);
    for (const QFileInfo &file : files) {
        // Many Linux file systems don't report a birth time.
        const QDateTime born = file.birthTime().isValid() ? file.birthTime() : file.lastModified();
        if (born.daysTo(now) < 8)
            kept << file.absoluteFilePath();
        else
            QFile::remove(file.absoluteFilePath());
    }
    while (kept.size() > 500)
        QFile::remove(kept.takeFirst());
}

void setLogOperationName(const QString &operation)
{
    operationName() = operation;
}

std::mutex &logMutex()
{
    static std::mutex mutex;
    return mutex;
}

QString currentLogFilePath()
{
    const std::lock_guard locker(logMutex());
    return logFilePathStorage();
}

QString logFileName(const QDateTime &now, qint64 pid, const QString &operation)
{
    const QString stamp = now.toString(QStringLiteral("yyyyMMdd_hhmmsszzz"));
    if (operation.isEmpty())
        return QStringLiteral("/Zolvane_DS_%1_pid_%2.log").arg(stamp).arg(pid);
    return QStringLiteral("/Zolvane_DS_%1_%3_pid_%2.log").arg(stamp).arg(pid).arg(operation);
}

QString logLevelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("Debug");
    case QtWarningMsg:
        return QStringLiteral("Warning");
    case QtCriticalMsg:
        return QStringLiteral("Critical");
    case QtFatalMsg:
        return QStringLiteral("Fatal");
    case QtInfoMsg:
        return QStringLiteral("Information");
    }
    return {};
}

QString logFileLine(const QDateTime &now, QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    return QStringLiteral("%1 %2: %3")
               .arg(now.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss.zzz")), logLevelName(type), message)
         + QStringLiteral(" (%1:L%2, func:%3)\n")
               .arg(QFileInfo(QString::fromUtf8(context.file)).fileName())
               .arg(context.line)
               .arg(QString::fromUtf8(context.function));
}

QString debuggerLine(const QTime &now, QtMsgType type, const QString &message)
{
    return now.toString(QStringLiteral("mm:ss.zzz ")) + QLatin1String(debuggerPrefix(type)) + message
         + QLatin1Char('\n');
}

void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QString text = qFormatLogMessage(type, context, message);
    outputDebugString(debuggerLine(QTime::currentTime(), type, text));

    const std::lock_guard locker(logMutex());
    QString &path = logFilePathStorage();
    if (path.isEmpty()) {
        path = logsPath()
             + logFileName(QDateTime::currentDateTime(), QCoreApplication::applicationPid(), operationName());
        setCrashLogFilePath(path);
    }
    QFile file(path);
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return;
    QTextStream stream(&file);
    stream << logFileLine(QDateTime::currentDateTime(), type, context, text);
    stream.flush();
    file.flush();
    file.close();
}
