#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlShape.h"
#include "QtPrinters.h"
#include "base/ScriptConsole.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cmath>

#include "base/Numeric.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/solid.h"

namespace {

constexpr double pi = 3.14159265358979323846;

// An engine with a console, into which native shapes and values are installed
// as globals, the way the geometry provider hands them to scripts.
class QmlShapeTest : public ::testing::Test
{
protected:
    QmlShapeTest()
        : console(ScriptConsole::Stator)
        , errors(&console, &ScriptConsole::signalError)
    {
        QmlShape::registerTypes();
        engine.installObject(QStringLiteral("console"), &console);
        install("box", QmlShape(servoce::box(10, 20, 30, false), &engine));
        install("cylinder", QmlShape(servoce::cylinder(5, 10, false), &engine));
        install("face", QmlShape(servoce::square(10, false), &engine));
        install("edge", QmlShape(servoce::segment({0, 0, 0}, {10, 0, 0}), &engine));
        install("path", QmlShape(servoce::polysegment({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}}, false), &engine));
        install("origin", QmlPoint3());
        install("vx", QmlVector3(servoce::vector3(1, 0, 0)));
        install("vz", QmlVector3(servoce::vector3(0, 0, 2)));
    }

    template <typename T>
    void install(const char *name, const T &value)
    {
        engine.globalObject().setProperty(QLatin1String(name), engine.toScriptValue(QVariant::fromValue(value)));
    }

    double number(const QString &program) { return engine.evaluate(program).toNumber(); }

    QmlShape shape(const QString &program)
    {
        return QmlShape::fromVariant(engine.evaluate(program).toVariant());
    }

    // The message a program threw, or "" if it ran through.
    QString thrown(const QString &program)
    {
        const QJSValue result = engine.evaluate(QStringLiteral("try { %1; '' } catch (e) { e.message }").arg(program));
        return result.toString();
    }

    QString lastError() const { return errors.isEmpty() ? QString() : errors.last().at(1).toString(); }

    JSEngine engine;
    ScriptConsole console;
    QSignalSpy errors;
};

} // namespace

TEST_F(QmlShapeTest, ScriptMeasuresAreTheShapeLayers)
{
    const servoce::solid_shape box = servoce::box(10, 20, 30, false);
    const servoce::solid_shape cylinder = servoce::cylinder(5, 10, false);

    EXPECT_DOUBLE_EQ(number(QStringLiteral("box.volume()")), box.volume());
    EXPECT_NEAR(number(QStringLiteral("box.volume()")), 6000.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("cylinder.volume()")), pi * 25 * 10, 1e-6);
    EXPECT_DOUBLE_EQ(number(QStringLiteral("cylinder.volume()")), cylinder.volume());
    EXPECT_DOUBLE_EQ(number(QStringLiteral("face.area()")), servoce::square(10, false).area());
    EXPECT_NEAR(number(QStringLiteral("face.area()")), 100.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("edge.length()")), 10.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("path.length()")), 7.0, 1e-9);

    const QmlPoint3 center = engine.evaluate(QStringLiteral("box.center()")).toVariant().value<QmlPoint3>();
    EXPECT_NEAR(center.x, 5.0, 1e-9);
    EXPECT_NEAR(center.y, 10.0, 1e-9);
    EXPECT_NEAR(center.z, 15.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("cylinder.center().z")), 5.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("cylinder.center().x")), 0.0, 1e-9);

    // The box carries the kernel's tolerance, so sizes are near, not equal.
    EXPECT_NEAR(number(QStringLiteral("box.boundingBox().ySize")), 20.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.boundingBox().zCenter")), 15.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("cylinder.boundingBox().xmin")), -5.0, 1e-6);
    EXPECT_EQ(engine.evaluate(QStringLiteral("box.isEmpty()")).toBool(), false);
    EXPECT_TRUE(errors.isEmpty()) << lastError().toStdString();
}

TEST_F(QmlShapeTest, TransformsAndBooleansFromScriptGiveTheExpectedVolumes)
{
    EXPECT_NEAR(number(QStringLiteral("box.translate(5, 0, 0).unite(box).volume()")), 9000.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.right(5).intersect(box).volume()")), 3000.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.difference(box.moveX(5)).volume()")), 3000.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.diff(cylinder).volume()")), 6000.0 - pi * 25 * 10 / 4, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.scaleX(2).volume()")), 12000.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.scaleXYZ(2, 0.5, 3).volume()")), 18000.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.scale(2, origin).volume()")), 48000.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("face.extrudeZ(3).volume()")), 300.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("face.extrude(0, 0, -2).volume()")), 200.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("face.extrude(vz).volume()")), 200.0, 1e-9);

    // Directions: left, back and down are the negatives; angles are degrees.
    EXPECT_NEAR(number(QStringLiteral("box.left(5).boundingBox().xmin")), -5.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.back(5).boundingBox().ymin")), -5.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.down(5).up(2).boundingBox().zmin")), -3.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.move(origin.move(1, 2, 3)).center().z")), 18.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("box.rotateZ(90).boundingBox().xmin")), -20.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("box.rotateZ(-270).boundingBox().xmin")), -20.0, 1e-6);
    // Mirrors in an axis keep that axis' coordinate and turn the others round.
    EXPECT_NEAR(number(QStringLiteral("box.mirrorX().center().x")), 5.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("box.mirrorX().center().y")), -10.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("box.mirrorO().center().z")), -15.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("face.wire().length()")), 40.0, 1e-9);
    EXPECT_TRUE(errors.isEmpty()) << lastError().toStdString();
}

TEST_F(QmlShapeTest, CallsThatChangeNothingGiveACopyWithoutTheKernel)
{
    const QmlShape box = shape(QStringLiteral("box"));
    ASSERT_FALSE(box.is_null());

    for (const char *program : {"box.move(1e-13, 0, 0)", "box.translate(1e-12, -1e-12, 0)", "box.rotateZ(1e-13)",
                                "box.scaleX(1.0000000000001)", "box.scaleXY(1, 1)", "box.extrudeZ(0)"})
        EXPECT_TRUE(shape(QLatin1String(program)).is_equal(box)) << program;

    // A full turn passes the test and then becomes a rotation by 0: a new shape in place.
    const QmlShape turned = shape(QStringLiteral("box.rotateX(360)"));
    EXPECT_FALSE(turned.is_equal(box));
    EXPECT_NEAR(turned.center().z, 15.0, 1e-9);
    EXPECT_FALSE(shape(QStringLiteral("box.scaleX(1.00000000001)")).is_equal(box));
    EXPECT_FALSE(shape(QStringLiteral("box.move(1e-11, 0, 0)")).is_equal(box));
    EXPECT_EQ(shape(QStringLiteral("box.unite(cylinder)")).engine(), &engine) << "results stay in their engine";
    EXPECT_TRUE(errors.isEmpty()) << lastError().toStdString();
}

TEST_F(QmlShapeTest, WrongUseIsThrownAndShownOnTheConsole)
{
    // A boolean with nothing: the script sees the error and the console shows it.
    EXPECT_EQ(thrown(QStringLiteral("face.unite(undefined)")), QStringLiteral("Shape is null"));
    EXPECT_EQ(lastError(), QStringLiteral("Shape is null"));

    // The numeric guard: NaN is reported by the parameter's name.
    EXPECT_EQ(thrown(QStringLiteral("box.translate(NaN, 0, 0)")), QStringLiteral("Argument 'x' is NaN"));
    EXPECT_EQ(thrown(QStringLiteral("box.scaleY(NaN)")), QStringLiteral("Argument 's' is NaN"));
    EXPECT_EQ(thrown(QStringLiteral("box.scaleXZ(2, NaN)")), QStringLiteral("Argument 'z' is NaN"));
    EXPECT_EQ(thrown(QStringLiteral("box.rotateX(NaN)")), QStringLiteral("Argument 'a' is NaN"));
    EXPECT_EQ(thrown(QStringLiteral("edge.pointAt(NaN)")), QStringLiteral("Argument 'parameter' is NaN"));
    EXPECT_EQ(thrown(QStringLiteral("face.extrude(5)")), QStringLiteral("Method extrude is deprecate, use extrudeZ"));
    EXPECT_EQ(errors.size(), 7);

    // A failure inside the shape layer reaches the script too.
    EXPECT_TRUE(thrown(QStringLiteral("box.scale(0, origin)")).startsWith(QStringLiteral("Method scale failed: ")));
    EXPECT_TRUE(thrown(QStringLiteral("box.fill()")).startsWith(QStringLiteral("Method fill failed: ")));
}

// A thrown script call discards its result; what the native call returns is
// seen on shapes that belong to no engine.
TEST(QmlShapeResults, WrongUseStillReturnsAUsableValue)
{
    const QmlShape box(servoce::box(10, 20, 30, false), nullptr);
    const QmlShape face(servoce::square(10, false), nullptr);
    const double nan = std::nan("");

    const QmlShape empty = face.unite(QmlShape());
    EXPECT_FALSE(empty.is_null());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_TRUE(QmlShape().translate(1, 0, 0).is_empty());
    EXPECT_FALSE(QmlShape().translate(1, 0, 0).is_null());

    // A NaN counts as its default: no move, no turn, a factor of 1.
    EXPECT_NEAR(box.translate(nan, 1, 0).center().y, 11.0, 1e-9);
    EXPECT_TRUE(box.translate(nan, 0, 0).is_equal(box));
    EXPECT_TRUE(box.rotateZ(nan).is_equal(box));
    EXPECT_TRUE(box.scaleY(nan).is_equal(box));
    EXPECT_NEAR(box.scaleXYZ(2, nan, nan).volume(), 12000.0, 1e-6);
    EXPECT_NEAR(face.extrude(5.0).volume(), 500.0, 1e-9) << "the old form still extrudes";
    EXPECT_TRUE(QmlShape().extrude(QmlVector3(servoce::vector3(0, 0, 1))).is_null()) << "no check on this form";

    EXPECT_EQ(box.length(), -1.0);
    EXPECT_EQ(face.volume(), -1.0);
    EXPECT_EQ(box.firstParameter(), 0.0);
    const QmlPoint3 nowhere = face.pointAt(1);
    EXPECT_EQ(nowhere.x, 0.0);
    EXPECT_EQ(nowhere.z, 0.0);
}

TEST_F(QmlShapeTest, MeasuresAndCurveAccessRefuseTheWrongKindOfShape)
{
    EXPECT_EQ(thrown(QStringLiteral("box.length()")), QStringLiteral("Shape 'Solid' is not curve"));
    EXPECT_EQ(thrown(QStringLiteral("edge.area()")), QStringLiteral("Shape 'Edge' is not flat"));
    EXPECT_EQ(thrown(QStringLiteral("face.volume()")), QStringLiteral("Shape 'Face' is not voluminous"));
    EXPECT_EQ(lastError(), QStringLiteral("Shape 'Face' is not voluminous"));

    EXPECT_EQ(thrown(QStringLiteral("box.firstParameter()")), QStringLiteral("For only shape of edge of wire"));
    EXPECT_EQ(thrown(QStringLiteral("face.pointAt(1)")), QStringLiteral("For only shape of edge of wire"));
}

TEST_F(QmlShapeTest, PointsAlongEdgesAndWiresGoByArcLength)
{
    EXPECT_EQ(number(QStringLiteral("edge.firstParameter()")), 0.0);
    EXPECT_NEAR(number(QStringLiteral("edge.lastParameter()")), 10.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("edge.pointAt(0).x")), 0.0, 1e-12) << "the start";
    EXPECT_NEAR(number(QStringLiteral("edge.pointAt(4).x")), 4.0, 1e-9);
    // Along the wire: 3 along X, then 4 up along Y.
    EXPECT_NEAR(number(QStringLiteral("path.pointAt(5).y")), 2.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("path.pointAt(5).x")), 3.0, 1e-9);
    EXPECT_LT(number(QStringLiteral("path.firstParameter()")), number(QStringLiteral("path.lastParameter()")));
    EXPECT_TRUE(errors.isEmpty()) << lastError().toStdString();
}

TEST_F(QmlShapeTest, TheEngineGoesOnAfterManyFailures)
{
    // Thrown errors are caught by the script, and uncaught ones end only their
    // evaluation: no native exception crosses the engine.
    // The calls sit in a function called often enough to be compiled.
    const double failures = number(QStringLiteral(
        "function failAll(i) {"
        "  var failed = 0;"
        "  try { face.unite(undefined) } catch (e) { ++failed }"
        "  try { box.move(NaN, i, 0) } catch (e) { ++failed }"
        "  try { box.length() } catch (e) { ++failed }"
        "  return failed;"
        "}"
        "var failures = 0;"
        "for (var i = 0; i < 300; ++i)"
        "  failures += failAll(i);"
        "failures"));
    EXPECT_EQ(failures, 900.0);
    EXPECT_EQ(errors.size(), 900);

    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(engine.evaluate(QStringLiteral("face.diff(null)")).isError());
    EXPECT_NEAR(number(QStringLiteral("box.unite(box.moveZ(30)).volume()")), 12000.0, 1e-6);
}

TEST_F(QmlShapeTest, PointsAndVectorsTransformLikeShapes)
{
    install("p", QmlPoint3(servoce::point3(1, 2, 3)));

    const QString moved = engine
                              .evaluate(QStringLiteral(
                                  "var q = p.translate(1, 1, 1).left(2).back(1).down(1); [q.x, q.y, q.z].join()"))
                              .toString();
    EXPECT_EQ(moved, QStringLiteral("0,2,3"));
    EXPECT_NEAR(number(QStringLiteral("p.rotateZ(90).x")), -2.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.rotate(90, vz).y")), 1.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.move(vz).z")), 5.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.mirrorXY().z")), -3.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.scale(2).y")), 4.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.scale(2, p).y")), 2.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.scaleXZ(2, 3).z")), 9.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("p.distance(origin)")), std::sqrt(14.0), 1e-12);
    EXPECT_EQ(number(QStringLiteral("p.x = 7; p.x")), 7.0);

    EXPECT_EQ(number(QStringLiteral("vz.lenght()")), 2.0);
    EXPECT_EQ(number(QStringLiteral("vz.length2()")), 4.0);
    EXPECT_NEAR(number(QStringLiteral("vz.angle()")), 90.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("vx.angle(vx)")), 0.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("vz.angle(vx)")), 90.0, 1e-12);
    EXPECT_TRUE(std::isnan(QmlVector3().angle())) << "a zero vector has no angle, and no error";
    EXPECT_TRUE(QmlVector3(servoce::vector3(1e-8, 0, -1e-8)).isZero());
    EXPECT_FALSE(QmlVector3(servoce::vector3(0, 2e-7, 0)).isZero());
    EXPECT_TRUE(errors.isEmpty()) << lastError().toStdString();
}

TEST(QmlShapeAngles, NormAngleBringsAnglesIntoOneTurn)
{
    EXPECT_EQ(Numeric::normalizeAngle(360.0), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(5e-8), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(-90.0), 270.0);
    EXPECT_EQ(Numeric::normalizeAngle(-720.0), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(725.0), 5.0);
    EXPECT_EQ(Numeric::normalizeAngle(359.5), 359.5);
    EXPECT_NEAR(scriptAngleToRadians(-180.0), pi, 1e-15);
}

TEST(QmlShapeConversions, ListsKeepOnlyTheirKind)
{
    QmlShape::registerTypes();
    const QmlShape box(servoce::box(1, 2, 3, false), nullptr);
    const QmlPoint3 point(servoce::point3(1, 2, 3));
    const QVariantList list{QVariant::fromValue(box), 5, QVariant::fromValue(point), QStringLiteral("x"),
                            QVariant::fromValue(box)};

    EXPECT_EQ(QmlShape::fromList(list).size(), 2u);
    ASSERT_EQ(QmlPoint3::fromList(list).size(), 1u);
    EXPECT_EQ(QmlPoint3::fromList(list).front().z, 3.0);
    EXPECT_TRUE(QmlShape::fromVariant(QVariant::fromValue(box)).is_equal(box));
    EXPECT_TRUE(QmlShape::fromVariant(QVariant(5)).is_null());
    EXPECT_FALSE(QmlShape(nullptr).is_null()) << "the empty shape";
}
