#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlGeomProvider.h"
#include "QmlScripting/QmlShape.h"
#include "QtPrinters.h"
#include "base/ScriptConsole.h"
#include "materials/BasicMaterials.h"

#include <QColor>
#include <QDir>
#include <QSignalSpy>
#include <QStringList>
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/servoce/solid.h"

namespace {

constexpr double pi = 3.14159265358979323846;

// Records the warnings of the log, which is the only channel of the height rule.
QStringList *recordedWarnings = nullptr;

void recordWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg && recordedWarnings)
        recordedWarnings->append(message);
}

class GeomProviderTest : public ::testing::Test
{
protected:
    GeomProviderTest()
        : console(ScriptConsole::Stator)
        , errors(&console, &ScriptConsole::signalError)
    {
        engine.installObject(QStringLiteral("console"), &console);
    }

    double number(const QString &program) { return engine.evaluate(program).toNumber(); }

    QmlShape shape(const QString &program) { return QmlShape::fromVariant(engine.evaluate(program).toVariant()); }

    // The message a program threw, or "" if it ran through.
    QString thrown(const QString &program)
    {
        return engine.evaluate(QStringLiteral("try { %1; '' } catch (e) { e.message }").arg(program)).toString();
    }

    // The warnings the program logged.
    QStringList warnings(const QString &program)
    {
        QStringList logged;
        recordedWarnings = &logged;
        const QtMessageHandler previous = qInstallMessageHandler(recordWarning);
        engine.evaluate(program);
        qInstallMessageHandler(previous);
        recordedWarnings = nullptr;
        return logged;
    }

    QString lastError() const { return errors.isEmpty() ? QString() : errors.last().at(1).toString(); }

    JSEngine engine;
    ScriptConsole console;
    QSignalSpy errors;
};

} // namespace

TEST_F(GeomProviderTest, ScriptSolidsMeasureAsTheShapeLayersOwn)
{
    const servoce::solid_shape box = servoce::box(10, 20, 30, false);
    const servoce::solid_shape cylinder = servoce::cylinder(5, 10, false);

    const QmlShape scriptBox = shape(QStringLiteral("Geom.box(10, 20, 30)"));
    const QmlShape scriptCylinder = shape(QStringLiteral("Geom.cylinder(5, 10)"));
    ASSERT_FALSE(scriptBox.is_null());
    ASSERT_FALSE(scriptCylinder.is_null());
    EXPECT_EQ(scriptBox.engine(), &engine);
    // The layer's own measures: the script's area() is for faces only.
    const servoce::shape &layerBox = scriptBox;
    const servoce::shape &layerCylinder = scriptCylinder;

    EXPECT_DOUBLE_EQ(scriptBox.volume(), box.volume());
    EXPECT_DOUBLE_EQ(layerBox.area(), box.area());
    EXPECT_DOUBLE_EQ(scriptCylinder.volume(), cylinder.volume());
    EXPECT_DOUBLE_EQ(layerCylinder.area(), cylinder.area());
    EXPECT_NEAR(scriptBox.center().y, 10.0, 1e-9);
    EXPECT_NEAR(scriptCylinder.center().z, 5.0, 1e-9);

    EXPECT_NEAR(number(QStringLiteral("Geom.box(2).volume()")), 8.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("Geom.box(10, 20, 30).center().x")), 5.0, 1e-9);
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(GeomProviderTest, SizesOfNothingAreRefusedWithTheEmptyShape)
{
    EXPECT_EQ(thrown(QStringLiteral("Geom.box(0)")), QStringLiteral("Argument 'a' = 0 must be greater than 0"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.box(-1)")), QStringLiteral("Argument 'a' = -1 must be greater than 0"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.box(1, 2, 0)")), QStringLiteral("Argument 'z' = 0 must be greater than 0"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.cylinder(0, 2)")),
              QStringLiteral("Argument 'radius' = 0 must be greater than 0"));
    // The NaN guards of a function run before any greater guard.
    EXPECT_EQ(thrown(QStringLiteral("Geom.box(0, NaN, 1)")), QStringLiteral("Argument 'y' is NaN"));
}

TEST_F(GeomProviderTest, BooleansRefuseNullOperandsAndEmptyLists)
{
    EXPECT_NEAR(number(QStringLiteral("Geom.unite(Geom.box(10), Geom.box(10).translate(5, 0, 0)).volume()")), 1500.0,
                1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.difference(Geom.box(10), Geom.box(5)).volume()")), 875.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.diff([Geom.box(10), Geom.box(5), Geom.box(5).translate(5, 5, 5)])"
                                      ".volume()")),
                750.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.intersect(Geom.box(10), Geom.box(10).translate(5, 5, 5)).volume()")),
                125.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.unite([Geom.box(10), Geom.box(10).translate(0, 0, 10)]).volume()")),
                2000.0, 1e-6);

    EXPECT_EQ(thrown(QStringLiteral("Geom.unite(Geom.box(1), null)")), QStringLiteral("Do not unite null shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.difference(null, Geom.box(1))")),
              QStringLiteral("Do not difference null shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.intersect(Geom.box(1), undefined)")),
              QStringLiteral("Do not intersect null shapes"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.section(null, Geom.box(1))")), QStringLiteral("Do not intersect null shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.unite([])")), QStringLiteral("Array of shapes is empty"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.diff([1, 2])")), QStringLiteral("Array of shape is empty"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.fill(null)")), QStringLiteral("Do not fill null shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.unify(null)")), QStringLiteral("Do not unify null shape"));
    // Refusals go to the script, not to its console.
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(GeomProviderTest, CollarAndConeHeightsOfNothingBecomeThinWithAWarning)
{
    EXPECT_EQ(warnings(QStringLiteral("Geom.collar(10, 5, -1)")),
              QStringList{QStringLiteral("collar height is less zero, set to 0.001")});
    EXPECT_EQ(warnings(QStringLiteral("Geom.collar(10, 5, 0)")),
              QStringList{QStringLiteral("collar height is less zero, set to 0.001")});
    EXPECT_EQ(warnings(QStringLiteral("Geom.collar(10, 5, 1e-8)")),
              QStringList{QStringLiteral("collar height is zero, set to 0.001")});
    EXPECT_EQ(warnings(QStringLiteral("Geom.cone(10, 5, 0)")),
              QStringList{QStringLiteral("cone height is less zero, set to 0.001")});
    EXPECT_EQ(thrown(QStringLiteral("Geom.collar(10, 5, -1)")), QString());
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(10, 5, -1).volume()")), pi * 75 * 0.001, 1e-9);
}

TEST_F(GeomProviderTest, CollarRadiiAreSortedAndAMissingHoleIsACylinder)
{
    const double tube = pi * 75 * 3;
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(10, 5, 3).volume()")), tube, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(5, 10, 3).volume()")), tube, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(10, 0, 3).volume()")), pi * 100 * 3, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(10, 5, 3, 360).volume()")), tube, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(10, 5, 3, 90).volume()")), tube / 4, 1e-6);
    // The quarter lies symmetrically about +X.
    EXPECT_NEAR(number(QStringLiteral("Geom.collar(10, 5, 3, 90).center().y")), 0.0, 1e-6);
    EXPECT_EQ(warnings(QStringLiteral("Geom.collar(10, 5, 3, 0)")),
              QStringList{QStringLiteral("collar angle is zero, set to 360")});
}

TEST_F(GeomProviderTest, SectorsLieAboutXOrFromTheirFirstAngle)
{
    const QString bbox = QStringLiteral("Geom.circle(5, %1).boundingBox().%2");
    EXPECT_NEAR(number(bbox.arg(QStringLiteral("90"), QStringLiteral("ymin"))), -5 * std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(number(bbox.arg(QStringLiteral("90"), QStringLiteral("ymax"))), 5 * std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(number(bbox.arg(QStringLiteral("0, 90"), QStringLiteral("ymin"))), 0.0, 1e-6);
    EXPECT_NEAR(number(bbox.arg(QStringLiteral("0, 90"), QStringLiteral("ymax"))), 5.0, 1e-6);
    // A full sweep stays whole, though Math.normAngle makes 360 nought.
    EXPECT_NEAR(number(QStringLiteral("Geom.circle(5, 360).area()")), pi * 25, 1e-6);
    EXPECT_EQ(number(QStringLiteral("Math.normAngle(360)")), 0.0);
    EXPECT_NEAR(number(QStringLiteral("Geom.cylinder(5, 2, 180).volume()")), pi * 25, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.cylinder(5, 2, 180).center().y")), 0.0, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.cone(5, 0, 3).volume()")), pi * 25, 1e-6);
    // The cone's sector is not turned: it begins on +X.
    EXPECT_NEAR(number(QStringLiteral("Geom.cone(5, 2, 3, 90).boundingBox().ymin")), 0.0, 1e-6);
}

TEST_F(GeomProviderTest, SphereAndTorusTakeRadians)
{
    EXPECT_NEAR(number(QStringLiteral("Geom.sphere(2).volume()")), 4.0 / 3 * pi * 8, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.sphere(2, Math.PI).volume()")), 2.0 / 3 * pi * 8, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.torus(10, 2).volume()")), 2 * pi * pi * 10 * 4, 1e-6);
    EXPECT_NEAR(number(QStringLiteral("Geom.torus(10, 2, Math.PI).volume()")), pi * pi * 10 * 4, 1e-6);
}

namespace {

// A script expression and the number it must give, within the tolerance.
struct Measure {
    const char *expression;
    double expected;
    double tolerance;
};

// A script expression and the error it must throw.
struct Refusal {
    const char *expression;
    const char *message;
};

} // namespace

TEST_F(GeomProviderTest, FacesCurvesNumbersAndAnglesMeasureAsTheirClosedForms)
{
    const Measure measures[] = {
        // Faces
        {"Geom.ngon(2, 3).area()", 3 * std::sqrt(3.0), 1e-9},
        {"Geom.rectangle(2, 3).area()", 6.0, 1e-9},
        {"Geom.square(2, true).center().x", 0.0, 1e-9},
        {"Geom.ring(5, 3).area()", pi * 16, 1e-6},
        {"Geom.ring(3, 5, 90).area()", pi * 4, 1e-6},
        {"Geom.ring(3, 5, 90).center().y", 0.0, 1e-6},
        {"Geom.ring(5, 3, 0, 90).boundingBox().ymin", 0.0, 1e-6},
        // Equal radii leave only the curve.
        {"Geom.ring(5, 5).length()", 10 * pi, 1e-6},
        {"Geom.ring(5, 5, 90).length()", 2.5 * pi, 1e-6},
        {"Geom.shape(Geom.boundingBox(Geom.box(2, 3, 4))).volume()", 24.0, 1e-3},
        {"Geom.polygon([Geom.point3(), Geom.point3(3), Geom.point3(3, 4)]).area()", 6.0, 1e-9},
        {"Geom.fill(Geom.polysegment([Geom.point3(), Geom.point3(3), Geom.point3(3, 4)], true)).area()", 6.0, 1e-9},
        {"Geom.ellipse(4, 2).area()", 8 * pi, 1e-6},
        {"Geom.ellipse(4, 2, 0, 360).area()", 8 * pi, 1e-6},
        // Curves
        {"Geom.polysegment([Geom.point3(), 'x', Geom.point3(3), Geom.point3(3, 4)], true).length()", 12.0, 1e-9},
        {"Geom.arc(2, 90).length()", pi, 1e-9},
        {"Geom.arc(2, 90, 180).length()", pi, 1e-9},
        {"Geom.arc(Geom.point3(2), Geom.point3(0, 2), Geom.point3(-2)).length()", 2 * pi, 1e-9},
        {"Geom.bspline([Geom.point3(), Geom.point3(5)]).length()", 5.0, 1e-6},
        {"Geom.wire([Geom.segment(Geom.point3(), Geom.point3(1)), Geom.segment(Geom.point3(1), Geom.point3(1, 1))])"
         ".length()",
         2.0, 1e-9},
        {"Geom.section(Geom.box(2), Geom.infplane(Geom.point3(0, 0, 1))).length()", 8.0, 1e-6},
        // Numbers and angles
        {"Geom.angleZ(1, -1e-14, 0)", 0.0, 0.0},
        {"Geom.angleZ(0, -1, 0)", 270.0, 1e-12},
        {"Geom.angleX(0, 0, 1)", 90.0, 1e-12},
        {"Geom.radius(3, 4)", 5.0, 1e-12},
        {"Geom.distance(Geom.point3(1, 1, 1), Geom.point3(1, 4, 5))", 5.0, 1e-12},
        {"Math.fromPolar(2, 90).x", 0.0, 0.0},
        {"Math.fromPolar(2, 90).y", 2.0, 1e-12},
        {"Math.rad(180)", pi, 1e-12},
        {"Math.deg(Math.PI)", 180.0, 1e-12},
        {"Math.fuzzyIsNull(0.01, 0.1) ? 1 : 0", 1.0, 0.0},
        {"Math.fuzzyIsEqual(1, 1.2, 0.1) ? 1 : 0", 0.0, 0.0},
        {"Math.normAngle(-90)", 270.0, 1e-12},
        {"Math.normAngle(725)", 5.0, 1e-12},
        {"Math.middleAngle(350, 10, Coil.CCW)", 0.0, 0.0},
        {"Math.middleAngle(350, 10, Coil.CW)", 180.0, 1e-12},
        {"Geom.vector3(1, 2).y", 2.0, 1e-12},
        {"Geom.point3(7).x", 7.0, 1e-12},
    };
    for (const Measure &measure : measures)
        EXPECT_NEAR(number(QString::fromLatin1(measure.expression)), measure.expected, measure.tolerance)
            << measure.expression;
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(GeomProviderTest, WrongArgumentsThrowWhatIsWrong)
{
    const Refusal refusals[] = {
        {"Geom.ngon(5, 2)", "Argument 'n' must be great 2"},
        {"Geom.rectangle(2, -3)", "Argument 'height' = -3 must be greater than 0"},
        {"Geom.polysegment([])", "Array of points is empty"},
        {"Geom.polysegment([Geom.point3()])", "Size of array of points is less 2"},
        {"Geom.polygon([1])", "Array of points is empty"},
        {"Geom.bspline([])", "Array of points is empty"},
        {"Geom.wire([])", "Array of shapes is empty"},
        {"Math.rad(NaN)", "Argument 'degrees' is NaN"},
        {"Geom.point3(1, NaN)", "Argument 'y' is NaN"},
    };
    for (const Refusal &refusal : refusals)
        EXPECT_EQ(thrown(QString::fromLatin1(refusal.expression)), QString::fromLatin1(refusal.message))
            << refusal.expression;
}

TEST_F(GeomProviderTest, AMiddleAngleWithoutADirectionIsReportedOnTheConsole)
{
    EXPECT_NEAR(number(QStringLiteral("Math.middleAngle(0, 90, 0)")), 45.0, 1e-12);
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.last().at(1).toString(),
              QStringLiteral("Function Math.middleAngle(a1, a2, dir), argument 'dir' must be Coil.CW or Coil.CCW"));
}

TEST_F(GeomProviderTest, AngleTakesTwoVectorsOrTwoNumbersOfOneKind)
{
    EXPECT_NEAR(number(QStringLiteral("Geom.angle(Geom.vector3(1), Geom.vector3(0, 1))")), 90.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("Geom.angle(0, -1)")), 270.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("Geom.angle(0.5, 0.5)")), 45.0, 1e-9);
    EXPECT_EQ(thrown(QStringLiteral("Geom.angle(1, 2.5)")),
              QStringLiteral("Argument 'v1' and 'v2' must be type of number or Vector3"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.angle(Geom.vector3(1), 2)")),
              QStringLiteral("Argument 'v1' and 'v2' must be type of number or Vector3"));
    EXPECT_NEAR(number(QStringLiteral("Geom.angleBetweenVector(Geom.vector3(1), Geom.vector3(-1))")), 180.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("Geom.angleY(Geom.point3(0, 5, 2))")), 90.0, 1e-9);
    EXPECT_NEAR(number(QStringLiteral("Geom.radiusX(Geom.point3(9, 3, 4))")), 5.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("Geom.radiusY(3, 9, 4)")), 5.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("Geom.radiusZ(Geom.point3(3, 4, 9))")), 5.0, 1e-12);
}

TEST_F(GeomProviderTest, PointsAndVectorsFromOtherValues)
{
    EXPECT_NEAR(number(QStringLiteral("Geom.vector3(Geom.point3(1, 2, 3)).z")), 3.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("Geom.vector3(Geom.point3(1, 2, 3), Geom.point3(4, 2, 3)).x")), 3.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("Geom.point3(Math.fromPolar(2, 0), 5).z")), 5.0, 1e-12);
    EXPECT_NEAR(number(QStringLiteral("Geom.point3(Math.fromPolar(2, 0)).x")), 2.0, 1e-12);

    // t counts on from p2, or back from p1 when negative.
    const QString along = QStringLiteral("Geom.pointAtSegment(Geom.point3(1), Geom.point3(3), %1).x");
    EXPECT_NEAR(number(along.arg(0)), 3.0, 1e-12);
    EXPECT_NEAR(number(along.arg(2)), 5.0, 1e-12);
    EXPECT_NEAR(number(along.arg(-1)), 0.0, 1e-12);
    EXPECT_EQ(thrown(QStringLiteral("Geom.pointAtSegment(Geom.point3(1), Geom.point3(1), 1)")),
              QStringLiteral("Critical error at abscissaPoint"));
}

TEST_F(GeomProviderTest, FilletsAndChamfersReportOnTheConsoleAndGiveTheShapeBack)
{
    const double cube = 1000.0;
    EXPECT_LT(number(QStringLiteral("Geom.fillet(Geom.box(10), 1).volume()")), cube);
    EXPECT_LT(number(QStringLiteral("Geom.chamfer(Geom.box(10), 1).volume()")), cube);
    const double oneEdge = number(QStringLiteral("Geom.fillet(Geom.box(10), 1, [Geom.point3(5)]).volume()"));
    EXPECT_NEAR(oneEdge, cube - (1 - pi / 4) * 10, 1e-4);
    EXPECT_NEAR(number(QStringLiteral("Geom.chamfer(Geom.box(10), 1, [Geom.point3(5)]).volume()")), cube - 5, 1e-4);
    EXPECT_NEAR(number(QStringLiteral("Geom.fillet(Geom.box(10), 1, [5]).volume()")), cube,
                1e-6)
        << "refs of another kind give the shape back";
    EXPECT_LT(number(QStringLiteral("Geom.filletFace(Geom.box(10), 1, Geom.point3(5, 5, 10)).volume()")), cube);
    EXPECT_TRUE(errors.isEmpty()) << lastError().toStdString();

    EXPECT_EQ(thrown(QStringLiteral("Geom.fillet(null, 1)")), QStringLiteral("Do not fillet null shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.chamfer(null, 1)")), QStringLiteral("Do not chamfer null shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.fillet(Geom.box(10), NaN)")), QStringLiteral("Argument 'r' is NaN"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.filletFace(Geom.box(10), 1, 3)")),
              QStringLiteral("Argument 'ref' must be type of pont3 or shape"));
    EXPECT_EQ(thrown(QStringLiteral("Geom.filletFace(Geom.box(10), 1, Geom.segment(Geom.point3(), Geom.point3(1)))")),
              QStringLiteral("Argument 'ref' must be type of face"));
    EXPECT_TRUE(errors.isEmpty());

    EXPECT_NEAR(number(QStringLiteral("Geom.fillet(Geom.box(10), 0).volume()")), cube, 1e-6);
    EXPECT_EQ(lastError(), QStringLiteral("Argument 'r' is less or equal zero"));
    EXPECT_NEAR(number(QStringLiteral("Geom.fillet(Geom.box(10), 20).volume()")), cube, 1e-6);
    EXPECT_TRUE(lastError().startsWith(QStringLiteral("Error fillet: "))) << lastError().toStdString();
    EXPECT_TRUE(lastError().endsWith(QStringLiteral(", radius 20"))) << lastError().toStdString();
}

TEST_F(GeomProviderTest, FilesAreReadAndWrittenAsUtf8)
{
    const QString path = QDir::tempPath() + QStringLiteral("/zds-geom-provider/sub/text.txt");
    QDir(QDir::tempPath() + QStringLiteral("/zds-geom-provider")).removeRecursively();

    EXPECT_TRUE(engine.evaluate(QStringLiteral("writeFile('%1', 'Größe ', false)").arg(path)).toBool());
    EXPECT_TRUE(engine.evaluate(QStringLiteral("writeFile('%1', 'ok')").arg(path)).toBool());
    EXPECT_EQ(engine.evaluate(QStringLiteral("readFile('%1')").arg(path)).toString(), QStringLiteral("Größe ok"));
    EXPECT_TRUE(engine.evaluate(QStringLiteral("Geom.writeFile('%1', 'new', false)").arg(path)).toBool());
    EXPECT_EQ(engine.evaluate(QStringLiteral("Geom.readFile('%1')").arg(path)).toString(), QStringLiteral("new"));
    EXPECT_TRUE(errors.isEmpty());

    // Geom.include is the engine's own include.
    EXPECT_TRUE(engine.evaluate(QStringLiteral("writeFile('%1', 'var included = 42;', false)").arg(path)).toBool());
    engine.evaluate(QStringLiteral("Geom.include('%1')").arg(path));
    EXPECT_EQ(number(QStringLiteral("included")), 42.0);

    const QString missing = QDir::tempPath() + QStringLiteral("/zds-geom-provider/missing.txt");
    EXPECT_EQ(engine.evaluate(QStringLiteral("readFile('%1')").arg(missing)).toString(), QString());
    EXPECT_EQ(lastError(), QStringLiteral("Error: file %1 not found.").arg(missing));
    QDir(QDir::tempPath() + QStringLiteral("/zds-geom-provider")).removeRecursively();
}

TEST_F(GeomProviderTest, PiecesJoinAShapeAndAColourOrReportTheMaterial)
{
    const Piece red = engine.evaluate(QStringLiteral("Geom.piece(Geom.box(2), Qt.red)")).toVariant().value<Piece>();
    ASSERT_FALSE(red.material().isNull());
    EXPECT_EQ(red.material()->kind(), AbstractMaterial::CustomKind);
    EXPECT_EQ(red.material()->color(), QColor(Qt::red));
    EXPECT_NEAR(red.shape().volume(), 8.0, 1e-9);
    EXPECT_EQ(red.scope(), Piece::Empty);

    const Piece blue = engine.evaluate(QStringLiteral("Geom.piece(Geom.box(2), %1)").arg(int(Qt::blue)))
                           .toVariant()
                           .value<Piece>();
    EXPECT_EQ(blue.material()->color(), QColor(Qt::blue));
    EXPECT_TRUE(errors.isEmpty());

    const Piece bare = engine.evaluate(QStringLiteral("Geom.piece(Geom.box(2))")).toVariant().value<Piece>();
    ASSERT_FALSE(bare.material().isNull());
    EXPECT_EQ(bare.material()->kind(), EmptyMaterial().kind());
    EXPECT_NEAR(bare.shape().volume(), 8.0, 1e-9);
    EXPECT_EQ(lastError(), QStringLiteral("Function piece() contains argument of an unsupported type: "));

    const Piece empty = engine.evaluate(QStringLiteral("Geom.piece(null, 'x')")).toVariant().value<Piece>();
    EXPECT_FALSE(empty.shape().is_null()) << "a null shape becomes the empty one";
    EXPECT_EQ(lastError(), QStringLiteral("Function piece() contains argument of an unsupported type: QString"));
}
