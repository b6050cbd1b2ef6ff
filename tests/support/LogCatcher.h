#pragma once

#include <mutex>
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
        const std::lock_guard locker(mutex());
        lines().clear();
    }

    bool contains(const QString &text) const
    {
        const std::lock_guard locker(mutex());
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
    static std::mutex &mutex()
    {
        static std::mutex guard;
        return guard;
    }
    static void handle(QtMsgType, const QMessageLogContext &, const QString &message)
    {
        const std::lock_guard locker(mutex());
        lines().append(message);
    }

    QtMessageHandler m_previous = nullptr;
};
