#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

// A library folder of hand-written files below a temporary folder.
class TemporaryLibrary
{
public:
    QString path() const { return m_dir.path(); }

    // Writes text to a file below the library, making its folders.
    QString write(const QString &relativePath, const QByteArray &text) const
    {
        const QString filePath = m_dir.filePath(relativePath);
        QDir().mkpath(QFileInfo(filePath).path());
        QFile file(filePath);
        file.open(QIODevice::WriteOnly);
        file.write(text);
        return filePath;
    }

    void makeFolder(const QString &relativePath) const { QDir().mkpath(m_dir.filePath(relativePath)); }

private:
    QTemporaryDir m_dir;
};

// Collects the log lines written while it lives.
class LogCatcher
{
public:
    LogCatcher() { m_previous = qInstallMessageHandler(&LogCatcher::handle); }
    ~LogCatcher()
    {
        qInstallMessageHandler(m_previous);
        lines().clear();
    }

    bool contains(const QString &text) const
    {
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
    static void handle(QtMsgType, const QMessageLogContext &, const QString &message) { lines().append(message); }

    QtMessageHandler m_previous = nullptr;
};
