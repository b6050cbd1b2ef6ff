#include <QCoreApplication>
#include <algorithm>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>

#include "analysis/MAT_Converter.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "document/UndoStack.h"
#include "geometry/Stator.h"
#include "scripting/QtPrinters.h"
#include "support/ConsoleSpies.h"

// The analysis as a user runs it: the real program started twice as a child, with
// the stand-in solver beside it.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");
const QStringList assembledNames{"Geometry", "Mesh", "Windings", "RadMesh", "Materials", "SubdomainProperty"};

// The program looks for the solver beside its own file, so each kind of
// installation is a folder of its own: hard links where the file system allows.
QString install(const QString &folder, bool withPlugin)
{
    QDir().mkpath(folder);
    const QString program = folder + "/zolvane-ds";
    if (::link(ZDS_EXECUTABLE, QFile::encodeName(program).constData()) != 0)
        QFile::copy(ZDS_EXECUTABLE, program);
    if (withPlugin)
        QFile::copy(ZDS_TEST_PLUGIN_DIR "/libMCRCtrl.so", folder + "/libMCRCtrl.so");
    return program;
}

// A MAT file of one variable, as the analysis stores what the solver returned.
QByteArray variableBytes(const QString &name, const QString &text)
{
    const MatVarPointer variable(MAT_Converter::matVar(text, name));
    return MAT_Converter::toByteArray(variable.data());
}

QVariant variableValue(const QVariant &bytes, const QString &name)
{
    const MatVarPointer variable = MAT_Converter::fromByteArray(bytes.toByteArray(), name);
    return variable ? MAT_Converter::toVariant(variable.data()) : QVariant();
}

// Ends the solver steps this process has started, as a crash would.
void killSolverChildren()
{
    const QString parent = QString::number(::getpid());
    for (const QString &entry : QDir("/proc").entryList(QDir::Dirs)) {
        QFile stat("/proc/" + entry + "/stat");
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromLatin1(stat.readAll());
        const QStringList fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
        QFile commandLine("/proc/" + entry + "/cmdline");
        if (fields.size() > 1 && fields.at(1) == parent && commandLine.open(QIODevice::ReadOnly)
            && commandLine.readAll().contains("--operation=run"))
            ::kill(entry.toInt(), SIGKILL);
    }
}

QStringList texts(const QSignalSpy &spy, int argument = 1)
{
    QStringList list;
    for (const QList<QVariant> &signal : spy)
        list << signal.at(argument).toString();
    return list;
}

// The errors of the run itself, without the one the stand-in sends on each step,
// which a killed step may not have sent yet.
QStringList runErrors(const QSignalSpy &errors)
{
    QStringList list = texts(errors);
    list.erase(std::remove_if(list.begin(), list.end(), [](const QString &text) { return text.contains(" on /"); }),
               list.end());
    return list;
}

class AnalysisRun : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // Beside the build, so that the program can be linked instead of copied.
        s_folder = std::make_unique<QTemporaryDir>(QFileInfo(ZDS_EXECUTABLE).absolutePath() + "/analysis_run_XXXXXX");
        s_program = install(s_folder->filePath("solver"), true);
        s_programWithoutPlugin = install(s_folder->filePath("bare"), false);
    }
    static void TearDownTestSuite() { s_folder.reset(); }

    void SetUp() override
    {
        // Exchange files and the children's logs go to a folder of the test.
        m_previousDataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", m_home.path().toLocal8Bit());
        qunsetenv("ZDS_TEST_SOLVER");
        ASSERT_TRUE(QFile::copy(example, m_home.filePath("design.zva")));
        m_document.start();
        ASSERT_TRUE(m_document.load(m_home.filePath("design.zva")));
        // As the document's window does.
        m_document.setFilePath(m_home.filePath("design.zva"));
        m_document.setPreparing(false);
        analysis()->setSolverProgram(s_program);
    }

    void TearDown() override
    {
        qunsetenv("ZDS_TEST_SOLVER");
        qputenv("XDG_DATA_HOME", m_previousDataHome);
    }

    MagnetostaticAnalysis *analysis() { return m_document.analysis(); }

    // Exchange files that a run left in the data folder.
    QStringList exchangeFiles() const
    {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
        return QDir(folder).entryList({"zolvane_ds_exchange_*"}, QDir::Files);
    }

    // Simulation data of an earlier run, in the document and in the analysis.
    void giveEarlierResults()
    {
        QVariantMap data;
        for (const QString &name : assembledNames)
            data.insert(name, variableBytes(name, name + " earlier"));
        analysis()->setDataSimulation(data);
        QFile file(m_home.filePath("earlier.mat"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("earlier results");
        file.close();
        ASSERT_TRUE(m_document.loadDataSimulationFromFile(file.fileName()));
    }

    static std::unique_ptr<QTemporaryDir> s_folder;
    static QString s_program;
    static QString s_programWithoutPlugin;
    QTemporaryDir m_home;
    QByteArray m_previousDataHome;
    Document m_document;
};

std::unique_ptr<QTemporaryDir> AnalysisRun::s_folder;
QString AnalysisRun::s_program;
QString AnalysisRun::s_programWithoutPlugin;

// What must hold after any run that failed: nothing of the design or of the data
// of an earlier run has changed, and the run has ended.
struct DocumentSnapshot
{
    explicit DocumentSnapshot(Document &document)
        : stator(document.stator()->properties())
        , results(document.analysis()->dataSimulation())
        , data(document.dataSimulation())
        , undoCount(document.undoStack()->count())
    {
    }

    void expectUnchanged(Document &document) const
    {
        EXPECT_EQ(document.stator()->properties(), stator);
        EXPECT_EQ(document.analysis()->dataSimulation(), results);
        EXPECT_EQ(document.dataSimulation(), data);
        EXPECT_EQ(document.undoStack()->count(), undoCount);
        EXPECT_FALSE(document.analysis()->isRunning());
    }

    QVariantMap stator;
    QVariantMap results;
    QByteArray data;
    int undoCount;
};

} // namespace

TEST_F(AnalysisRun, BothStepsRunInChildrenAndTheResultsStayWithTheDocument)
{
    ConsoleSpies console(analysis()->console());
    QSignalSpy started(analysis(), &MagnetostaticAnalysis::analysisStarted);
    QSignalSpy stopped(analysis(), &MagnetostaticAnalysis::analysisStoped);
    QSignalSpy running(analysis(), &MagnetostaticAnalysis::runningChanged);
    QSignalSpy progress(analysis(), &MagnetostaticAnalysis::analysisProgress);
    QSignalSpy messages(analysis(), &MagnetostaticAnalysis::analysisProgressMessage);
    QSignalSpy results(analysis(), &MagnetostaticAnalysis::resultsChanged);
    QSignalSpy dataChanged(analysis(), &MagnetostaticAnalysis::dataSimulationChanged);
    QSignalSpy cleared(analysis()->console(), &ScriptConsole::clear);
    // The running flag is seen from inside the run, where the interface looks at it.
    bool runningWhenStarted = false;
    QObject::connect(analysis(), &MagnetostaticAnalysis::analysisStarted,
                     [this, &runningWhenStarted] { runningWhenStarted = analysis()->isRunning(); });

    analysis()->run();

    EXPECT_EQ(cleared.count(), 1);
    EXPECT_EQ(started.count(), 1);
    EXPECT_TRUE(runningWhenStarted);
    EXPECT_EQ(stopped.count(), 1);
    EXPECT_EQ(running.count(), 2);
    EXPECT_FALSE(analysis()->isRunning());
    EXPECT_EQ(texts(progress, 0), QStringList({"assembleZVA (1/2)", "runMStimestepping (2/2)"}));
    EXPECT_EQ(texts(console.info), QStringList({"Call assembleZVA...", "runAssembleZVA started",
                                                "Call runMStimestepping...", "runMStimestepping started",
                                                "no private data"}));
    // The stand-in reports an error of its own on each step; nothing else went wrong.
    ASSERT_EQ(console.error.count(), 2) << texts(console.error).join('\n').toStdString();
    EXPECT_TRUE(texts(console.error).at(0).startsWith("runAssembleZVA on "));
    EXPECT_TRUE(texts(messages, 0).contains("<br>runMStimestepping started"));
    EXPECT_EQ(messages.count(), console.total());

    const QVariantMap data = analysis()->dataSimulation();
    for (const QString &name : assembledNames)
        EXPECT_EQ(variableValue(data.value(name), name).toString(), name + " assembled") << name.toStdString();
    EXPECT_EQ(variableValue(data.value("Private"), "Private").toString(), "kept by the solver");
    const QVariantMap magnetostatic = data.value("Magnetostatic").toMap();
    EXPECT_EQ(variableValue(magnetostatic.value("Results"), "Results").toDouble(), 42.0);
    EXPECT_EQ(variableValue(magnetostatic.value("Timesteppingdata"), "Timesteppingdata").toList().size(), 3);
    EXPECT_GE(results.count(), 2);

    // The solver's file is the document's simulation data, and locks the design.
    EXPECT_TRUE(m_document.dataSimulation().startsWith("MATLAB 5.0 MAT-file"));
    EXPECT_EQ(variableValue(m_document.dataSimulation(), "Results").toDouble(), 42.0);
    EXPECT_EQ(dataChanged.count(), 1);
    EXPECT_TRUE(m_document.isLockedBySimulationData());
    EXPECT_TRUE(m_document.isModified());
    EXPECT_EQ(exchangeFiles(), QStringList());

    const QString saved = m_home.filePath("analysed.zva");
    ASSERT_TRUE(m_document.save(saved, nullptr));
    Document reopened;
    reopened.start();
    ASSERT_TRUE(reopened.load(saved));
    reopened.setFilePath(saved);
    EXPECT_EQ(reopened.analysis()->dataSimulation(), data);
    EXPECT_EQ(reopened.dataSimulation(), m_document.dataSimulation());
    EXPECT_TRUE(reopened.isLockedBySimulationData());

    // With results at hand a run goes straight to the second step, which gets
    // back what the solver kept.
    reopened.setPreparing(false);
    reopened.analysis()->setSolverProgram(s_program);
    ConsoleSpies again(reopened.analysis()->console());
    QSignalSpy progressAgain(reopened.analysis(), &MagnetostaticAnalysis::analysisProgress);
    reopened.analysis()->run();
    EXPECT_EQ(texts(progressAgain, 0), QStringList({"runMStimestepping"}));
    EXPECT_EQ(texts(again.info), QStringList({"Call runMStimestepping...", "runMStimestepping started",
                                              "private data: kept by the solver"}));
    // Files carry their time of making: the values are compared, not the bytes.
    const QVariantMap rerun = reopened.analysis()->dataSimulation();
    EXPECT_EQ(rerun.keys(), data.keys());
    EXPECT_EQ(rerun.value("Private"), data.value("Private")) << "kept from the first run";
    EXPECT_EQ(variableValue(rerun.value("Magnetostatic").toMap().value("Results"), "Results").toDouble(), 42.0);
}

TEST_F(AnalysisRun, KilledSolverStepLeavesTheDocumentAsItWas)
{
    giveEarlierResults();
    const DocumentSnapshot before(m_document);
    ConsoleSpies console(analysis()->console());
    QSignalSpy stopped(analysis(), &MagnetostaticAnalysis::analysisStoped);
    qputenv("ZDS_TEST_SOLVER", "sleep");
    // From the kill on: the meshes before it take their time, under the sanitizers a minute.
    QElapsedTimer sinceKill;
    QObject::connect(analysis()->console(), &ScriptConsole::signalInfo,
                     [&sinceKill](ScriptConsole::Scope, const QString &text) {
                         if (text == "runMStimestepping started") {
                             sinceKill.start();
                             killSolverChildren();
                         }
                     });

    analysis()->run();

    ASSERT_TRUE(sinceKill.isValid());
    EXPECT_LT(sinceKill.elapsed(), 50000) << "the run waited for the sleeping solver";
    before.expectUnchanged(m_document);
    EXPECT_EQ(stopped.count(), 1);
    EXPECT_EQ(runErrors(console.error),
              QStringList({"runMStimestepping process ended abnormally: Process crashed",
                           "runMStimestepping results not contains var 'Timesteppingdata'",
                           "runMStimestepping results not contains var 'Results'"}));
    EXPECT_EQ(exchangeFiles(), QStringList());
}

TEST_F(AnalysisRun, WithoutPluginTheFirstStepFindsNoResults)
{
    analysis()->setSolverProgram(s_programWithoutPlugin);
    const DocumentSnapshot before(m_document);
    ConsoleSpies console(analysis()->console());

    analysis()->run();

    before.expectUnchanged(m_document);
    QStringList expected;
    for (const QString &name : assembledNames)
        expected << "runAssembleZVA results not contains var '" + name + "'";
    EXPECT_EQ(texts(console.error), expected);
    EXPECT_EQ(texts(console.info), QStringList({"Call assembleZVA..."})) << "no second step";
}

TEST_F(AnalysisRun, FailingSolverIsReportedAndChangesNothing)
{
    giveEarlierResults();
    analysis()->setDataSimulation(QVariantMap());
    const DocumentSnapshot before(m_document);
    const QVector<QPair<QByteArray, QStringList>> cases{
        {"error", {"runAssembleZVA failed"}},
        {"no-RadMesh", {"runAssembleZVA results not contains var 'RadMesh'"}},
        {"exit",
         {"runAssembleZVA process ended with exit code 3", "runAssembleZVA results not contains var 'Geometry'",
          "runAssembleZVA results not contains var 'Mesh'", "runAssembleZVA results not contains var 'Windings'",
          "runAssembleZVA results not contains var 'RadMesh'", "runAssembleZVA results not contains var 'Materials'",
          "runAssembleZVA results not contains var 'SubdomainProperty'"}},
    };
    for (const auto &failure : cases) {
        SCOPED_TRACE(failure.first.toStdString());
        qputenv("ZDS_TEST_SOLVER", failure.first);
        ConsoleSpies console(analysis()->console());
        analysis()->run();
        before.expectUnchanged(m_document);
        EXPECT_EQ(runErrors(console.error), failure.second);
        EXPECT_FALSE(texts(console.info).contains("Call runMStimestepping..."));
    }
}

TEST_F(AnalysisRun, StopEndsTheRunningStepAndStartsNoOther)
{
    giveEarlierResults();
    analysis()->setDataSimulation(QVariantMap());
    const DocumentSnapshot before(m_document);
    ConsoleSpies console(analysis()->console());
    QSignalSpy stopped(analysis(), &MagnetostaticAnalysis::analysisStoped);
    qputenv("ZDS_TEST_SOLVER", "sleep");
    QElapsedTimer sinceStop;
    QObject::connect(analysis()->console(), &ScriptConsole::signalInfo,
                     [this, &sinceStop](ScriptConsole::Scope, const QString &text) {
                         if (text == "runAssembleZVA started") {
                             sinceStop.start();
                             analysis()->stop();
                         }
                     });

    analysis()->run();

    ASSERT_TRUE(sinceStop.isValid());
    EXPECT_LT(sinceStop.elapsed(), 50000) << "the run waited for the sleeping solver";
    before.expectUnchanged(m_document);
    EXPECT_EQ(stopped.count(), 1);
    EXPECT_EQ(texts(console.warn), QStringList({"Analysis stopped"}));
    EXPECT_EQ(runErrors(console.error), QStringList()) << "the answer of a stopped step isn't read";
    EXPECT_FALSE(texts(console.info).contains("Call runMStimestepping..."));
    EXPECT_EQ(exchangeFiles(), QStringList());

    // Stopping when nothing runs does nothing.
    analysis()->stop();
    EXPECT_EQ(stopped.count(), 1);
}
