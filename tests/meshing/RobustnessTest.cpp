#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <random>

#include "geometry/ShapeLayerSupport.h"
#include "meshing/CdtOperations.h"
#include "meshing/GeometryGenerator.h"
#include "meshing/MeshStep.h"
#include "MeshingSupport.h"

namespace {

// Lines between random points of a grid of 0.5 mm inside a square, some of
// them collinear, overlapping or meeting at shallow angles.
Shape2DList randomLines(unsigned seed, int count)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> coordinate(0, 40);
    Shape2DList lines = rectangleLines(0.0, 0.0, 20.0, 20.0);
    for (int i = 0; i < count; ++i) {
        const QPointF a(coordinate(random) * 0.5, coordinate(random) * 0.5);
        const QPointF b(coordinate(random) * 0.5, coordinate(random) * 0.5);
        lines.appendLine(a, b);
    }
    return lines;
}

} // namespace

TEST(Robustness, TangledLinesGiveRegionsThatTileTheSquare)
{
    ShapeLog log;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        QElapsedTimer timer;
        timer.start();
        const GeometryData data =
            GeometryGenerator().createGeometry(randomLines(seed, 40), 1e-5, true, false, true);
        EXPECT_LT(timer.elapsed(), 20000) << seed;
        ASSERT_FALSE(data.subdomains.isEmpty()) << seed;
        const double outline = data.subdomains.first()->area();
        EXPECT_NEAR(outline, 400.0, 1e-6) << seed;
        double faces = 0.0;
        for (int i = 1; i < data.subdomains.size(); ++i) {
            EXPECT_TRUE(data.subdomains.at(i)->segments().isClosed()) << seed;
            faces += data.subdomains.at(i)->area();
        }
        EXPECT_NEAR(faces, outline, 1e-6) << seed;
    }
}

TEST(Robustness, CleanedLinesOfATangleMeshWithinTheSizeBound)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        CDT cdt = cdt::createCDT(randomLines(seed, 40));
        EXPECT_LT(cdt.refine(0.125, 1.0, 50000), 50000) << seed;
        cdt.markDomain();
        EXPECT_TRUE(isPlanarMesh(cdt, QStringLiteral("tangled_lines_%1").arg(seed)));
        EXPECT_NEAR(measure(cdt).area, 400.0, 1e-6) << seed;
        EXPECT_LE(measure(cdt).longestSide, 1.0 + 1e-9) << seed;
    }
}

TEST(Robustness, RawCrossingConstraintsAreRefinedOrRefusedWithAReason)
{
    int refused = 0;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        CDT cdt;
        for (const QSharedPointer<Shape2D> &line : randomLines(seed, 40))
            cdt.insert_constraint(line->p1(), line->p2());
        QString reason;
        const bool refined = runMeshStep("refining", [&reason](const QString &text, const CGAL::Failure_exception *) {
            reason = text;
        }, [&cdt] { cdt.refine(0.125, 1.0, 50000); });
        if (!refined) {
            ++refused;
            EXPECT_TRUE(reason.contains("too close")) << reason.toStdString();
        }
        cdt.markDomain();
        EXPECT_TRUE(isPlanarMesh(cdt, QStringLiteral("tangled_constraints_%1").arg(seed)));
        EXPECT_NEAR(measure(cdt).area, 400.0, 1e-6) << seed;
    }
    // Some of these tangles do meet at points rounding moved off their lines.
    EXPECT_GT(refused, 0);
}
