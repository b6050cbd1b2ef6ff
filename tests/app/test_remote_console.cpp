#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <mutex>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtConcurrent>
#include <gtest/gtest.h>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "analysis/MCRCtrlPlugin.h"
#include "app/Logging.h"
#include "app/RemoteConsoleClient.h"
#include "analysis/RemoteConsoleServer.h"
#include "app/SolverStep.h"
#include "base/ScriptConsole.h"
#include "scripting/QtPrinters.h"
#include "support/ConsoleSpies.h"

namespace {

std::mutex capturedMutex;
QStringList capturedLog;

void captureLog(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const std::lock_guard locker(capturedMutex);
    capturedLog << logLevelName(type) + QLatin1String(": ") + message;
}

// Collects the log lines of one test, each as "<level>: <message>".
class CapturedLog
{
public:
    CapturedLog()
    {
        capturedLog.clear();
        m_previous = qInstallMessageHandler(captureLog);
    }
    ~CapturedLog() { qInstallMessageHandler(m_previous); }

    QStringList lines() const
    {
        const std::lock_guard locker(capturedMutex);
        return capturedLog;
    }
    int count(const QString &pattern) const { return lines().filter(QRegularExpression(pattern)).size(); }

private:
    QtMessageHandler m_previous;
};

// Waits until the spy holds `count` signals; arrival needs the event loop.
bool waitFor(QSignalSpy &spy, int count)
{
    while (spy.count() < count) {
        if (!spy.wait(5000))
            return false;
    }
    return true;
}

// Names no other test run on this machine uses.
QString uniqueServerName()
{
    static int counter = 0;
    return QStringLiteral("zds_test_console_%1_%2").arg(QCoreApplication::applicationPid()).arg(counter++);
}

// Sends a payload the way a foreign client would, without the client's framing.
void sendRaw(const QString &name, const QByteArray &payload)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    ASSERT_TRUE(socket.waitForConnected(1000));
    socket.write(payload);
    ASSERT_TRUE(socket.waitForBytesWritten(1000));
    socket.disconnectFromServer();
}

// What a crashed server leaves behind: a socket file that nobody listens on.
void leaveStaleSocketFile(const QString &name)
{
    const QByteArray path = QFile::encodeName(QDir::tempPath() + QLatin1Char('/') + name);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(size_t(path.size()), sizeof(address.sun_path));
    qstrcpy(address.sun_path, path.constData());
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
    ::close(fd);
}

QString readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QStringLiteral("<unreadable>");
    return QString::fromUtf8(file.readAll());
}

} // namespace

TEST(RemoteConsole, EachMethodArrivesWithTheConsolesScope)
{
    CapturedLog log;
    ScriptConsole console(ScriptConsole::Magnitostatic);
    ConsoleSpies spies(&console);
    const QString name = remoteConsoleServerName();
    EXPECT_EQ(name, QStringLiteral("remoteConsole_%1").arg(QCoreApplication::applicationPid()));
    RemoteConsoleServer server(name, &console);
    RemoteConsoleClient client(name);

    client.sendMessage(ScriptConsole::Info, QStringLiteral("x"));
    client.sendMessage(ScriptConsole::Warn, QStringLiteral("w"));
    client.sendMessage(ScriptConsole::Log, QStringLiteral("l"));
    client.info(QStringLiteral("plug-in info"));
    client.error(QStringLiteral("plug-in error: ünïcode"));
    // Connections are served in order, so the last one in means all are in.
    ASSERT_TRUE(waitFor(spies.error, 1));

    ASSERT_EQ(spies.info.count(), 2);
    EXPECT_EQ(spies.info.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Magnitostatic);
    EXPECT_EQ(spies.info.at(0).at(1).toString(), QStringLiteral("x"));
    EXPECT_EQ(spies.info.at(1).at(1).toString(), QStringLiteral("plug-in info"));
    ASSERT_EQ(spies.warn.count(), 1);
    EXPECT_EQ(spies.warn.at(0).at(1).toString(), QStringLiteral("w"));
    ASSERT_EQ(spies.log.count(), 1);
    EXPECT_EQ(spies.log.at(0).at(1).toString(), QStringLiteral("l"));
    ASSERT_EQ(spies.error.count(), 1);
    EXPECT_EQ(spies.error.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Magnitostatic);
    EXPECT_EQ(spies.error.at(0).at(1).toString(), QStringLiteral("plug-in error: ünïcode"));
    EXPECT_EQ(log.lines(), QStringList());
}

TEST(RemoteConsole, ServerTakesWhatItCanParse)
{
    ScriptConsole console(ScriptConsole::Stator);
    ConsoleSpies spies(&console);
    const QString name = uniqueServerName();
    RemoteConsoleServer server(name, &console);

    sendRaw(name, "not json at all");
    ASSERT_TRUE(waitFor(spies.log, 1));
    EXPECT_EQ(spies.log.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Stator);
    EXPECT_EQ(spies.log.at(0).at(1).toString(), QString());

    // A number that is no method is dropped; compact JSON is as good as indented.
    sendRaw(name, R"({"method": 7, "message": "unknown"})");
    sendRaw(name, R"({"method":2,"message":"compact"})");
    ASSERT_TRUE(waitFor(spies.warn, 1));
    EXPECT_EQ(spies.warn.at(0).at(1).toString(), QStringLiteral("compact"));
    EXPECT_EQ(spies.total(), 2);
}

TEST(RemoteConsole, MutedConsoleTakesTheMessageAndShowsNothing)
{
    ScriptConsole console(ScriptConsole::Magnitostatic);
    ConsoleSpies spies(&console);
    const QString name = uniqueServerName();
    RemoteConsoleServer server(name, &console);
    RemoteConsoleClient client(name);

    console.setMuted(true);
    client.info(QStringLiteral("hidden"));
    EXPECT_FALSE(spies.info.wait(300));

    // Served in order: had the first one waited, it would show now too.
    console.setMuted(false);
    client.info(QStringLiteral("shown"));
    ASSERT_TRUE(waitFor(spies.info, 1));
    EXPECT_FALSE(spies.info.wait(100));
    ASSERT_EQ(spies.total(), 1);
    EXPECT_EQ(spies.info.at(0).at(1).toString(), QStringLiteral("shown"));
}

TEST(RemoteConsole, StaleSocketFileOfACrashedRunDoesNotBlockTheName)
{
    CapturedLog log;
    const QString name = uniqueServerName();
    leaveStaleSocketFile(name);
    QLocalServer plain;
    ASSERT_FALSE(plain.listen(name)) << "the stale file should block a plain listen";

    ScriptConsole console(ScriptConsole::Magnitostatic);
    QSignalSpy info(&console, &ScriptConsole::signalInfo);
    RemoteConsoleServer server(name, &console);
    RemoteConsoleClient(name).info(QStringLiteral("x"));

    ASSERT_TRUE(waitFor(info, 1));
    EXPECT_EQ(info.at(0).at(1).toString(), QStringLiteral("x"));
    EXPECT_EQ(log.lines(), QStringList());
}

TEST(RemoteConsole, StoppingTheServerLosesOnlyLaterMessagesQuietly)
{
    CapturedLog log;
    ScriptConsole console(ScriptConsole::Magnitostatic);
    ConsoleSpies spies(&console);
    const QString name = uniqueServerName();
    auto server = std::make_unique<RemoteConsoleServer>(name, &console);
    RemoteConsoleClient client(name);

    client.info(QStringLiteral("before"));
    ASSERT_TRUE(waitFor(spies.info, 1));
    server.reset();

    QElapsedTimer timer;
    timer.start();
    client.info(QStringLiteral("after"));
    client.error(QStringLiteral("after"));
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_FALSE(spies.info.wait(200));

    EXPECT_EQ(spies.total(), 1);
    EXPECT_EQ(spies.info.at(0).at(1).toString(), QStringLiteral("before"));
    EXPECT_EQ(log.lines(), QStringList());
}

// A child's last messages may still wait when the parent learns that it ended.
TEST(RemoteConsole, WaitingMessagesAreTakenWithoutTheEventLoop)
{
    ScriptConsole console(ScriptConsole::Magnitostatic);
    ConsoleSpies spies(&console);
    const QString name = uniqueServerName();
    RemoteConsoleServer server(name, &console);
    RemoteConsoleClient client(name);

    client.info(QStringLiteral("last"));
    client.error(QStringLiteral("words"));
    EXPECT_EQ(spies.total(), 0);
    server.receivePending();

    ASSERT_EQ(spies.total(), 2);
    EXPECT_EQ(spies.info.at(0).at(1).toString(), QStringLiteral("last"));
    EXPECT_EQ(spies.error.at(0).at(1).toString(), QStringLiteral("words"));
    // Nothing waits any more: the call returns at once.
    server.receivePending();
    EXPECT_EQ(spies.total(), 2);
}

TEST(RemoteConsole, TwoClientsAtOnceAreBothServed)
{
    ScriptConsole console(ScriptConsole::Magnitostatic);
    QSignalSpy info(&console, &ScriptConsole::signalInfo);
    const QString name = uniqueServerName();
    RemoteConsoleServer server(name, &console);

    auto send = [name](const QString &text) { RemoteConsoleClient(name).info(text); };
    QFuture<void> first = QtConcurrent::run(send, QStringLiteral("first"));
    QFuture<void> second = QtConcurrent::run(send, QStringLiteral("second"));

    ASSERT_TRUE(waitFor(info, 2));
    first.waitForFinished();
    second.waitForFinished();
    QStringList texts{info.at(0).at(1).toString(), info.at(1).at(1).toString()};
    texts.sort();
    EXPECT_EQ(texts, QStringList({"first", "second"}));
}

TEST(MCRCtrlPluginTest, LoadsTheSolverFromTheGivenFolderAndUnloadsIt)
{
    CapturedLog log;
    MCRCtrlPlugin plugin(QStringLiteral(ZDS_TEST_PLUGIN_DIR));

    ASSERT_NE(plugin.load(), nullptr);
    EXPECT_TRUE(plugin.isLoaded());
    EXPECT_TRUE(plugin.fileName().endsWith("/libMCRCtrl.so")) << plugin.fileName().toStdString();
    plugin.unload();
    EXPECT_FALSE(plugin.isLoaded());
    // Unloading twice does nothing and says nothing.
    plugin.unload();

    const QString file = QStringLiteral("\"%1\"").arg(plugin.fileName());
    EXPECT_EQ(log.lines(), QStringList({"Information: Plugin " + file + " load",
                                        "Information: Plugin " + file + " unload"}));
}

TEST(MCRCtrlPluginTest, PluginOfAnotherKindIsRefused)
{
    CapturedLog log;
    MCRCtrlPlugin plugin(QStringLiteral(ZDS_FOREIGN_PLUGIN_DIR));

    EXPECT_EQ(plugin.load(), nullptr);

    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines.first(), QStringLiteral("Critical: This  \"%1\" is not plugin for MCRCtrlInterface")
                                 .arg(plugin.fileName()));
    plugin.unload();
}

TEST(SolverStepTest, EachStepRunsItsOperationAndReportsToTheParent)
{
    CapturedLog log;
    ScriptConsole console(ScriptConsole::Magnitostatic);
    ConsoleSpies spies(&console);
    const QString name = uniqueServerName();
    RemoteConsoleServer server(name, &console);
    QTemporaryDir dir;
    const QString exchangeFile = dir.filePath("exchange.mat");

    runSolverStep(SolverStep::AssembleZVA, exchangeFile, name, QStringLiteral(ZDS_TEST_PLUGIN_DIR));
    runSolverStep(SolverStep::MStimestepping, exchangeFile, name, QStringLiteral(ZDS_TEST_PLUGIN_DIR));

    EXPECT_EQ(readFile(exchangeFile), QStringLiteral("runAssembleZVA\nrunMStimestepping\n"));
    ASSERT_TRUE(waitFor(spies.info, 2));
    ASSERT_TRUE(waitFor(spies.error, 2));
    EXPECT_EQ(spies.info.at(0).at(1).toString(), QStringLiteral("runAssembleZVA started"));
    EXPECT_EQ(spies.error.at(0).at(1).toString(), "runAssembleZVA on " + exchangeFile);
    EXPECT_EQ(spies.info.at(1).at(1).toString(), QStringLiteral("runMStimestepping started"));
    EXPECT_EQ(spies.error.at(1).at(1).toString(), "runMStimestepping on " + exchangeFile);
    EXPECT_EQ(spies.total(), 4);
    EXPECT_EQ(log.count("^Information: Plugin .* load$"), 2);
    EXPECT_EQ(log.count("^Information: Plugin .* unload$"), 2);
    EXPECT_EQ(log.count("^Critical"), 0);
}

TEST(SolverStepTest, WithoutConsoleNameThePluginRunsSilently)
{
    CapturedLog log;
    ScriptConsole console(ScriptConsole::Magnitostatic);
    ConsoleSpies spies(&console);
    const QString name = uniqueServerName();
    RemoteConsoleServer server(name, &console);
    QTemporaryDir dir;
    const QString exchangeFile = dir.filePath("exchange.mat");

    // The plug-in of an earlier run must not keep the console of that run.
    runSolverStep(SolverStep::AssembleZVA, exchangeFile, name, QStringLiteral(ZDS_TEST_PLUGIN_DIR));
    ASSERT_TRUE(waitFor(spies.error, 1));
    runSolverStep(SolverStep::MStimestepping, exchangeFile, QString(), QStringLiteral(ZDS_TEST_PLUGIN_DIR));

    EXPECT_FALSE(spies.info.wait(300));
    EXPECT_EQ(spies.total(), 2);
    EXPECT_EQ(readFile(exchangeFile), QStringLiteral("runAssembleZVA\nrunMStimestepping\n"));
}

TEST(SolverStepTest, WithoutPluginTheExchangeFileIsLeftAloneAndThePathTriedIsLogged)
{
    CapturedLog log;
    QTemporaryDir dir;
    const QString exchangeFile = dir.filePath("exchange.mat");
    {
        QFile file(exchangeFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("input\n");
    }

    runSolverStep(SolverStep::MStimestepping, exchangeFile, uniqueServerName(), dir.path());

    EXPECT_EQ(readFile(exchangeFile), QStringLiteral("input\n"));
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines.first().startsWith("Critical: Can't load plugin \"" + dir.path() + "/MCRCtrl\" "))
        << lines.first().toStdString();
}
