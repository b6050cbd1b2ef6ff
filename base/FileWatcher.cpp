#include "base/FileWatcher.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

FileWatcher::FileWatcher(QObject *parent)
    : QObject(parent)
    , m_watcher(new QFileSystemWatcher(this))
    , m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    m_timer->setInterval(200);
    connect(m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatcher::onFileChanged);
    connect(m_timer, &QTimer::timeout, this, &FileWatcher::emitPending);
}

bool FileWatcher::addPath(const QString &path)
{
    if (!m_paths.contains(path))
        m_paths.append(path);
    return m_watcher->addPath(path);
}

bool FileWatcher::removePath(const QString &path)
{
    m_paths.removeAll(path);
    return m_watcher->removePath(path);
}

QStringList FileWatcher::removePaths(const QStringList &paths)
{
    for (const QString &path : paths)
        m_paths.removeAll(path);
    return m_watcher->removePaths(paths);
}

void FileWatcher::onFileChanged(const QString &path)
{
    m_pending.append(QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    m_timer->start();
}

void FileWatcher::emitPending()
{
    // By now the editor has finished its save, so a replaced file exists again.
    rewatchReplacedFiles();
    while (!m_pending.isEmpty())
        emit fileChanged(m_pending.takeFirst());
}

void FileWatcher::rewatchReplacedFiles()
{
    const QStringList watched = m_watcher->files();
    for (const QString &path : qAsConst(m_paths)) {
        if (!watched.contains(path) && QFileInfo::exists(path))
            m_watcher->addPath(path);
    }
}
