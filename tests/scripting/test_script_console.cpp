#include "QtPrinters.h"
#include "base/ScriptConsole.h"
#include "support/ConsoleSpies.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJSEngine>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QThread>
#include <gtest/gtest.h>

#include <thread>

namespace {

// The console as a script sees it, kept by the test rather than by the engine.
struct ScriptedConsole {
    ScriptedConsole()
        : console(ScriptConsole::Stator)
    {
        QQmlEngine::setObjectOwnership(&console, QQmlEngine::CppOwnership);
        engine.globalObject().setProperty(QStringLiteral("console"), engine.newQObject(&console));
    }
    QStringList logLines(const QString &program)
    {
        QSignalSpy spy(&console, &ScriptConsole::signalLog);
        const QJSValue result = engine.evaluate(program);
        EXPECT_FALSE(result.isError()) << result.toString().toStdString();
        QStringList lines;
        for (const QList<QVariant> &arguments : qAsConst(spy))
            lines << arguments.at(1).toString();
        return lines;
    }

    ScriptConsole console;
    QJSEngine engine;
};

} // namespace

TEST(ScriptConsoleTest, EachMethodRaisesOnlyItsOwnSignalWithTheFixedScope)
{
    ScriptConsole console(ScriptConsole::Winding);
    ConsoleSpies spies(&console);

    console.log(QStringLiteral("l"));
    console.error(QStringLiteral("e"));
    console.warn(QStringLiteral("w"));
    console.info(QStringLiteral("i"));
    console.print(QStringLiteral("p"));
    console.message(ScriptConsole::Error, QStringLiteral("m"));
    console.message(static_cast<ScriptConsole::Method>(4), QStringLiteral("no method"));

    ASSERT_EQ(spies.log.count(), 2);
    ASSERT_EQ(spies.error.count(), 2);
    ASSERT_EQ(spies.warn.count(), 1);
    ASSERT_EQ(spies.info.count(), 1);
    EXPECT_EQ(spies.log.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Winding);
    EXPECT_EQ(spies.log.at(0).at(1).toString(), QStringLiteral("l"));
    EXPECT_EQ(spies.log.at(1).at(1).toString(), QStringLiteral("p"));
    EXPECT_EQ(spies.error.at(0).at(1).toString(), QStringLiteral("e"));
    EXPECT_EQ(spies.error.at(1).at(1).toString(), QStringLiteral("m"));
    EXPECT_EQ(spies.warn.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Winding);
    EXPECT_EQ(spies.info.at(0).at(1).toString(), QStringLiteral("i"));
}

TEST(ScriptConsoleTest, SeveralTextsAreJoinedWithOneBlank)
{
    ScriptConsole console(ScriptConsole::Motor);
    QSignalSpy warn(&console, &ScriptConsole::signalWarn);

    console.warn(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"));
    console.warn(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4"),
                 QStringLiteral("5"), QStringLiteral("6"), QStringLiteral("7"), QStringLiteral("8"),
                 QStringLiteral("9"), QStringLiteral("10"));

    ASSERT_EQ(warn.count(), 2);
    EXPECT_EQ(warn.at(0).at(1).toString(), QStringLiteral("a b c"));
    EXPECT_EQ(warn.at(1).at(1).toString(), QStringLiteral("1 2 3 4 5 6 7 8 9 10"));
}

TEST(ScriptConsoleTest, ScriptCallsChooseTheOverloadByTheirArguments)
{
    ScriptedConsole scripted;

    EXPECT_EQ(scripted.logLines(QStringLiteral("console.log(1, 'a')")), QStringList{QStringLiteral("1 a")});
    EXPECT_EQ(scripted.logLines(QStringLiteral("console.print('p')")), QStringList{QStringLiteral("p")});

    QSignalSpy error(&scripted.console, &ScriptConsole::signalError);
    scripted.engine.evaluate(QStringLiteral("console.error('x', 2.5, true)"));
    ASSERT_EQ(error.count(), 1);
    EXPECT_EQ(error.at(0).at(0).value<ScriptConsole::Scope>(), ScriptConsole::Stator);
    EXPECT_EQ(error.at(0).at(1).toString(), QStringLiteral("x 2.5 true"));
}

TEST(ScriptConsoleTest, DirDumpsOwnPropertiesThenThePrototypeIndented)
{
    ScriptedConsole scripted;

    const QStringList lines = scripted.logLines(QStringLiteral(
        "var base = { shared: 'yes' };"
        "var value = Object.create(base);"
        "value.a = 1;"
        "value.f = function() { return 2; };"
        "console.dir(value);"));

    const QStringList ownAndBase{QStringLiteral("call dir:"),       QStringLiteral("[object Object]"),
                                 QStringLiteral("a: 1"),            QStringLiteral("function f() { [native code] }"),
                                 QStringLiteral("[object Object]"), QStringLiteral("    shared: yes"),
                                 QStringLiteral("[object Object]")};
    // The engine shows no source of a function; an anonymous one takes the name of its key.
    ASSERT_GT(lines.size(), ownAndBase.size());
    EXPECT_EQ(lines.mid(0, ownAndBase.size()), ownAndBase);
    // Object.prototype comes last, its built-in functions eight blanks in.
    EXPECT_TRUE(lines.contains(QStringLiteral("        function toString() { [native code] }")));
    for (const QString &line : lines.mid(ownAndBase.size()))
        EXPECT_TRUE(line.startsWith(QStringLiteral("        "))) << line.toStdString();
}

TEST(ScriptConsoleTest, AMutedConsoleEmitsNothingUntilUnmuted)
{
    ScriptedConsole scripted;
    ScriptConsole &console = scripted.console;
    ConsoleSpies spies(&console);

    console.setMuted(true);
    console.log(QStringLiteral("l"));
    console.error(QStringLiteral("e"), QStringLiteral("f"));
    console.warn(QStringLiteral("w"));
    console.info(QStringLiteral("i"));
    console.print(QStringLiteral("p"));
    console.message(ScriptConsole::Info, QStringLiteral("m"));
    scripted.engine.evaluate(QStringLiteral("console.dir({a: 1}); console.log('s')"));
    EXPECT_EQ(spies.total(), 0);

    console.setMuted(false);
    console.info(QStringLiteral("i"));
    EXPECT_EQ(spies.info.count(), 1);
}

TEST(ScriptConsoleTest, ClearCarriesTheScopeToAReceiverOfScopes)
{
    ScriptConsole console(ScriptConsole::Mesh);
    QObject receiver;
    QList<ScriptConsole::Scopes> cleared;
    QObject::connect(&console, &ScriptConsole::clear, &receiver,
            [&cleared](ScriptConsole::Scopes scopes) { cleared << scopes; });

    emit console.clear(console.scope());

    ASSERT_EQ(cleared.size(), 1);
    EXPECT_TRUE(cleared.first().testFlag(ScriptConsole::Mesh));
    EXPECT_EQ(cleared.first(), ScriptConsole::Scopes(ScriptConsole::Mesh));
}

TEST(ScriptConsoleTest, MessagesOfAWorkerThreadArriveQueuedInOrderOnTheMainThread)
{
    ScriptConsole console(ScriptConsole::Rotor);
    QObject receiver;
    QStringList texts;
    QList<ScriptConsole::Scope> scopes;
    QList<QThread *> threads;
    auto record = [&](ScriptConsole::Scope scope, const QString &text) {
        scopes << scope;
        texts << text;
        threads << QThread::currentThread();
    };
    QObject::connect(&console, &ScriptConsole::signalLog, &receiver, record);
    QObject::connect(&console, &ScriptConsole::signalError, &receiver, record);
    QList<ScriptConsole::Scopes> cleared;
    QObject::connect(&console, &ScriptConsole::clear, &receiver,
            [&cleared](ScriptConsole::Scopes scopes) { cleared << scopes; });

    std::thread worker([&console] {
        for (int i = 0; i < 50; ++i)
            console.log(QString::number(i));
        console.error(QStringLiteral("done"));
        emit console.clear(console.scope());
    });
    worker.join();
    EXPECT_TRUE(texts.isEmpty()) << "delivered before the event loop ran";

    QElapsedTimer timer;
    timer.start();
    while (texts.size() < 51 && timer.elapsed() < 5000)
        QCoreApplication::processEvents();

    ASSERT_EQ(texts.size(), 51);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(texts.at(i), QString::number(i));
    EXPECT_EQ(texts.last(), QStringLiteral("done"));
    EXPECT_EQ(scopes.count(ScriptConsole::Rotor), 51);
    EXPECT_EQ(threads.count(QThread::currentThread()), 51);
    EXPECT_EQ(cleared, QList<ScriptConsole::Scopes>{ScriptConsole::Rotor});
}
