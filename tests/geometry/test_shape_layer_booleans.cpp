#include <QList>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

#include "geometry/ShapeLayerSupport.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/fillet.h"
#include "geometry/servoce/solid.h"
#include "geometry/servoce/step.h"
#include "geometry/servoce/unify.h"

using namespace servoce;

namespace {

// A box with all edges rounded is the inner box grown by a ball.
double roundedBoxVolume(double a, double b, double c, double r)
{
    const double x = a - 2 * r, y = b - 2 * r, z = c - 2 * r;
    return x * y * z + 2 * r * (x * y + y * z + x * z) + M_PI * r * r * (x + y + z) + 4.0 / 3.0 * M_PI * r * r * r;
}

} // namespace

TEST(ShapeLayerBooleans, CylinderCutFromABoxLeavesTheRest)
{
    const solid_shape block = box(20, 20, 10, true);
    const solid_shape hole = cylinder(5, 20, true);
    const shape cut = make_difference(block, hole, true);
    EXPECT_EQ(cut.shape_type_name(), "Solid");
    EXPECT_TRUE(closeTo(cut.volume(), 4000 - M_PI * 25 * 10));

    const shape common = make_intersect(block, hole, true);
    EXPECT_TRUE(closeTo(common.volume(), M_PI * 25 * 10));
}

TEST(ShapeLayerBooleans, UnionOfOverlappingBoxesIsOneSolid)
{
    const solid_shape left = box(10, 10, 10, false);
    const solid_shape right = box(10, 10, 10, false).translated(5, 0, 0);

    const shape plain = make_union(left, right, false);
    EXPECT_EQ(plain.shape_type_name(), "Solid");
    EXPECT_TRUE(closeTo(plain.volume(), 1500));
    EXPECT_GT(plain.faces().size(), 6u);

    // Simplifying merges the split coplanar faces.
    const shape simplified = make_union(left, right, true);
    EXPECT_TRUE(closeTo(simplified.volume(), 1500));
    EXPECT_EQ(simplified.faces().size(), 6u);
}

TEST(ShapeLayerBooleans, DisjointUnionStaysACompound)
{
    const shape pair = make_union(box(1, 1, 1, false), box(1, 1, 1, false).translated(5, 0, 0), false);
    EXPECT_EQ(pair.shape_type_name(), "Compound");
    EXPECT_EQ(pair.solids().size(), 2u);
    EXPECT_TRUE(closeTo(pair.volume(), 2));
}

TEST(ShapeLayerBooleans, ListsAreTakenInTurn)
{
    const solid_shape block = box(30, 10, 10, false);
    const std::vector<shape> drilled{block, cylinder(2, 10, false).translated(5, 5, 0),
                                     cylinder(3, 10, false).translated(20, 5, 0)};
    EXPECT_TRUE(closeTo(make_difference(drilled, true).volume(), 3000 - M_PI * (4 + 9) * 10));
    EXPECT_TRUE(make_difference(std::vector<shape>{}, true).is_null());
    EXPECT_TRUE(make_difference(std::vector<shape>{block}, true).is_equal(block));

    const std::vector<shape> overlapping{box(10, 10, 10, false), box(10, 10, 10, false).translated(4, 0, 0),
                                         box(10, 10, 10, false).translated(0, 3, 0)};
    EXPECT_TRUE(closeTo(make_intersect(overlapping, true).volume(), 6 * 7 * 10));
    EXPECT_TRUE(make_intersect(std::vector<shape>{}, true).is_null());
}

TEST(ShapeLayerBooleans, GeneralFuseJoinsManyInOneRun)
{
    std::vector<shape> teeth;
    for (int i = 0; i < 4; ++i)
        teeth.push_back(box(4, 1, 1, false).translated(i * 3, 0, 0));
    const shape fused = unwrap(general_fuse(teeth, true));
    EXPECT_EQ(fused.shape_type_name(), "Solid");
    EXPECT_TRUE(closeTo(fused.volume(), 13));
    EXPECT_EQ(fused.faces().size(), 6u);

    EXPECT_TRUE(general_fuse({}, true).is_null());
    EXPECT_TRUE(general_fuse({teeth.front()}, true).is_equal(teeth.front()));

    const QList<shape> list(teeth.begin(), teeth.end());
    const shape united = makeUnion(list, true);
    EXPECT_EQ(united.shape_type_name(), "Solid");
    EXPECT_TRUE(closeTo(united.volume(), 13));
    EXPECT_TRUE(makeUnion(QList<shape>(), true).is_null());
}

TEST(ShapeLayerSections, SectionOfASolidByAPlane)
{
    const solid_shape block = box(10, 20, 30, false);
    const shape cut = make_section(block, infplane({0, 0, 5}, {0, 0, 1}), false);
    EXPECT_TRUE(closeTo(cut.length(), 60, 1e-6));
    const boundbox bounds = cut.bounding_box();
    EXPECT_NEAR(bounds.zmin, 5, 1e-6);
    EXPECT_NEAR(bounds.zmax, 5, 1e-6);
}

TEST(ShapeLayerSections, SectionOfASolidByACylinder)
{
    // The cylinder r = 6 crosses the box on its top and bottom in arcs and on
    // its sides y = +-5 in vertical lines.
    const shape block = box(10, 10, 3, false).translated(0, -5, 0);
    const shape slice = make_section(block, cylinder(6, 5, false).translated(0, 0, -1), true);
    const double arc = 6 * 2 * std::asin(5.0 / 6.0);
    EXPECT_TRUE(closeTo(slice.length(), 2 * arc + 2 * 3, 1e-5));
    for (const point3 &point : slice.vertices(true))
        EXPECT_NEAR(std::hypot(point.x, point.y), 6, 1e-6);
}

TEST(ShapeLayerFillets, RoundedSolidsLoseVolume)
{
    const shape rounded = fillet(box(10, 10, 10, false), 1);
    EXPECT_EQ(rounded.solids().size(), 1u);
    EXPECT_TRUE(closeTo(rounded.volume(), roundedBoxVolume(10, 10, 10, 1), 1e-5));
    EXPECT_LT(rounded.volume(), 1000);

    // A bevel cuts away more than a round of the same size.
    const shape bevelled = chamfer(box(10, 10, 10, false), 1);
    EXPECT_LT(bevelled.volume(), rounded.volume());
    EXPECT_GT(bevelled.volume(), 1000 - 12 * 10 * 0.5);
}

TEST(ShapeLayerFillets, RoundedFaceCornersLoseArea)
{
    const shape rounded = fillet(square(10, false), 1);
    EXPECT_TRUE(closeTo(rounded.area(), 100 - (4 - M_PI), 1e-6));

    const shape oneCorner = fillet(square(10, false), 2, std::vector<point3>{{10.5, 10.5, 0}});
    EXPECT_TRUE(closeTo(oneCorner.area(), 100 - (1 - M_PI / 4) * 4, 1e-6));
}

TEST(ShapeLayerFillets, NearestEdgesAndTheHalfEdgeLimit)
{
    // A plate 10 x 10 x 2: its vertical edges are 2 long, so the radius 3
    // asked for becomes 1 for every edge of the call.
    const solid_shape plate = box(10, 10, 2, false);
    const shape rounded = fillet(plate, 3, std::vector<point3>{{-0.1, -0.1, 1}, {0, 0, 1.2}});
    EXPECT_TRUE(closeTo(rounded.volume(), 200 - (1 - M_PI / 4) * 1 * 2, 1e-6));

    const shape bevelled = chamfer(plate, 1, std::vector<point3>{{5, -0.1, -0.1}});
    EXPECT_TRUE(closeTo(bevelled.volume(), 200 - 0.5 * 10, 1e-9));
}

TEST(ShapeLayerFillets, GivenEdgesOrTheEdgesOfAFace)
{
    const solid_shape block = box(10, 10, 10, false);
    const shape oneEdge = fillet(block, 1, std::vector<shape>{block.nearest_edge({5, -1, -1})});
    EXPECT_TRUE(closeTo(oneEdge.volume(), 1000 - (1 - M_PI / 4) * 10, 1e-6));

    const shape topRounded = fillet(block, 1, std::vector<shape>{block.nearest_face({5, 5, 11})});
    EXPECT_LT(topRounded.volume(), oneEdge.volume());
    EXPECT_GT(topRounded.volume(), roundedBoxVolume(10, 10, 10, 1));

    const shape corners = fillet(square(10, false), 1, std::vector<shape>{segment({0, 0, 0}, {10, 0, 0})});
    EXPECT_TRUE(closeTo(corners.area(), 100 - (1 - M_PI / 4) * 2, 1e-6));
}

TEST(ShapeLayerUnify, UnifyMergesTheSeamsOfAUnion)
{
    const shape joined = make_union(box(10, 10, 10, false), box(10, 10, 10, false).translated(10, 0, 0), false);
    ASSERT_GT(joined.faces().size(), 6u);
    const shape unified = unify(joined);
    EXPECT_EQ(unified.shape_type_name(), "Solid");
    EXPECT_EQ(unified.faces().size(), 6u);
    EXPECT_TRUE(closeTo(unified.volume(), 2000, 1e-9));
}

TEST(ShapeLayerUnify, UnifyTreatsEachMemberOfACompound)
{
    const shape pair = make_compound({make_union(box(2, 2, 2, false), box(2, 2, 2, false).translated(2, 0, 0), false),
                                      box(1, 1, 1, false).translated(10, 0, 0)});
    const shape unified = unify(pair);
    EXPECT_EQ(unified.solids().size(), 2u);
    EXPECT_EQ(unified.faces().size(), 12u);
    EXPECT_TRUE(closeTo(unified.volume(), 17, 1e-9));
}

TEST(ShapeLayerUnify, AShapeWithoutVerticesStaysAsItIs)
{
    const shape nothing = make_difference(box(1, 1, 1, false), box(1, 1, 1, false), true);
    const shape unified = unify(nothing);
    EXPECT_FALSE(unified.is_null());
    EXPECT_TRUE(unified.is_empty());
}

TEST(ShapeLayerStep, WrittenShapesReadBackTheSame)
{
    const std::string path = (std::filesystem::temp_directory_path() / "servoce_step_round_trip.step").string();
    const shape part = make_difference(box(10, 10, 10, false), cylinder(3, 10, false).translated(5, 5, 0), true);
    ASSERT_TRUE(write_step(part, path));
    const shape back = unwrap(read_step(path));
    std::remove(path.c_str());
    EXPECT_TRUE(closeTo(back.volume(), part.volume(), 1e-9));
    EXPECT_EQ(back.faces().size(), part.faces().size());
}
