#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sstream>

#include "app/Logging.h"
#include "app/QDebugStream.h"

namespace {

QStringList captured;

void captureHandler(QtMsgType, const QMessageLogContext &, const QString &message)
{
    captured << message;
}

// Routes messages into `captured` for the life of one test.
class CapturedMessages
{
public:
    CapturedMessages()
    {
        captured.clear();
        m_previous = qInstallMessageHandler(captureHandler);
    }
    ~CapturedMessages() { qInstallMessageHandler(m_previous); }

private:
    QtMessageHandler m_previous;
};

void touch(const QString &path)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("x");
}

} // namespace

TEST(LogFormat, FileNameCarriesTimePidAndOperation)
{
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 89));
    EXPECT_EQ(logFileName(when, 4242, QString()), "/Zolvane_DS_20260304_050607089_pid_4242.log");
    EXPECT_EQ(logFileName(when, 4242, "read"), "/Zolvane_DS_20260304_050607089_read_pid_4242.log");
}

TEST(LogFormat, FileLineHasLevelMessageAndSourceLocation)
{
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 8));
    const QMessageLogContext context("/src/app/Document.cpp", 17, "void Document::start()", "default");
    EXPECT_EQ(logFileLine(when, QtWarningMsg, context, "disk full"),
              "04.03.2026 05:06:07.008 Warning: disk full (Document.cpp:L17, func:void Document::start())\n");
    EXPECT_EQ(logLevelName(QtInfoMsg), "Information");
    EXPECT_EQ(logLevelName(QtDebugMsg), "Debug");
    EXPECT_EQ(logLevelName(QtCriticalMsg), "Critical");
    EXPECT_EQ(logLevelName(QtFatalMsg), "Fatal");
}

TEST(LogFormat, DebuggerLineHasMinutesSecondsAndPrefix)
{
    EXPECT_EQ(debuggerLine(QTime(1, 2, 3, 4), QtInfoMsg, "hello"), "02:03.004 Information: hello\n");
    EXPECT_EQ(debuggerLine(QTime(1, 2, 3, 4), QtCriticalMsg, "bad"), "02:03.004 Critical: bad\n");
}

TEST(RemoveOldLogs, KeepsTheLast500ByName)
{
    QTemporaryDir dir;
    for (int i = 0; i < 600; ++i)
        touch(dir.filePath(QStringLiteral("run_%1.log").arg(i, 4, 10, QLatin1Char('0'))));
    touch(dir.filePath("notes.txt"));

    removeOldLogs(dir.path());

    const QStringList logs = QDir(dir.path()).entryList({"*.log"}, QDir::Files, QDir::Name);
    ASSERT_EQ(logs.size(), 500);
    EXPECT_EQ(logs.first(), "run_0100.log");
    EXPECT_EQ(logs.last(), "run_0599.log");
    EXPECT_TRUE(QFile::exists(dir.filePath("notes.txt")));
}

TEST(RemoveOldLogs, KeepsFilesUpToSevenDaysOld)
{
    QTemporaryDir dir;
    touch(dir.filePath("a.log"));
    touch(dir.filePath("b.log"));
    const QDateTime now = QDateTime::currentDateTime();

    removeOldLogs(dir.path(), now.addDays(7));
    EXPECT_EQ(QDir(dir.path()).entryList({"*.log"}, QDir::Files).size(), 2);

    removeOldLogs(dir.path(), now.addDays(8));
    EXPECT_TRUE(QDir(dir.path()).entryList({"*.log"}, QDir::Files).isEmpty());
}

TEST(QDebugStreamTest, JoinsPiecesUntilTheLineFeed)
{
    CapturedMessages messages;
    std::ostringstream target;
    {
        QDebugStream redirect(target, "std::cout:");
        target << "first ";
        target << "half";
        EXPECT_TRUE(captured.isEmpty());
        target << '\n';
        target << '\n';
    }
    EXPECT_EQ(captured, QStringList{"std::cout: first half"});
    target << "after";
    EXPECT_EQ(target.str(), "after");
}

TEST(QDebugStreamTest, BlockWithLineFeedsLogsEveryPartAtOnce)
{
    CapturedMessages messages;
    std::ostringstream target;
    QDebugStream redirect(target, "std::cerr:");
    target << "a\nb";
    EXPECT_EQ(captured, (QStringList{"std::cerr: a", "std::cerr: b"}));
    target << "\n\nc\n";
    EXPECT_EQ(captured, (QStringList{"std::cerr: a", "std::cerr: b", "std::cerr: c"}));
}
