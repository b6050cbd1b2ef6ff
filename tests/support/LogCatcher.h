#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QStringList>
#include <QtGlobal>

// Collects the log lines written while it lives, from any thread.
class LogCatcher
{
public:
    LogCatcher() { m_previous = qInstallMessageHandler(&LogCatcher::handle); }
    ~LogCatcher()
    {
        qInstallMessageHandler(m_previous);
        QMutexLocker locker(&mutex());
        lines().clear();
    }

    bool contains(const QString &text) const
    {
        QMutexLocker locker(&mutex());
        for (const QString &line : lines()) {
            if (line.contains(text))
                return true;
        }
        return false;
    }

private:
    static QStringList &lines()
    {
        static QStringList collected;
        return collected;
    }
    static QMutex &mutex()
    {
        static QMutex guard;
        return guard;
    }
    static void handle(QtMsgType, const QMessageLogContext &, const QString &message)
    {
        QMutexLocker locker(&mutex());
        lines().append(message);
    }

    QtMessageHandler m_previous = nullptr;
};
