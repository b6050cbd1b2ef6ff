#include <QtMath>
#include <TopAbs_ShapeEnum.hxx>
#include <gtest/gtest.h>

#include "geometry/EndturnShape.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/trans.h"
#include "support/LogCatcher.h"

// The solid an end turn takes in the 3D view: the coil's section, or a round one, swept along
// its path.

namespace {

Winding::Endturn endturnAlong(const servoce::shape &path)
{
    Winding::Endturn endturn;
    endturn.path = path;
    return endturn;
}

// A coil side at the given angle and radius: its section 3 wide across the slot and 2 high
// along the axis, in the plane square to the radius.
Winding::CoilSide sideAt(double angle, double radius)
{
    Winding::CoilSide side;
    side.angle = angle;
    side.center = {radius * std::cos(angle), radius * std::sin(angle), 0.0};
    side.profile = servoce::rectangle(2.0, 3.0, true)
                       .transformed(servoce::rotateY(M_PI / 2.0))
                       .transformed(servoce::translate(radius, 0.0, 0.0))
                       .transformed(servoce::rotateZ(angle));
    return side;
}

// An arch in the plane z = 0 from the side at a1 to the side at a2, radians, at radius 40 and
// bulging out to 50: it leaves each slot at a slant to the radius.
Winding::Endturn archBetween(double a1, double a2)
{
    Winding::Endturn endturn;
    endturn.kind = Winding::EndturnKind::Outer;
    endturn.dir = Winding::Coil::CCW;
    endturn.begin = sideAt(a1, 40.0);
    endturn.end = sideAt(a2, 40.0);
    const double middle = (a1 + a2) / 2.0;
    endturn.path = servoce::make_wire({servoce::circle_arc({endturn.begin.center.x, endturn.begin.center.y, 0.0},
                                                           {50.0 * std::cos(middle), 50.0 * std::sin(middle), 0.0},
                                                           {endturn.end.center.x, endturn.end.center.y, 0.0})});
    return endturn;
}

} // namespace

TEST(EndturnShape, ACoilsSectionIsSweptSquareToThePathThatLeavesTheSlotAtASlant)
{
    const Winding::Endturn arch = archBetween(0.0, M_PI / 3.0);
    const servoce::shape solid = Winding::endturnSolid(arch, 0.0);
    ASSERT_FALSE(solid.is_null());
    EXPECT_EQ(solid.shape_type(), int(TopAbs_SOLID));
    // Swept as it stands, across the radius, the section would cut the path at a slant and hold less.
    EXPECT_NEAR(solid.volume(), 6.0 * arch.path.length(), 1e-3 * 6.0 * arch.path.length());
    // Along the axis it keeps its height.
    EXPECT_NEAR(solid.bounding_box().zmax - solid.bounding_box().zmin, 2.0, 1e-3);
}

TEST(EndturnShape, TurnedCopiesAmongManyEndturnsGetTheirModelsSolidTurned)
{
    const Winding::Endturn first = archBetween(0.0, M_PI / 3.0);
    const Winding::Endturn copy = archBetween(M_PI / 2.0, M_PI / 2.0 + M_PI / 3.0);
    const Winding::Endturn wider = archBetween(M_PI, M_PI + M_PI / 2.0);
    const std::vector<servoce::shape> solids = Winding::endturnSolids({&first, &copy, &wider}, 0.0);
    ASSERT_EQ(solids.size(), 3u);
    for (std::size_t k = 0; k < 3; ++k) {
        const Winding::Endturn &end = *std::vector<const Winding::Endturn *>{&first, &copy, &wider}[k];
        ASSERT_FALSE(solids[k].is_null()) << k;
        EXPECT_NEAR(solids[k].volume(), 6.0 * end.path.length(), 1e-3 * 6.0 * end.path.length()) << k;
        // Each lies round its own path's middle.
        const servoce::point3 c = solids[k].center();
        const double middle = (end.begin.angle + end.end.angle) / 2.0;
        EXPECT_NEAR(std::atan2(c.y, c.x), std::atan2(std::sin(middle), std::cos(middle)), 1e-6) << k;
    }
}

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
