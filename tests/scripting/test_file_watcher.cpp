#include "base/FileWatcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstdio>

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

// How editors save: a new file is written beside the old one and renamed over it.
void replaceByRename(const QString &path, const QByteArray &content)
{
    const QString temporary = path + QStringLiteral(".new");
    writeFile(temporary, content);
    ASSERT_EQ(std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()), 0);
}

struct WatchedFile {
    WatchedFile()
        : path(dir.filePath(QStringLiteral("config.js")))
        , spy(&watcher, &FileWatcher::fileChanged)
    {
        writeFile(path, "var config = {};");
        watcher.addPath(path);
    }
    QString reportedFolder() const { return QDir::toNativeSeparators(QFileInfo(path).absolutePath()); }

    QTemporaryDir dir;
    QString path;
    FileWatcher watcher;
    QSignalSpy spy;
};

} // namespace

TEST(FileWatcherTest, ARewriteIsReportedWithTheFolderAfterTheQuietTime)
{
    WatchedFile watched;
    ASSERT_TRUE(watched.dir.isValid());

    writeFile(watched.path, "var config = { a: 1 };");

    EXPECT_FALSE(watched.spy.wait(120));
    ASSERT_TRUE(watched.spy.wait(3000));
    for (const QList<QVariant> &arguments : qAsConst(watched.spy))
        EXPECT_EQ(arguments.at(0).toString(), watched.reportedFolder());
}

TEST(FileWatcherTest, ChangesWithinTheQuietTimeAreReportedTogetherOnceEach)
{
    WatchedFile watched;

    for (int i = 0; i < 4; ++i) {
        writeFile(watched.path, QByteArray::number(i));
        ASSERT_FALSE(watched.spy.wait(50)) << "reported while changes went on";
    }

    ASSERT_TRUE(watched.spy.wait(3000));
    EXPECT_GE(watched.spy.count(), 4);
}

TEST(FileWatcherTest, AFileReplacedByRenameStaysWatched)
{
    WatchedFile watched;

    replaceByRename(watched.path, "var config = { a: 2 };");
    ASSERT_TRUE(watched.spy.wait(3000));

    watched.spy.clear();
    writeFile(watched.path, "var config = { a: 3 };");
    EXPECT_TRUE(watched.spy.wait(3000));

    watched.spy.clear();
    replaceByRename(watched.path, "var config = { a: 4 };");
    EXPECT_TRUE(watched.spy.wait(3000));
}

TEST(FileWatcherTest, RemovePathsAlsoStopsAFileThatWasWatchedAgain)
{
    WatchedFile watched;
    const QString other = watched.dir.filePath(QStringLiteral("other.js"));
    writeFile(other, "");
    watched.watcher.addPath(other);

    replaceByRename(other, "changed");
    ASSERT_TRUE(watched.spy.wait(3000));
    EXPECT_TRUE(watched.watcher.removePaths({watched.path, other}).isEmpty());

    watched.spy.clear();
    writeFile(watched.path, "changed");
    writeFile(other, "changed again");
    EXPECT_FALSE(watched.spy.wait(600));
}
