#pragma once

#include "support/LogCatcher.h"

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

