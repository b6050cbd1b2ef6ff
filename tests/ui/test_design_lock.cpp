#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>
#include <memory>

#include "document/Document.h"
#include "support/LogCatcher.h"
#include "ui/DesignFileLock.h"
#include "ui/DocumentWindow.h"
#include "ui/FileDialog.h"
#include "ui/MessageBox.h"

// A design open for editing in one window, of this program or of another instance, opens
// view only in a second; nothing saves over a design that is open elsewhere.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

class DesignLockTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QSettings().clear();
        design = folder.filePath(QStringLiteral("design.zva"));
        ASSERT_TRUE(QFile::copy(example, design));
        QFile::setPermissions(design, QFile::permissions(design) | QFileDevice::WriteUser);
    }

    std::unique_ptr<DocumentWindow> open(const QString &path) const
    {
        auto window = std::make_unique<DocumentWindow>(Document::GeometryMotor);
        EXPECT_TRUE(window->load(path, Document::UnknownMode));
        return window;
    }

    QTemporaryDir folder;
    QString design;
};

} // namespace

TEST_F(DesignLockTest, OneLockPerDesignHoweverItsPathIsSpelled)
{
    DesignFileLock first;
    ASSERT_TRUE(first.lock(design));
    EXPECT_TRUE(first.lock(design)) << "a holder may ask again";

    const QString link = folder.filePath(QStringLiteral("link.zva"));
    ASSERT_TRUE(QFile::link(design, link));
    DesignFileLock second;
    EXPECT_FALSE(second.lock(link));
    EXPECT_FALSE(second.lock(folder.path() + QStringLiteral("/./design.zva")));
    EXPECT_EQ(second.holderProcess(), QCoreApplication::applicationPid());

    DesignFileLock other;
    EXPECT_TRUE(other.lock(folder.filePath(QStringLiteral("another.zva"))));

    first.unlock();
    EXPECT_TRUE(second.lock(link));
    EXPECT_EQ(second.designPath(), QFileInfo(design).canonicalFilePath());
}

TEST_F(DesignLockTest, ASecondWindowOpensTheDesignViewOnlyUntilTheFirstCloses)
{
    LogCatcher log;
    auto first = open(design);
    EXPECT_FALSE(first->document()->isReadonly());
    auto second = open(design);
    EXPECT_TRUE(second->document()->isReadonly());
    EXPECT_TRUE(log.contains(QStringLiteral("is open for editing in another window of the program")));

    first.reset();
    second.reset();
    auto third = open(design);
    EXPECT_FALSE(third->document()->isReadonly());
}

TEST_F(DesignLockTest, SavingOverADesignOpenElsewhereIsRefusedAndLeavesItAsItWas)
{
    const QString other = folder.filePath(QStringLiteral("other.zva"));
    ASSERT_TRUE(QFile::copy(example, other));
    QFile::setPermissions(other, QFile::permissions(other) | QFileDevice::WriteUser);
    auto holder = open(other);
    QFile before(other);
    ASSERT_TRUE(before.open(QIODevice::ReadOnly));
    const QByteArray bytes = before.readAll();
    before.close();

    auto editor = open(design);
    FileDialog::answerNextDialogs({other});
    LogCatcher log;
    EXPECT_FALSE(editor->saveAs());
    EXPECT_TRUE(log.contains(QStringLiteral("it is open for editing in another window of the program")));
    QFile after(other);
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), bytes);

    // Saved under a free name, the design moves its lock there and lets the old one go.
    const QString moved = folder.filePath(QStringLiteral("moved.zva"));
    FileDialog::answerNextDialogs({moved});
    EXPECT_TRUE(editor->saveAs());
    DesignFileLock probe;
    EXPECT_FALSE(probe.lock(moved));
    EXPECT_TRUE(probe.lock(design));
}

TEST_F(DesignLockTest, AnotherInstanceHoldsTheDesignUntilItEnds)
{
    QProcess instance;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder.filePath(QStringLiteral("config")));
    instance.setProcessEnvironment(environment);
    instance.start(QStringLiteral(ZDS_EXECUTABLE), {design});
    ASSERT_TRUE(instance.waitForStarted());

    // The instance takes the lock once it has read the design.
    QLockFile probe(DesignFileLock::lockFilePath(design));
    qint64 holder = 0;
    QString host;
    QString application;
    const QDeadlineTimer deadline(60000);
    while (!deadline.hasExpired() && holder != instance.processId()) {
        QThread::msleep(100);
        probe.getLockInfo(&holder, &host, &application);
    }
    ASSERT_EQ(holder, instance.processId()) << "the other instance never opened the design";

    auto window = open(design);
    EXPECT_TRUE(window->document()->isReadonly());
    window.reset();

    instance.kill();
    instance.waitForFinished();
    // A lock whose process is gone is taken over.
    auto after = open(design);
    EXPECT_FALSE(after->document()->isReadonly());
}
