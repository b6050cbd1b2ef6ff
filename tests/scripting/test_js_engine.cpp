#include "QmlScripting/JSEngine.h"
#include "LockHeldElsewhere.h"
#include "QtPrinters.h"
#include "base/ScriptConsole.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

// A native object whose methods a script calls; they fail the way native code can.
class Failing : public QObject
{
    Q_OBJECT
public:
    explicit Failing(JSEngine *engine)
        : m_engine(engine)
    {
    }
    Q_INVOKABLE int fail()
    {
        return m_engine->guarded(QStringLiteral("fail"), []() -> int { throw std::runtime_error("boom"); });
    }
    Q_INVOKABLE void failOddly()
    {
        m_engine->guarded(QStringLiteral("failOddly"), [] { throw 42; });
    }
    Q_INVOKABLE QString echo(const QString &text)
    {
        return m_engine->guarded(QStringLiteral("echo"), [&text] { return text; });
    }

private:
    JSEngine *m_engine;
};

// An engine with a console and a folder of scripts as the main script's folder.
class ScriptEngineTest : public ::testing::Test
{
protected:
    ScriptEngineTest()
        : console(ScriptConsole::Stator)
        , errors(&console, &ScriptConsole::signalError)
        , logs(&console, &ScriptConsole::signalLog)
        , included(&engine, &JSEngine::fileIncluded)
        , required(&engine, &JSEngine::fileRequired)
    {
        engine.installObject(QStringLiteral("console"), &console);
        engine.globalObject().setProperty(QStringLiteral("includeBasePath"), QDir::toNativeSeparators(folder.path()));
    }

    void write(const QString &name, const QByteArray &text)
    {
        const QString path = folder.filePath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QString canonical(const QString &name) const { return QFileInfo(folder.filePath(name)).canonicalFilePath(); }

    // The result of a program as text; a thrown value is caught and shown as "thrown: ...".
    QString run(const QString &program)
    {
        const QJSValue result =
            engine.evaluate(QStringLiteral("try { String(%1) } catch (e) { 'thrown: ' + e }").arg(program));
        return result.toString();
    }
    static QStringList texts(const QSignalSpy &spy, int argument)
    {
        QStringList list;
        for (const QList<QVariant> &arguments : spy)
            list << arguments.at(argument).toString();
        return list;
    }

    QTemporaryDir folder;
    JSEngine engine;
    ScriptConsole console;
    QSignalSpy errors;
    QSignalSpy logs;
    QSignalSpy included;
    QSignalSpy required;
};

} // namespace

TEST(JSEngineTest, ScriptsWriteTheProgramsEnumeratorsByTheirClass)
{
    JSEngine engine;

    const QString values = engine
                               .evaluate(QStringLiteral(
                                   "[Motor.SR, Motor.SRS, Motor.SRSRS, Motor.RSR, Motor.RSRSR, Motor.GeometryRotor,"
                                   " Winding.SingleLayer, Winding.DoubleLayer, Winding.Toroidal,"
                                   " Stator.Yokeless, Rotor.Yoke, StatorItem.ID1, RotorItem.ID3, Coil.CW,"
                                   " PoleArrangement.NSSN, typeof WindingObject].join()"))
                               .toString();

    EXPECT_EQ(values, QStringLiteral("1,2,3,4,5,2,1,2,2,1,2,1,3,-1,3,function"));
}

TEST(JSEngineTest, OnlyWhatExistsIsInstalled)
{
    JSEngine engine;

    for (const char *name : {"QtGui", "QtWidgets", "Geom", "Material"})
        EXPECT_TRUE(engine.globalObject().property(QLatin1String(name)).isQObject()) << name;
    // Without a document there is no motor to reach.
    EXPECT_TRUE(engine.globalObject().property(QStringLiteral("motor")).isUndefined());
    EXPECT_TRUE(engine.globalObject().property(QStringLiteral("include")).isCallable());
    EXPECT_TRUE(engine.globalObject().property(QStringLiteral("require")).isCallable());
    EXPECT_TRUE(engine.evaluate(QStringLiteral("typeof Qt.include")).isString()) << "extensions are installed";
}

TEST(JSEngineTest, ProgramObjectsOutliveTheEngineAndItsCollector)
{
    QPointer<QObject> motor = new QObject;
    motor->setObjectName(QStringLiteral("motor"));
    QPointer<ScriptConsole> console = new ScriptConsole(ScriptConsole::Motor);
    {
        JSEngine engine(motor, nullptr);
        engine.installObject(QStringLiteral("console"), console);
        EXPECT_EQ(engine.evaluate(QStringLiteral("motor.objectName + ' ' + console.objectName")).toString(),
                  QStringLiteral("motor console"));
        engine.evaluate(QStringLiteral("motor = null; console = null"));
        engine.collectGarbage();
    }
    // The collector hands what it owns to deleteLater.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(motor.isNull());
    ASSERT_FALSE(console.isNull());
    delete motor;
    delete console;
}

// A script value that a worker lets go is freed later on the engine's thread; that
// free must wait for whoever holds the owner's lock, as a script on a worker does.
TEST(JSEngineTest, ValuesLetGoOnAWorkerAreFreedUnderTheSharedLock)
{
    JSEngine engine;
    std::recursive_mutex lock;
    engine.shareLock(lock);
    auto *value = new QJSValue(engine.newObject());
    std::thread([value] { delete value; }).join();

    {
        const LockHeldElsewhere holder(lock);
        QCoreApplication::processEvents();
        EXPECT_TRUE(holder.released()) << "the free ran beside the holder of the lock";
    }
    engine.collectGarbage();
}

TEST(JSEngineTest, ErrorStringIsOneLineWithTheScriptsPath)
{
    JSEngine engine;

    EXPECT_EQ(JSEngine::errorString(QJSValue(1)), QStringLiteral("This is not error"));
    EXPECT_EQ(JSEngine::errorString(engine.evaluate(QStringLiteral("\n\nnotThere()"), QStringLiteral("/work/a.js"))),
              QStringLiteral("Error in file '/work/a.js', at line 3: ReferenceError: notThere is not defined"));
    EXPECT_EQ(JSEngine::errorString(engine.evaluate(QStringLiteral("(")))
                  .startsWith(QStringLiteral("Error in file '', at line 1: SyntaxError: ")),
              true);

    // The program's own scripts show from "/scripts" on, whatever the case of the folder.
    const QString assets = QCoreApplication::applicationDirPath() + QStringLiteral("/ASSETS/scripts/stator/s.js");
    EXPECT_EQ(JSEngine::errorString(engine.evaluate(QStringLiteral("throw new Error('bad')"), assets)),
              QStringLiteral("Error in file '/scripts/stator/s.js', at line 1: Error: bad"));
}

TEST(JSEngineTest, ConsoleCallReachesWhicheverConsoleTheScriptSees)
{
    JSEngine engine;
    engine.evaluate(QStringLiteral(
        "var calls = [];"
        "console = { warn: function(text) { calls.push((this === console ? 'warn: ' : 'other this: ') + text); } };"));

    engine.consoleCall(QStringLiteral("warn"), QStringLiteral("careful"));
    engine.consoleCall(QStringLiteral("noSuchMethod"), QStringLiteral("ignored"));
    EXPECT_EQ(engine.evaluate(QStringLiteral("calls.join('|')")).toString(), QStringLiteral("warn: careful"));

    ScriptConsole console(ScriptConsole::Rotor);
    QSignalSpy error(&console, &ScriptConsole::signalError);
    engine.installObject(QStringLiteral("console"), &console);
    engine.consoleCall(QStringLiteral("error"), QStringLiteral("failed"));
    ASSERT_EQ(error.count(), 1);
    EXPECT_EQ(error.at(0).at(1).toString(), QStringLiteral("failed"));
}

TEST(JSEngineTest, NativeExceptionsBecomeScriptErrorsAlsoOnceTheCodeIsCompiled)
{
    JSEngine engine;
    ScriptConsole console(ScriptConsole::Stator);
    QSignalSpy errors(&console, &ScriptConsole::signalError);
    engine.installObject(QStringLiteral("console"), &console);
    Failing failing(&engine);
    engine.installObject(QStringLiteral("failing"), &failing);

    // Enough calls for the engine to compile the loop.
    const QJSValue caught = engine.evaluate(QStringLiteral(
        "var caught = 0, last = '';"
        "for (var i = 0; i < 500; ++i) { try { failing.fail(); } catch (e) { ++caught; last = String(e); } }"
        "caught + ' ' + last"));

    EXPECT_EQ(caught.toString(), QStringLiteral("500 Error: Exception in fail: boom"));
    ASSERT_EQ(errors.count(), 500);
    EXPECT_EQ(errors.at(499).at(1).toString(), QStringLiteral("Exception in fail: boom"));

    const QJSValue uncaught = engine.evaluate(QStringLiteral("failing.failOddly(); 'went on'"));
    EXPECT_TRUE(uncaught.isError());
    EXPECT_EQ(uncaught.toString(), QStringLiteral("Error: Exception in failOddly: unknown exception"));
    EXPECT_EQ(engine.evaluate(QStringLiteral("failing.echo('fine')")).toString(), QStringLiteral("fine"));
}

TEST_F(ScriptEngineTest, IncludeResolvesNestedNamesAgainstTheMainScriptsFolder)
{
    write(QStringLiteral("parts/first.js"), "function twice(x) { return 2 * x; }\ninclude('second.js');\n'first done'");
    write(QStringLiteral("second.js"), "var second = 'main folder';");
    write(QStringLiteral("parts/second.js"), "var second = 'own folder';");

    EXPECT_EQ(run(QStringLiteral("include('parts/first.js')")), QStringLiteral("first done"));
    EXPECT_EQ(run(QStringLiteral("second + ' ' + twice(4)")), QStringLiteral("main folder 8"));
    EXPECT_EQ(texts(included, 0), (QStringList{canonical(QStringLiteral("parts/first.js")),
                                               canonical(QStringLiteral("second.js"))}));
    EXPECT_EQ(run(QStringLiteral("includeBasePath")), QDir::toNativeSeparators(folder.path()));

    EXPECT_EQ(run(QStringLiteral("include('%1')").arg(canonical(QStringLiteral("parts/second.js")))),
              QStringLiteral("undefined"));
    EXPECT_EQ(run(QStringLiteral("second")), QStringLiteral("own folder")) << "an absolute path is taken as it is";
}

TEST_F(ScriptEngineTest, IncludeOfAMissingOrFailingFileStopsTheScriptAtThatLine)
{
    write(QStringLiteral("bad.js"), "var before = 1;\nnotDefined();");

    const QString missing = run(QStringLiteral("include('missing.js')"));
    EXPECT_EQ(missing, QStringLiteral("thrown: Error: Can't open file %1 for reading")
                           .arg(QDir::toNativeSeparators(folder.filePath(QStringLiteral("missing.js")))));
    EXPECT_TRUE(included.isEmpty());

    const QJSValue stopped = engine.evaluate(QStringLiteral("var after = 0; include('bad.js'); after = 1;"));
    ASSERT_TRUE(stopped.isError());
    const QString path = canonical(QStringLiteral("bad.js"));
    EXPECT_EQ(stopped.toString(), QStringLiteral("Error: %1: Error in file '%1', at line 2: ReferenceError: "
                                                 "notDefined is not defined")
                                      .arg(path));
    EXPECT_EQ(run(QStringLiteral("after + ' ' + before")), QStringLiteral("0 1"));
    EXPECT_EQ(texts(included, 0), QStringList{path});
}

TEST_F(ScriptEngineTest, RequireGivesTheDefaultExportOrTheModule)
{
    write(QStringLiteral("modules/greet.js"), "export default function greet(name) { return 'hi ' + name; }");
    write(QStringLiteral("modules/values.js"), "export const a = 5;\nexport const b = 6;");
    // A module's own require finds modules beside it.
    write(QStringLiteral("modules/sum.js"), "export default require('values.js').a + require('values.js').b;");

    EXPECT_EQ(run(QStringLiteral("require('modules/greet.js')('you')")), QStringLiteral("hi you"));
    EXPECT_EQ(run(QStringLiteral("require('modules/values.js').b")), QStringLiteral("6"));
    EXPECT_EQ(run(QStringLiteral("require('modules/sum.js')")), QStringLiteral("11"));
    EXPECT_EQ(run(QStringLiteral("require('modules/values.js').default")), QStringLiteral("undefined"));

    EXPECT_EQ(texts(logs, 1).first(), QStringLiteral("require module: 'modules/greet.js'"));
    const QString greet = canonical(QStringLiteral("modules/greet.js"));
    const QString values = canonical(QStringLiteral("modules/values.js"));
    const QString sum = canonical(QStringLiteral("modules/sum.js"));
    // A module is reported once it is imported, after the modules it required itself.
    EXPECT_EQ(texts(required, 0), (QStringList{greet, values, values, values, sum, values}));
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(ScriptEngineTest, RequireOfAMissingOrFailingModule)
{
    write(QStringLiteral("broken.js"), "export const a = notDefined.x;");

    EXPECT_EQ(run(QStringLiteral("require('missing.js')")), QStringLiteral("thrown: Error: File '' is not exists"));

    EXPECT_EQ(run(QStringLiteral("require('broken.js')")), QStringLiteral("undefined"));
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors.at(0).at(1).toString(),
              QStringLiteral("Error in file '%1', at line 1: ReferenceError: notDefined is not defined")
                  .arg(canonical(QStringLiteral("broken.js"))));
    EXPECT_TRUE(required.isEmpty());
}

#include "test_js_engine.moc"
