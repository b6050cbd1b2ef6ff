#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/JSEngine.h"
#include "QtPrinters.h"
#include "base/Machine.h"
#include "base/ScriptConsole.h"
#include "geometry/MotorElement.h"
#include "geometry/PoleArrangement.h"
#include "materials/Magnetization.h"
#include "winding/Winding.h"

#include <QFile>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// What the configuration script sees of a document: its machine type, and the
// method by which an assignment to config reaches it.
class MotorStub : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Machine::Type machineType READ machineType)
public:
    Machine::Type machineType() const { return type; }
    Q_INVOKABLE void setConfigVariable(const QString &name, const QVariant &value) { changed.insert(name, value); }

    Machine::Type type = Machine::SR;
    QVariantMap changed;
};

const QString configScript = QStringLiteral(ZDS_SOURCE_DIR "/assets/scripts/ZolvaneConfig.js");

// How the document keeps track of assignments to config.
const QString proxy = QStringLiteral(
    "config = new Proxy(config, { set(target, prop, val) { let v = target[prop]; target[prop] = val;"
    " if(v !== val) { motor.setConfigVariable(prop, val); } return true; } });");

// The shipped configuration script, loaded as a document loads it.
class ConfigScriptTest : public ::testing::Test
{
protected:
    ConfigScriptTest()
        : engine(&motor, nullptr)
        , console(ScriptConsole::Motor)
        , warnings(&console, &ScriptConsole::signalWarn)
    {
        engine.installObject(QStringLiteral("console"), &console);
    }

    void SetUp() override
    {
        QFile file(configScript);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QJSValue result = engine.evaluate(QString::fromUtf8(file.readAll()), configScript, 1);
        ASSERT_FALSE(result.isError()) << JSEngine::errorString(result).toStdString();
        ASSERT_TRUE(engine.globalObject().property(QStringLiteral("config")).isObject());
        ASSERT_FALSE(engine.evaluate(proxy).isError());
        config.setScriptObject(engine.globalObject().property(QStringLiteral("config")), &engine);
    }

    void update(Machine::Type type)
    {
        motor.type = type;
        motor.changed.clear();
        QJSValue object = engine.globalObject().property(QStringLiteral("config"));
        const QJSValue result = object.property(QStringLiteral("update")).callWithInstance(object);
        ASSERT_FALSE(result.isError()) << JSEngine::errorString(result).toStdString();
    }
    void assign(const QString &name, const QVariant &value)
    {
        engine.globalObject().property(QStringLiteral("config")).setProperty(name, engine.toScriptValue(value));
    }
    QVariant value(const char *name) const { return config.scriptProperty(QLatin1String(name)); }
    // The flags of gaps 2 to 4 as "mirror rotate reverse" letters, "-" for off: "MR-".
    QString gapFlags(int gap) const
    {
        return QString(value(qPrintable(QStringLiteral("poleMirrorUD%1").arg(gap))).toBool() ? 'M' : '-')
               + (value(qPrintable(QStringLiteral("poleRotatePolePitch%1").arg(gap))).toBool() ? 'R' : '-')
               + (value(qPrintable(QStringLiteral("layoutReverse%1").arg(gap))).toBool() ? 'L' : '-');
    }
    QStringList flags() const { return {gapFlags(2), gapFlags(3), gapFlags(4)}; }

    MotorStub motor;
    JSEngine engine;
    ScriptConsole console;
    QSignalSpy warnings;
    ConfigObject config;
};

} // namespace

TEST_F(ConfigScriptTest, EveryDesignVariableIsMirroredAsAProperty)
{
    QStringList expected;
    for (const char *element : {"stator", "rotor"}) {
        for (const char *name : {"OuterDiameter", "InnerDiameter", "Type"})
            expected << QLatin1String(element) + QLatin1String(name);
        for (int i = 1; i <= 3; ++i)
            expected << QStringLiteral("%1Height%2").arg(QLatin1String(element)).arg(i);
        for (int i = 1; i <= 4; ++i)
            expected << QStringLiteral("%1AngularDisplacement%2").arg(QLatin1String(element)).arg(i);
    }
    expected << QStringLiteral("statorNumberSlots") << QStringLiteral("rotorNumberPolePairs")
             << QStringLiteral("poleArrangement") << QStringLiteral("windingType") << QStringLiteral("windingLayers")
             << QStringLiteral("windingLayersOrientation") << QStringLiteral("statorConnection")
             << QStringLiteral("meshHorizontalSymmetry");
    for (int i = 2; i <= 4; ++i) {
        for (const char *name : {"poleMirrorUD", "poleRotatePolePitch", "layoutReverse", "layoutNew", "layoutNewLayer"})
            expected << QLatin1String(name) + QString::number(i);
    }
    expected.sort();

    QStringList names = config.properties().keys();
    names.sort();
    EXPECT_EQ(names.size(), 43);
    EXPECT_EQ(names, expected);
    QStringList scriptKeys = config.scriptProperties().keys();
    scriptKeys.removeOne(QStringLiteral("update"));
    EXPECT_EQ(scriptKeys, names) << "update is the only function";
}

TEST_F(ConfigScriptTest, TheFirstDesignIsASingleSidedMachineThatUpdateLeavesAlone)
{
    EXPECT_EQ(value("statorNumberSlots").toInt(), 12);
    EXPECT_EQ(value("rotorNumberPolePairs").toInt(), 5);
    EXPECT_LT(value("statorInnerDiameter").toDouble(), value("statorOuterDiameter").toDouble());
    EXPECT_LT(value("rotorInnerDiameter").toDouble(), value("rotorOuterDiameter").toDouble());
    for (const char *height : {"statorHeight1", "rotorHeight1"})
        EXPECT_GT(value(height).toDouble(), 0.0) << height;
    EXPECT_EQ(value("statorType").toInt(), MotorElement::Yoke);
    EXPECT_EQ(value("rotorType").toInt(), MotorElement::Yoke);
    EXPECT_EQ(value("windingType").toInt(), Winding::Planar);
    EXPECT_EQ(value("windingLayers").toInt(), 2);
    EXPECT_EQ(value("windingLayersOrientation").toInt(), Winding::LeftRight);

    update(Machine::SR);
    EXPECT_TRUE(motor.changed.isEmpty()) << "the defaults are consistent already";
    EXPECT_TRUE(warnings.isEmpty());
}

TEST_F(ConfigScriptTest, UpdateFitsArrangementConnectionAndFlagsToTheMachine)
{
    update(Machine::SRS);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NS);
    EXPECT_EQ(value("statorConnection").toInt(), Winding::Connection_1s2);
    // The rotor faces both ways; N-S shows the same field sense to both stators.
    EXPECT_EQ(flags(), (QStringList{QStringLiteral("MR-"), QStringLiteral("---"), QStringLiteral("---")}));
    EXPECT_EQ(motor.changed.keys(), (QStringList{QStringLiteral("poleArrangement"), QStringLiteral("poleMirrorUD2"),
                                                 QStringLiteral("poleRotatePolePitch2")}));

    update(Machine::SRSRS);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NSNS);
    EXPECT_EQ(value("statorConnection").toInt(), Winding::Connection_1s2s3s4);
    EXPECT_EQ(flags(), (QStringList{QStringLiteral("MR-"), QStringLiteral("---"), QStringLiteral("MR-")}));

    update(Machine::RSR);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NS);
    EXPECT_EQ(value("statorConnection").toInt(), Winding::Connection_1s2);

    assign(QStringLiteral("poleArrangement"), int(PoleArrangement::NN));
    update(Machine::RSR);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NN) << "an arrangement that fits stays";
    // N-N turns the field round in the second gap, and with it the coils there.
    EXPECT_EQ(flags(), (QStringList{QStringLiteral("M-L"), QStringLiteral("---"), QStringLiteral("---")}));

    update(Machine::RSRSR);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NSNS);
    EXPECT_EQ(flags(), (QStringList{QStringLiteral("MR-"), QStringLiteral("---"), QStringLiteral("MR-")}));

    update(Machine::SR);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::Unknown);
    EXPECT_EQ(flags(), (QStringList{QStringLiteral("---"), QStringLiteral("---"), QStringLiteral("---")}));
    EXPECT_TRUE(warnings.isEmpty());
}

TEST_F(ConfigScriptTest, UpdateGivesBodiesWithoutAYokeAFieldThatPassesThrough)
{
    assign(QStringLiteral("rotorType"), int(MotorElement::Yokeless));
    assign(QStringLiteral("poleArrangement"), int(PoleArrangement::NN));
    update(Machine::SRS);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NS);

    assign(QStringLiteral("statorType"), int(MotorElement::Yokeless));
    assign(QStringLiteral("poleArrangement"), int(PoleArrangement::NNSS));
    assign(QStringLiteral("statorConnection"), int(Winding::Connection_1s2s3s4));
    update(Machine::RSRSR);
    EXPECT_EQ(value("poleArrangement").toInt(), PoleArrangement::NSNS);
    EXPECT_EQ(value("statorType").toInt(), MotorElement::Yokeless) << "a middle stator keeps its kind";
    // Coils through both yokeless stators: two layouts joined in series.
    EXPECT_EQ(value("statorConnection").toInt(), Winding::Connection_1s2);

    update(Machine::SR);
    EXPECT_EQ(value("statorType").toInt(), MotorElement::Yoke);
    EXPECT_EQ(value("rotorType").toInt(), MotorElement::Yoke);

    assign(QStringLiteral("meshHorizontalSymmetry"), true);
    update(Machine::SR);
    EXPECT_FALSE(value("meshHorizontalSymmetry").toBool()) << "a single-sided machine has no mirror plane";
}

TEST(ConfigObjectTest, PoleTransformFollowsTheFlagsOfTheNextLayer)
{
    JSEngine engine;
    ConfigObject config;
    config.setScriptObject(engine.evaluate(QStringLiteral(
                               "({poleMirrorUD2: true, poleRotatePolePitch2: false,"
                               "  poleMirrorUD3: false, poleRotatePolePitch3: true,"
                               "  poleMirrorUD4: true, poleRotatePolePitch4: true})")),
                           &engine);
    auto parallel = [&config](int item, double angle) {
        Magnetization magnetization;
        magnetization.type = Magnetization::Type::Parallel;
        magnetization.angle = angle;
        config.applyPoleTransform(item, magnetization);
        return magnetization.angle;
    };
    auto radial = [&config](int item, Magnetization::Direction direction) {
        Magnetization magnetization;
        magnetization.type = Magnetization::Type::Radial;
        magnetization.direction = direction;
        config.applyPoleTransform(item, magnetization);
        return magnetization.direction;
    };
    using D = Magnetization::Direction;

    // Mirror only.
    EXPECT_DOUBLE_EQ(parallel(1, 90.0), 270.0);
    EXPECT_DOUBLE_EQ(parallel(1, 180.0), 180.0);
    EXPECT_DOUBLE_EQ(parallel(1, 30.0), 330.0);
    EXPECT_EQ(radial(1, D::CW), D::CW);
    // Rotate only.
    EXPECT_DOUBLE_EQ(parallel(2, 90.0 + 1e-8), 270.0 + 1e-8);
    EXPECT_DOUBLE_EQ(parallel(2, 0.0), 180.0);
    EXPECT_DOUBLE_EQ(parallel(2, 30.0), 210.0);
    EXPECT_EQ(radial(2, D::CW), D::CCW);
    EXPECT_EQ(radial(2, D::From), D::From);
    // Both.
    EXPECT_DOUBLE_EQ(parallel(3, 270.0), 270.0);
    EXPECT_DOUBLE_EQ(parallel(3, 0.0), 180.0);
    EXPECT_DOUBLE_EQ(parallel(3, 200.0), 340.0);
    EXPECT_EQ(radial(3, D::CCW), D::CW);
    // No layer of that number.
    EXPECT_DOUBLE_EQ(parallel(0, 90.0), 90.0);
    EXPECT_DOUBLE_EQ(parallel(4, 90.0), 90.0);
    EXPECT_EQ(radial(4, D::CW), D::CW);
}

#include "test_config_script.moc"
