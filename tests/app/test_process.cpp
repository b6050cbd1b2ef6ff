#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

#include "app/CrashHandler.h"
#include "app/FileAssociation.h"
#include "app/Logging.h"
#include "app/ParentProcess.h"
#include "support/ProgramRun.h"
#include "ui/MessageBox.h"


TEST(HeadlessStart, OperationNamesTheLogAndClosesIt)
{
    ProgramRun run;
    run.start({"--operation", "read", "--exchange-file", "/tmp/none.mat", "design.zva"});
    const QStringList files = run.logFiles();
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(QRegularExpression(R"(^Zolvane_DS_\d{8}_\d{9}_read_pid_\d+\.log$)").match(files.first()).hasMatch())
        << files.first().toStdString();

    const QString log = run.logText();
    const QRegularExpression line(R"(^\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d\.\d{3} Information:  \*\*\* Start application \*\*\* \(SafeMain\.cpp:L\d+, func:.*safeMain.*\)$)",
                                  QRegularExpression::MultilineOption);
    EXPECT_TRUE(line.match(log).hasMatch()) << log.toStdString();
    EXPECT_TRUE(log.contains("args:"));
    EXPECT_TRUE(log.contains("app module, last modified:"));
    EXPECT_TRUE(log.contains(" *** Application finished, result: -1 ***")) << log.toStdString();
    EXPECT_EQ(run.exitCode, 255);
}

TEST(HeadlessStart, HelpAnswersItsBoxAndSkipsTheClosingLine)
{
    ProgramRun run;
    run.start({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    const QString log = run.logText();
    EXPECT_TRUE(log.contains("Information: MessageBox information: Usage:")) << log.toStdString();
    EXPECT_FALSE(log.contains("Application finished"));
    EXPECT_TRUE(run.standardOutput.startsWith("Usage:")) << run.standardOutput.toStdString();
    EXPECT_TRUE(run.standardOutput.contains("--operation")) << "the options are listed";
}

TEST(HeadlessStart, VersionIsPrintedAndNothingElseRuns)
{
    ProgramRun run;
    run.start({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.standardOutput.trimmed(), QStringLiteral("Zolvane Design Studio " ZDS_PROJECT_VERSION));
    EXPECT_FALSE(run.logText().contains("Application finished"));
}

TEST(HeadlessStart, OldLogsAreCutBeforeTheRunsOwnFile)
{
    ProgramRun run;
    QDir().mkpath(run.logsFolder());
    for (int i = 0; i < 600; ++i) {
        QFile file(run.logsFolder() + QStringLiteral("/Zolvane_DS_2000_%1.log").arg(i, 4, 10, QLatin1Char('0')));
        file.open(QIODevice::WriteOnly);
    }
    run.start({"--operation", "getProps"});
    const QStringList all = QDir(run.logsFolder()).entryList({"*.log"}, QDir::Files, QDir::Name);
    EXPECT_EQ(all.size(), 501);
    EXPECT_FALSE(all.contains("Zolvane_DS_2000_0099.log"));
    EXPECT_TRUE(all.contains("Zolvane_DS_2000_0100.log"));
}

TEST(CrashHandler, WritesBothLogsAndEndsWithoutCore)
{
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    // Forked, so that the child writes into the same temporary data folder.
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(
        {
            QDir().mkpath(logsPath());
            installCrashHandler();
            qInstallMessageHandler(messageHandler);
            qInfo() << "before the crash";
            std::raise(SIGSEGV);
        },
        ::testing::ExitedWithCode(128 + SIGSEGV), "");

    const QDir logs(logsPath());
    QFile crash(logs.filePath("Crashed_Zolvane_DS.log"));
    ASSERT_TRUE(crash.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QRegularExpression(R"(^\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d\.\d{3} Crash process pid:\d+\n$)")
                    .match(QString::fromUtf8(crash.readAll()))
                    .hasMatch());

    const QStringList runs = logs.entryList({"Zolvane_DS_*.log"}, QDir::Files);
    ASSERT_EQ(runs.size(), 1);
    QFile run(logs.filePath(runs.first()));
    ASSERT_TRUE(run.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(run.readAll());
    EXPECT_TRUE(text.contains("Information: before the crash"));
    EXPECT_TRUE(text.contains("Critical:  ****** Application crashed ******"));
    qunsetenv("XDG_DATA_HOME");
}

TEST(ParentProcess, KindFollowsTheLowerCasedFileName)
{
    EXPECT_EQ(parentProcessKindOf("MATLAB.EXE"), ParentProcessKind::Matlab);
    EXPECT_EQ(parentProcessKindOf("matlab"), ParentProcessKind::Matlab);
    EXPECT_EQ(parentProcessKindOf("Orvane.exe"), ParentProcessKind::Orvane);
    EXPECT_EQ(parentProcessKindOf("orvane"), ParentProcessKind::Orvane);
    EXPECT_EQ(parentProcessKindOf("bash"), ParentProcessKind::None);
    EXPECT_EQ(parentProcessKindOf(""), ParentProcessKind::None);
    EXPECT_FALSE(parentProcessFileName().isEmpty());
}

TEST(MessageBoxHeadless, LogsTheBoxAndAnswersWithItsDefault)
{
    ASSERT_TRUE(MessageBox::isHeadless());
    EXPECT_EQ(MessageBox::question(nullptr, "t", "Save?", QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel),
              QMessageBox::Save);
    EXPECT_EQ(MessageBox::warning(nullptr, "t", "Careful"), QMessageBox::Ok);
    EXPECT_EQ(MessageBox::question(nullptr, "t", "Go?", QMessageBox::Yes | QMessageBox::No, QMessageBox::No),
              QMessageBox::No);
}

TEST(FileAssociation, WritesMimeTypeAndDesktopEntryPerSuffix)
{
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    registerFileType("zolvane-ds", "Zolvane Design Studio", "zvap", 1);
    qunsetenv("XDG_DATA_HOME");

    QFile mime(home.filePath("mime/packages/zolvane-ds-zvap.xml"));
    ASSERT_TRUE(mime.open(QIODevice::ReadOnly));
    const QString mimeText = QString::fromUtf8(mime.readAll());
    EXPECT_TRUE(mimeText.contains("<glob pattern=\"*.zvap\"/>"));
    EXPECT_TRUE(mimeText.contains("Zolvane Design Studio (.zvap)"));

    QFile desktop(home.filePath("applications/zolvane-ds-zvap.desktop"));
    ASSERT_TRUE(desktop.open(QIODevice::ReadOnly));
    const QString entry = QString::fromUtf8(desktop.readAll());
    EXPECT_TRUE(entry.contains("MimeType=application/x-zolvane-zvap;"));
    EXPECT_TRUE(entry.contains("zolvane-ds\" %f"));
}

TEST(FileAssociation, UnwritableFolderIsPassedOverSilently)
{
    const QString unwritable = QStringLiteral("/proc/no-such-place");
    qputenv("XDG_DATA_HOME", unwritable.toLocal8Bit());
    QStringList warnings;
    const QtMessageHandler previous = qInstallMessageHandler(nullptr);
    static QStringList *captured = nullptr;
    captured = &warnings;
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type != QtDebugMsg && type != QtInfoMsg)
            *captured << text;
    });
    registerFileType("zolvane-ds", "Zolvane Design Studio", "zva", 0);
    qInstallMessageHandler(previous);
    qunsetenv("XDG_DATA_HOME");
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
    EXPECT_FALSE(QFileInfo::exists(unwritable));
}
