#include <QtMath>
#include <TopAbs_ShapeEnum.hxx>
#include <gtest/gtest.h>

#include "geometry/EndturnShape.h"
#include "geometry/servoce/curve.h"
#include "support/LogCatcher.h"

// The bundle an end turn takes in the 3D view: a round section swept along its path.

namespace {

Winding::Endturn endturnAlong(const servoce::shape &path)
{
    Winding::Endturn endturn;
    endturn.path = path;
    return endturn;
}

} // namespace

TEST(EndturnShape, ABundleHoldsTheVolumeOfItsSectionAlongThePath)
{
    const double diameter = 4.0;
    const double area = M_PI * diameter * diameter / 4.0;

    // Straight: a cylinder.
    const servoce::shape straight = Winding::endturnSolid(
        endturnAlong(servoce::make_wire({servoce::segment({0, 0, 0}, {0, 0, 30})})), diameter);
    ASSERT_FALSE(straight.is_null());
    EXPECT_NEAR(straight.volume(), area * 30.0, 1e-6 * area * 30.0);

    // A half circle of radius 20 that leaves one slot and comes back at the next, as an
    // end turn does: Pappus gives the volume of the bent tube.
    const servoce::shape arc = Winding::endturnSolid(
        endturnAlong(servoce::make_wire({servoce::circle_arc({20, 0, 0}, {0, 20, 0}, {-20, 0, 0})})), diameter);
    ASSERT_FALSE(arc.is_null());
    EXPECT_NEAR(arc.volume(), area * M_PI * 20.0, 1e-3 * area * M_PI * 20.0);

    // A path made of pieces: a segment, then an arc tangent to it.
    const servoce::shape bent = Winding::endturnSolid(
        endturnAlong(servoce::make_wire({servoce::segment({0, -10, 0}, {0, 0, 0}),
                                         servoce::circle_arc({0, 0, 0}, {10, 10, 0}, {20, 0, 0})})),
        diameter);
    ASSERT_FALSE(bent.is_null());
    EXPECT_NEAR(bent.volume(), area * (10.0 + M_PI * 10.0), 1e-3 * area * (10.0 + M_PI * 10.0));

    // Out of the plane, as an end turn climbs to its level: a leg, then a curve that rises
    // while it turns.
    const servoce::shape path = servoce::make_wire(
        {servoce::segment({0, 0, 0}, {10, 0, 0}),
         servoce::interpolate({{10, 0, 0}, {15, 1, 1}, {19, 4, 3}, {21, 9, 6}, {21, 15, 9}}, false)});
    const servoce::shape climbing = Winding::endturnSolid(endturnAlong(path), diameter);
    ASSERT_FALSE(climbing.is_null());
    EXPECT_NEAR(climbing.volume(), area * path.length(), 1e-2 * area * path.length());

    for (const servoce::shape &bundle : {straight, arc, bent, climbing})
        EXPECT_EQ(bundle.shape_type(), int(TopAbs_SOLID));
}

TEST(EndturnShape, NoPathOrNoSectionGivesNoBundle)
{
    EXPECT_TRUE(Winding::endturnSolid(Winding::Endturn(), 4.0).is_null());
    const servoce::shape path = servoce::make_wire({servoce::segment({0, 0, 0}, {0, 0, 30})});
    EXPECT_TRUE(Winding::endturnSolid(endturnAlong(path), 0.0).is_null());
}
