#include "ui/DesignFileLock.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

namespace {

QString canonicalOf(const QString &designPath)
{
    const QFileInfo info(designPath);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

} // namespace

DesignFileLock::DesignFileLock() = default;

DesignFileLock::~DesignFileLock() = default;

DesignFileLock::DesignFileLock(DesignFileLock &&other) noexcept = default;

DesignFileLock &DesignFileLock::operator=(DesignFileLock &&other) noexcept = default;

QString DesignFileLock::lockFilePath(const QString &designPath)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    const QByteArray key = QCryptographicHash::hash(canonicalOf(designPath).toUtf8(), QCryptographicHash::Sha1).toHex();
    return QDir(folder).filePath(QStringLiteral("zolvane-design-%1.lock").arg(QString::fromLatin1(key.left(20))));
}

bool DesignFileLock::lock(const QString &designPath)
{
    const QString canonical = canonicalOf(designPath);
    if (m_lock && canonical == m_designPath)
        return true;
    auto candidate = std::make_unique<QLockFile>(lockFilePath(canonical));
    // A lock is stale only when its process is gone, never by age: a design may stay
    // open for days.
    candidate->setStaleLockTime(0);
    if (!candidate->tryLock(0)) {
        QString host;
        QString application;
        m_holderProcess = 0;
        candidate->getLockInfo(&m_holderProcess, &host, &application);
        return false;
    }
    m_lock = std::move(candidate);
    m_designPath = canonical;
    m_holderProcess = 0;
    return true;
}

void DesignFileLock::unlock()
{
    m_lock.reset();
    m_designPath.clear();
}
