#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QFileSystemWatcher;
class QTimer;

// Watches script files and reports their changes after a quiet time of 200 ms,
// since an editor's save touches a file several times. A file that an editor
// replaces by a rename goes on being watched.
class FileWatcher : public QObject
{
    Q_OBJECT
public:
    explicit FileWatcher(QObject *parent = nullptr);

    bool addPath(const QString &path);
    bool removePath(const QString &path);
    // Returns the paths that could not be removed.
    QStringList removePaths(const QStringList &paths);

signals:
    // Carries the absolute folder of the changed file, with native separators;
    // once for each change, also when several changes fall into one quiet time.
    void fileChanged(const QString &path);

private:
    void onFileChanged(const QString &path);
    void emitPending();
    void rewatchReplacedFiles();

    QFileSystemWatcher *m_watcher;
    QTimer *m_timer;
    QStringList m_pending;
    // What the owner asked to watch: the system forgets a file that is replaced.
    QStringList m_paths;
};
