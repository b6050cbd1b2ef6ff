#include <QDataStream>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include "app/ExchangeFile.h"
#include "analysis/RemoteConsoleServer.h"
#include "base/ExchangePath.h"
#include "base/ScriptConsole.h"
#include "support/ProgramRun.h"

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

QByteArray readAll(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// Runs the program and expects its exit code and a line of its log.
void expectRun(const QStringList &arguments, int exitCode, const QString &logLine)
{
    ProgramRun run;
    ASSERT_TRUE(run.start(arguments));
    EXPECT_EQ(run.exitCode, exitCode) << arguments.join(' ').toStdString();
    const QString log = run.logText();
    if (!logLine.isEmpty())
        EXPECT_TRUE(log.contains(logLine)) << logLine.toStdString() << "\n" << log.toStdString();
    EXPECT_TRUE(log.contains(" *** Application finished, result:"));
}

} // namespace

TEST(CommandLine, OptionsThatCannotStartAnOperation)
{
    expectRun({"--operation=Execute", "--exchange-file=/tmp/x.mat", example}, 255,
              "MessageBox warning: Unknown operation 'Execute'");
    expectRun({"--operation=execute", "--page=hidden", example}, 255,
              "MessageBox warning: Exchange file is not defined");
    expectRun({"--operation=saveZVA", "--exchange-file=/tmp/x.mat", example}, 255,
              "MessageBox warning: File to save is not defined");
    expectRun({"--export-json=", example}, 255, "MessageBox warning: JSON file is not defined");
    expectRun({"--caption", "x", example}, 255, QString());
    expectRun({"--operation=read", "--exchange-file=/tmp/x.mat"}, 255, "Critical: Error: no file option");
}

TEST(CommandLine, DocumentArgumentIsChecked)
{
    expectRun({"--operation=read", "--exchange-file=/tmp/x.mat", "/tmp/design.txt"}, 255,
              "MessageBox warning: Can't open file /tmp/design.txt. Unsupported file type!");
    expectRun({"--operation=read", "--exchange-file=/tmp/x.mat", "/tmp/no-such-design.zva"}, 255,
              "MessageBox warning: File /tmp/no-such-design.zva does not exist");
    expectRun({"--operation=write", example}, 255, "MessageBox critical: Exchange file is not defined");
}

TEST(CommandLine, WriteThenReadGivesTheSimulationBytesBack)
{
    QTemporaryDir dir;
    const QString design = dir.filePath("design.zva");
    ASSERT_TRUE(QFile::copy(example, design));
    const QString results = dir.filePath("results.mat");
    {
        QFile file(results);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("MATLAB 5.0 results \x01\x02\x03", 23));
    }
    expectRun({"--operation=write", "--exchange-file=" + results, design}, 0, "Write simulation data at");

    const QString back = dir.filePath("back.mat");
    expectRun({"--operation=read", "--exchange-file=" + back, design}, 0, "Read simulation data at");
    EXPECT_EQ(readAll(back), readAll(results));
}

TEST(CommandLine, ReadWithoutDataGivesTheDummyFile)
{
    QTemporaryDir dir;
    const QString out = dir.filePath("out.mat");
    expectRun({"--operation=read", "--exchange-file=" + out, example}, 0, "result: true");
    EXPECT_TRUE(readAll(out).startsWith("MATLAB 5.0 MAT-file"));
}

TEST(CommandLine, WriteIntoProtectedFileMakesItProtected)
{
    QTemporaryDir dir;
    const QString design = dir.filePath("design.zvap");
    ASSERT_TRUE(QFile::copy(example, design));
    const QString results = dir.filePath("results.mat");
    {
        QFile file(results);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("some results");
    }
    expectRun({"--operation=write", "--exchange-file=" + results, design}, 0, "result: true");
    EXPECT_EQ(readAll(design).left(4), QByteArray("\x70\x61\x76\x7A", 4));
}

TEST(CommandLine, WriteIntoAnotherSuffixWarnsButStarts)
{
    QTemporaryDir dir;
    const QString design = dir.filePath("design.dat");
    ASSERT_TRUE(QFile::copy(example, design));
    expectRun({"--operation=write", "--exchange-file=" + dir.filePath("r.mat"), design}, 0,
              "Unsupported file type!");
}

TEST(CommandLine, ExportJson)
{
    QTemporaryDir dir;
    const QString json = dir.filePath("sub/out.json");
    expectRun({"--export-json=" + json, example}, 0, QString());
    EXPECT_TRUE(readAll(json).contains("Zolvane"));
}

TEST(CommandLine, ExportJsonOverAReadOnlyFileKeepsItAndSaysWhy)
{
    QTemporaryDir dir;
    const QString json = dir.filePath("kept.json");
    {
        QFile file(json);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("the owner's export");
    }
    ASSERT_TRUE(QFile::setPermissions(json, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
    expectRun({"--export-json=" + json, example}, 0, "Error: Can't write " + json + ": the file is read-only");
    EXPECT_EQ(readAll(json), QByteArray("the owner's export"));
}

TEST(CommandLine, SolverStepWithoutPluginEndsCleanly)
{
    // The build puts the solver beside the program: a copy in a folder of its own has none.
    QTemporaryDir dir;
    ProgramRun run;
    run.program = dir.filePath("zolvane-ds");
    ASSERT_TRUE(QFile::copy(ZDS_EXECUTABLE, run.program));
    ASSERT_TRUE(run.start({"--operation=runMStimestepping", "--exchange-file=/tmp/none.mat"}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.logText().contains("Can't load plugin")) << run.logText().toStdString();
}

TEST(ExchangeFiles, EveryCallGivesANewName)
{
    const QString first = getPathFileExchange("mat");
    const QString second = getPathFileExchange("mat");
    EXPECT_NE(first, second);
    EXPECT_TRUE(first.endsWith(".mat"));
    EXPECT_TRUE(first.contains(QStringLiteral("zolvane_ds_exchange_%1_").arg(QCoreApplication::applicationPid())));
}

TEST(ShellLinks, LinkResolvesAndOtherPathsPass)
{
    QTemporaryDir dir;
    const QString target = dir.filePath("design.zva");
    QFile(target).open(QIODevice::WriteOnly);
    const QString link = dir.filePath("Design.LNK");
    ASSERT_TRUE(QFile::link(target, link));
    EXPECT_EQ(resolveShellLink(link), target);
    EXPECT_EQ(resolveShellLink(target), target);
    EXPECT_EQ(resolveShellLink(dir.filePath("plain.lnk")), dir.filePath("plain.lnk"));
}

TEST(CommandLine, SolverStepReportsToTheParentsConsole)
{
    // The program looks for the plug-in beside its own file.
    QTemporaryDir folder;
    const QString program = folder.filePath("zolvane-ds");
    ASSERT_TRUE(QFile::copy(ZDS_EXECUTABLE, program));
    ASSERT_TRUE(QFile::copy(ZDS_TEST_PLUGIN_DIR "/libMCRCtrl.so", folder.filePath("libMCRCtrl.so")));

    ScriptConsole console(ScriptConsole::Magnitostatic);
    const QString serverName = QStringLiteral("remoteConsole_test_%1").arg(QCoreApplication::applicationPid());
    RemoteConsoleServer server(serverName, &console);
    QSignalSpy infos(&console, &ScriptConsole::signalInfo);
    QSignalSpy errors(&console, &ScriptConsole::signalError);

    const QString exchange = folder.filePath("exchange.mat");
    ProgramRun run;
    run.program = program;
    QProcess process;
    process.setProcessEnvironment(run.environment());
    process.start(program, {"--operation=runMStimestepping", "--exchange-file=" + exchange,
                            "--remoteconsole=" + serverName});
    // The parent's event loop must run for the messages to arrive.
    QElapsedTimer timer;
    timer.start();
    while (process.state() != QProcess::NotRunning && timer.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    ASSERT_EQ(process.state(), QProcess::NotRunning);
    EXPECT_EQ(process.exitCode(), 0);
    for (int i = 0; i < 40 && (infos.isEmpty() || errors.isEmpty()); ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);

    ASSERT_EQ(infos.count(), 1);
    EXPECT_EQ(infos.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Magnitostatic);
    EXPECT_EQ(infos.at(0).at(1).toString(), "runMStimestepping started");
    ASSERT_EQ(errors.count(), 1);
    EXPECT_TRUE(readAll(exchange).contains("runMStimestepping"));
    const QString log = run.logText();
    EXPECT_TRUE(log.contains(" *** Application finished, result: 0 ***")) << log.toStdString();
    EXPECT_TRUE(log.contains("load"));
}

// The program moves to its own folder at start; the paths it was given must still
// mean the caller's folder.
TEST(CommandLine, RelativePathsAreThoseOfTheCallersFolder)
{
    QTemporaryDir dir;
    ASSERT_TRUE(QFile::copy(example, dir.filePath("design.zva")));
    ASSERT_TRUE(QDir(dir.path()).mkdir("sub"));

    ProgramRun read;
    read.workingDirectory = dir.filePath("sub");
    ASSERT_TRUE(read.start({"--operation=read", "--exchange-file=out.mat", "../design.zva"}));
    EXPECT_EQ(read.exitCode, 0) << read.logText().toStdString();
    EXPECT_TRUE(readAll(dir.filePath("sub/out.mat")).startsWith("MATLAB 5.0 MAT-file"));

    ProgramRun json;
    json.workingDirectory = dir.path();
    ASSERT_TRUE(json.start({"--export-json=exports/out.json", "design.zva"}));
    EXPECT_EQ(json.exitCode, 0) << json.logText().toStdString();
    EXPECT_TRUE(readAll(dir.filePath("exports/out.json")).contains("Zolvane"));

    ProgramRun missing;
    missing.workingDirectory = dir.path();
    ASSERT_TRUE(missing.start({"--operation=read", "--exchange-file=out.mat", "absent.zva"}));
    EXPECT_EQ(missing.exitCode, 255);
    EXPECT_TRUE(missing.logText().contains(QStringLiteral("File %1 does not exist").arg(dir.filePath("absent.zva"))));
}
