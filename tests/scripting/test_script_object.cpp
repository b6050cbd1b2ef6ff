#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/ScriptObject.h"
#include "LockHeldElsewhere.h"
#include "QtPrinters.h"

#include <QJSEngine>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <future>
#include <mutex>

namespace {

QStringList dynamicNames(const QObject &object)
{
    QStringList names;
    const QList<QByteArray> raw = object.dynamicPropertyNames();
    for (const QByteArray &name : raw)
        names << QString::fromLatin1(name);
    names.sort();
    return names;
}

// A script object bound to a mirror, with the engine that holds it.
struct Bound {
    explicit Bound(const QString &program)
        : object(QStringLiteral("stator"))
        , spy(&object, &ScriptObject::variableChanged)
    {
        script = engine.evaluate(program);
        object.setScriptObject(script, &engine);
    }
    QJSValue read(const QString &name) const { return script.property(name); }

    QJSEngine engine;
    QJSValue script;
    ScriptObject object;
    QSignalSpy spy;
};

} // namespace

TEST(ScriptObjectTest, ObjectNameIsScriptAndTheCapitalisedName)
{
    EXPECT_EQ(ScriptObject(QStringLiteral("config")).objectName(), QStringLiteral("scriptConfig"));
    EXPECT_EQ(ScriptObject(QStringLiteral("rotor")).objectName(), QStringLiteral("scriptRotor"));
    EXPECT_EQ(ScriptObject(QString()).objectName(), QStringLiteral("script"));
    EXPECT_EQ(ConfigObject().objectName(), QStringLiteral("scriptConfig"));
}

TEST(ScriptObjectTest, BindingMirrorsEachVariableWithoutAnnouncingIt)
{
    Bound bound(QStringLiteral("({a: 1.5, b: 'x', getGeometry: function(id) { return id; }})"));

    EXPECT_EQ(dynamicNames(bound.object), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_DOUBLE_EQ(bound.object.property("a").toDouble(), 1.5);
    EXPECT_EQ(bound.object.property("b").toString(), QStringLiteral("x"));
    EXPECT_EQ(bound.spy.count(), 0);
    EXPECT_DOUBLE_EQ(bound.read(QStringLiteral("a")).toNumber(), 1.5);
}

TEST(ScriptObjectTest, RebindingAndUnbindingReplaceAllVariables)
{
    Bound bound(QStringLiteral("({a: 1, b: 2})"));

    const QJSValue other = bound.engine.evaluate(QStringLiteral("({c: 3})"));
    bound.object.setScriptObject(other, &bound.engine);
    EXPECT_EQ(dynamicNames(bound.object), QStringList{QStringLiteral("c")});

    bound.object.setScriptObject(QJSValue(QJSValue::UndefinedValue), nullptr);
    EXPECT_TRUE(bound.object.dynamicPropertyNames().isEmpty());
    EXPECT_TRUE(bound.object.scriptProperties().isEmpty());
    EXPECT_EQ(bound.spy.count(), 0);
    EXPECT_DOUBLE_EQ(bound.read(QStringLiteral("a")).toNumber(), 1.0) << "unbinding leaves the script alone";
}

TEST(ScriptObjectTest, WritingAVariableReachesTheScriptAndIsAnnouncedOncePerChange)
{
    Bound bound(QStringLiteral("({slots: 12, name: 'yoke'})"));

    bound.object.setProperty("slots", 24);
    bound.object.setProperty("slots", 24);
    bound.object.setProperty("name", QStringLiteral("yokeless"));

    EXPECT_EQ(bound.read(QStringLiteral("slots")).toInt(), 24);
    EXPECT_EQ(bound.read(QStringLiteral("name")).toString(), QStringLiteral("yokeless"));
    ASSERT_EQ(bound.spy.count(), 2);
    EXPECT_EQ(bound.spy.at(0).at(0).toString(), QStringLiteral("slots"));
    EXPECT_EQ(bound.spy.at(0).at(1).toInt(), 24);
    EXPECT_EQ(bound.spy.at(1).at(0).toString(), QStringLiteral("name"));
    EXPECT_EQ(bound.spy.at(1).at(1).toString(), QStringLiteral("yokeless"));
}

TEST(ScriptObjectTest, PropertyMapRoundTrip)
{
    Bound bound(QStringLiteral("({a: 1, b: 'x', c: true})"));

    const QVariantMap map{{QStringLiteral("a"), 2.25}, {QStringLiteral("b"), QStringLiteral("y")},
                          {QStringLiteral("c"), false}};
    bound.object.setProperty("properties", map);

    EXPECT_EQ(bound.object.properties(), map);
    EXPECT_EQ(bound.object.property("properties").toMap(), map);
    EXPECT_DOUBLE_EQ(bound.read(QStringLiteral("a")).toNumber(), 2.25);
    EXPECT_EQ(bound.read(QStringLiteral("b")).toString(), QStringLiteral("y"));
    EXPECT_FALSE(bound.read(QStringLiteral("c")).toBool());
    EXPECT_EQ(bound.object.scriptProperties(), map);
    EXPECT_EQ(bound.spy.count(), 3);

    bound.object.setProperties(map);
    EXPECT_EQ(bound.spy.count(), 3) << "equal values are no change";
}

TEST(ScriptObjectTest, SetPropertiesSkipsInvalidValuesAndWritesWithSignalsBlocked)
{
    Bound bound(QStringLiteral("({a: 1, b: 2})"));

    bound.object.blockSignals(true);
    bound.object.setProperties({{QStringLiteral("a"), QVariant()}, {QStringLiteral("b"), 5}});
    bound.object.blockSignals(false);

    EXPECT_EQ(dynamicNames(bound.object), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(bound.read(QStringLiteral("a")).toInt(), 1);
    EXPECT_EQ(bound.read(QStringLiteral("b")).toInt(), 5);
    EXPECT_EQ(bound.spy.count(), 0);
}

TEST(ScriptObjectTest, SetScriptPropertyWritesOnlyChangesButAlwaysAnnounces)
{
    Bound bound(QStringLiteral("({ writes: 0, held: 1, get a() { return this.held; },"
                               "   set a(v) { this.writes++; this.held = v; } })"));

    bound.object.setScriptProperty(QStringLiteral("a"), 1);
    EXPECT_EQ(bound.read(QStringLiteral("writes")).toInt(), 0);
    ASSERT_EQ(bound.spy.count(), 1);
    EXPECT_EQ(bound.spy.at(0).at(1).toInt(), 1);

    bound.object.setScriptProperty(QStringLiteral("a"), 3);
    EXPECT_EQ(bound.read(QStringLiteral("writes")).toInt(), 1);
    EXPECT_EQ(bound.read(QStringLiteral("held")).toInt(), 3);
    EXPECT_EQ(bound.spy.count(), 2);

    bound.object.setScriptProperty(QStringLiteral("a"), QVariant());
    EXPECT_EQ(bound.spy.count(), 2) << "an invalid value is refused";
}

TEST(ScriptObjectTest, WithoutAScriptObjectNothingIsAnnounced)
{
    ScriptObject object(QStringLiteral("stator"));
    QSignalSpy spy(&object, &ScriptObject::variableChanged);

    object.setProperty("a", 1);
    object.setScriptObject(QJSValue(QJSValue::UndefinedValue), nullptr);
    object.setProperty("b", 2);
    object.setScriptProperty(QStringLiteral("b"), 3);

    EXPECT_EQ(object.property("b").toInt(), 2);
    EXPECT_FALSE(object.scriptProperty(QStringLiteral("b")).isValid());
    EXPECT_EQ(spy.count(), 0);
}

// A body runs the script on a worker under its element's lock: the mirror waits for
// that lock to touch the script, and lets it go before announcing a change, since a
// listener may wait for the body.
TEST(ScriptObjectTest, ScriptValuesAreTouchedUnderTheSharedLockAndAnnouncedOutsideIt)
{
    Bound bound(QStringLiteral("({a: 1})"));
    std::recursive_mutex lock;
    bound.object.shareLock(lock);
    const auto lockFreeOnAnotherThread = [&lock] {
        return std::async(std::launch::async, [&lock] {
            const bool free = lock.try_lock();
            if (free)
                lock.unlock();
            return free;
        }).get();
    };
    bool freeWhenAnnounced = false;
    QObject::connect(&bound.object, &ScriptObject::variableChanged,
                     [&] { freeWhenAnnounced = lockFreeOnAnotherThread(); });

    {
        const LockHeldElsewhere holder(lock);
        bound.object.setProperty("a", 2);
        EXPECT_TRUE(holder.released()) << "the script was written beside the holder of the lock";
    }

    EXPECT_EQ(bound.read(QStringLiteral("a")).toInt(), 2);
    ASSERT_EQ(bound.spy.count(), 1);
    EXPECT_TRUE(freeWhenAnnounced) << "the change was announced while the lock was held";
}

TEST(ConfigObjectTest, LayoutReverseReadsTheFlagOfTheNextNumber)
{
    QJSEngine engine;
    ConfigObject config;
    config.setScriptObject(
        engine.evaluate(QStringLiteral("({layoutReverse2: false, layoutReverse3: true, layoutReverse4: true})")),
        &engine);

    EXPECT_FALSE(config.layoutReverse(0));
    EXPECT_FALSE(config.layoutReverse(1));
    EXPECT_TRUE(config.layoutReverse(2));
    EXPECT_TRUE(config.layoutReverse(3));
    EXPECT_FALSE(config.layoutReverse(4));
    EXPECT_FALSE(config.layoutReverse(-1));

    config.setScriptObject(engine.evaluate(QStringLiteral("({})")), &engine);
    EXPECT_FALSE(config.layoutReverse(2)) << "a missing flag counts as false";
}

TEST(ConfigObjectTest, CorrectPropertiesAnnouncesTheScriptValuesThatDiffer)
{
    QJSEngine engine;
    ConfigObject config;
    QJSValue script = engine.evaluate(QStringLiteral("({slots: 12, poles: 5, kind: 'SR'})"));
    config.setScriptObject(script, &engine);
    QSignalSpy spy(&config, &ScriptObject::variableChanged);

    script.setProperty(QStringLiteral("slots"), 24);
    script.setProperty(QStringLiteral("extra"), 1);
    config.correctProperties();

    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("slots"));
    EXPECT_EQ(spy.at(0).at(1).toInt(), 24);
    EXPECT_EQ(config.property("slots").toInt(), 12) << "the mirror is left to the receivers";
}
