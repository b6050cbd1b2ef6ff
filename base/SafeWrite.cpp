#include "base/SafeWrite.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace SafeWrite {

namespace {

QString refusal(const QString &path)
{
    const QFileInfo target(path);
    if (target.isDir())
        return QStringLiteral("it is a folder");
    // A rename over the file would replace it though its owner made it read-only; the
    // bits count, not only access, which the superuser always has.
    if (target.exists() && (!target.isWritable() || !target.permission(QFileDevice::WriteOwner)))
        return QStringLiteral("the file is read-only");
    const QFileInfo folder(target.absolutePath());
    if (folder.exists() && !folder.isWritable())
        return QStringLiteral("the folder %1 can't be written").arg(QDir::toNativeSeparators(folder.filePath()));
    return QString();
}

} // namespace

bool mayWrite(const QString &path)
{
    const QString reason = refusal(path);
    return reason.isEmpty() || failed(path, reason);
}

bool failed(const QString &path, const QString &reason)
{
    qCritical().noquote() << QStringLiteral("Error: Can't write %1: %2").arg(QDir::toNativeSeparators(path), reason);
    return false;
}

Replacement::Replacement(const QString &target)
    : m_target(target)
    , m_temporary(target + QStringLiteral(".part"))
{
}

Replacement::~Replacement()
{
    if (!m_committed)
        QFile::remove(m_temporary);
}

bool Replacement::commit()
{
    QFile written(m_temporary);
    if (!written.open(QIODevice::ReadOnly))
        return failed(m_target, written.errorString());
    if (::fsync(written.handle()) != 0)
        return failed(m_target, QString::fromLocal8Bit(std::strerror(errno)));
    written.close();
    // rename replaces the target in one step: a reader sees the old file or the new one.
    if (std::rename(QFile::encodeName(m_temporary).constData(), QFile::encodeName(m_target).constData()) != 0)
        return failed(m_target, QString::fromLocal8Bit(std::strerror(errno)));
    m_committed = true;
    return true;
}

} // namespace SafeWrite
