#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

#include "document/Document.h"
#include "support/EditableDocument.h"
#include "support/LogCatcher.h"

// Saves that lose nothing: a target is replaced only by a complete file, a read-only
// one is not replaced at all, and every failure says so in the log.

namespace {

// Names the save target of the child below; set only in the child.
const char *const targetVariable = "ZDS_SAVE_UNDER_KILL_TARGET";

QByteArray randomBytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator{quint32(size)};
    generator.fillRange(reinterpret_cast<quint32 *>(bytes.data()), size / 4);
    return bytes;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Simulation data that don't compress keep a save busy for a good part of a second.
const int dataSize = 8 * 1024 * 1024;

} // namespace

// Runs only as the child of the test below: saves two designs in turn until killed.
TEST(SafeSaves, DISABLED_SavesUntilKilled)
{
    const QString target = qEnvironmentVariable(targetVariable);
    if (target.isEmpty())
        GTEST_SKIP() << "the child of SafeSaves.AKilledSaveLeavesTheOldDocumentOrTheNew";
    Document doc(nullptr);
    makeEditable(doc);
    const QString data[] = {target + QStringLiteral(".a"), target + QStringLiteral(".b")};
    std::puts("saving");
    std::fflush(stdout);
    for (int turn = 0;; ++turn) {
        ASSERT_TRUE(doc.loadDataSimulationFromFile(data[turn % 2]));
        ASSERT_TRUE(doc.save(target, nullptr));
    }
}

TEST(SafeSaves, AKilledSaveLeavesTheOldDocumentOrTheNew)
{
    QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("killed-%1.zva").arg(QCoreApplication::applicationPid()));
    const QByteArray designs[] = {randomBytes(dataSize), randomBytes(dataSize + 4)};
    ASSERT_TRUE(writeFile(target + ".a", designs[0]));
    ASSERT_TRUE(writeFile(target + ".b", designs[1]));
    {
        Document first(nullptr);
        first.start();
        ASSERT_TRUE(first.loadDataSimulationFromFile(target + ".a"));
        ASSERT_TRUE(first.save(target, nullptr));
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(targetVariable, target);
    const int kills = 50;
    int replacedWhileRunning = 0;
    for (int kill = 0; kill < kills; ++kill) {
        QProcess child;
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(),
                    {"--gtest_also_run_disabled_tests", "--gtest_filter=SafeSaves.DISABLED_SavesUntilKilled"});
        ASSERT_TRUE(child.waitForStarted());
        while (!child.readAllStandardOutput().contains("saving"))
            ASSERT_TRUE(child.waitForReadyRead(30000)) << "the child starts saving";
        const QByteArray before = readFile(target);
        QThread::msleep(QRandomGenerator::global()->bounded(1000));
        child.kill(); // SIGKILL
        ASSERT_TRUE(child.waitForFinished(30000));
        ASSERT_EQ(child.exitStatus(), QProcess::CrashExit) << "the child was still saving when killed";
        if (readFile(target) != before)
            ++replacedWhileRunning;

        Document doc(nullptr);
        doc.start();
        ASSERT_TRUE(doc.load(target)) << "after kill " << kill;
        EXPECT_TRUE(doc.dataSimulation() == designs[0] || doc.dataSimulation() == designs[1]) << "after kill " << kill;
    }
    EXPECT_GT(replacedWhileRunning, 0) << "the child got through whole saves too";
}

TEST(SafeSaves, AReadOnlyTargetIsRefusedAndKept)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("kept-%1.zva").arg(QCoreApplication::applicationPid()));
    ASSERT_TRUE(writeFile(path, "the owner's file"));
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));

    Document doc(nullptr);
    makeEditable(doc);
    doc.setModified(true);
    const LogCatcher log;
    EXPECT_FALSE(doc.save(path, nullptr));
    EXPECT_FALSE(doc.exportToJson(path));
    EXPECT_FALSE(doc.saveDataSimulationToFile(path));
    EXPECT_EQ(readFile(path), QByteArray("the owner's file"));
    EXPECT_TRUE(log.contains(QStringLiteral("Error: Can't write %1: the file is read-only").arg(path)));
}

TEST(SafeSaves, AFolderThatCantBeWrittenIsNamedInTheLog)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("no-such-folder/design.zva"));
    Document doc(nullptr);
    makeEditable(doc);
    doc.setModified(true);
    const LogCatcher log;
    EXPECT_FALSE(doc.save(path, nullptr));
    EXPECT_TRUE(log.contains(QStringLiteral("Error: Can't write %1").arg(path)));
}
