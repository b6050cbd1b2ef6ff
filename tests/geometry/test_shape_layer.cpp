#include <gtest/gtest.h>

#include "geometry/ShapeLayerSupport.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/solid.h"

using namespace servoce;

namespace {

void expectBox(const boundbox &box, const point3 &low, const point3 &high)
{
    // The box carries the shape's tolerance.
    const double tolerance = 1e-6;
    EXPECT_NEAR(box.xmin, low.x, tolerance);
    EXPECT_NEAR(box.ymin, low.y, tolerance);
    EXPECT_NEAR(box.zmin, low.z, tolerance);
    EXPECT_NEAR(box.xmax, high.x, tolerance);
    EXPECT_NEAR(box.ymax, high.y, tolerance);
    EXPECT_NEAR(box.zmax, high.z, tolerance);
}

void expectPoint(const point3 &actual, const point3 &expected, double tolerance = 1e-9)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

} // namespace

TEST(ShapeLayerSolids, VolumesOfPrimitivesMatchClosedForms)
{
    EXPECT_TRUE(closeTo(box(10, 20, 30, false).volume(), 6000));
    EXPECT_TRUE(closeTo(cylinder(5, 10, false).volume(), M_PI * 25 * 10));
    EXPECT_TRUE(closeTo(cylinder(5, 10, M_PI / 2, false).volume(), M_PI * 25 * 10 / 4));
    EXPECT_TRUE(closeTo(cone(5, 2, 10, false).volume(), M_PI * 10 * (25 + 10 + 4) / 3));
    EXPECT_TRUE(closeTo(cone(5, 0, 10, M_PI, false).volume(), M_PI * 10 * 25 / 6));
    EXPECT_TRUE(closeTo(sphere(3).volume(), 4.0 / 3.0 * M_PI * 27));
    EXPECT_TRUE(closeTo(sphere(3, M_PI).volume(), 2.0 / 3.0 * M_PI * 27));
    // The upper half by latitude.
    EXPECT_TRUE(closeTo(sphere(3, 0, M_PI / 2).volume(), 2.0 / 3.0 * M_PI * 27));
    EXPECT_TRUE(closeTo(torus(10, 2).volume(), 2 * M_PI * M_PI * 10 * 4));
    EXPECT_TRUE(closeTo(torus(10, 2, M_PI / 2).volume(), 2 * M_PI * M_PI * 10 * 4 / 4));
}

TEST(ShapeLayerSolids, TubeIsAnAnnulusAndItsSectorAnAnnularSector)
{
    const shape whole = tube(10, 6, 4);
    EXPECT_TRUE(closeTo(whole.volume(), M_PI * (100 - 36) * 4));
    EXPECT_EQ(whole.shape_type_name(), "Solid");

    const shape sector = tube(10, 6, 4, M_PI / 3);
    EXPECT_TRUE(closeTo(sector.volume(), M_PI / 6 * (100 - 36) * 4));
    const boundbox box = sector.bounding_box();
    EXPECT_NEAR(box.zmin, 0.0, 1e-6);
    EXPECT_NEAR(box.zmax, 4.0, 1e-6);
    EXPECT_NEAR(box.ymin, 0.0, 1e-6);
    EXPECT_NEAR(box.xmax, 10.0, 1e-6);
}

TEST(ShapeLayerSolids, CenterPlacesTheMiddleAtTheOrigin)
{
    expectBox(box(10, 20, 30, true).bounding_box(), {-5, -10, -15}, {5, 10, 15});
    expectBox(box(10, 20, 30, false).bounding_box(), {0, 0, 0}, {10, 20, 30});
    expectBox(cylinder(5, 10, true).bounding_box(), {-5, -5, -5}, {5, 5, 5});
    expectBox(cone(5, 2, 8, true).bounding_box(), {-5, -5, -4}, {5, 5, 4});
    expectPoint(box(10, 20, 30, false).center(), {5, 10, 15});
    expectPoint(cylinder(5, 10, false).center(), {0, 0, 5});
}

TEST(ShapeLayerSolids, BoundingBoxShapeFillsTheBox)
{
    const boundbox bounds{1, 2, 3, 4, 6, 8};
    const solid_shape filler = bounding_box_shape(bounds);
    EXPECT_TRUE(closeTo(filler.volume(), 3 * 4 * 5));
    expectBox(filler.bounding_box(), {1, 2, 3}, {4, 6, 8});
}

TEST(ShapeLayerFaces, AreasOfFacesMatchClosedForms)
{
    EXPECT_TRUE(closeTo(circle(5).area(), M_PI * 25));
    EXPECT_TRUE(closeTo(circle(5, M_PI / 2).area(), M_PI * 25 / 4));
    EXPECT_TRUE(closeTo(circle(5, M_PI / 4, M_PI).area(), M_PI * 25 * 3 / 8));
    EXPECT_TRUE(closeTo(ellipse(4, 2).area(), M_PI * 8));
    EXPECT_TRUE(closeTo(ellipse(4, 2, 0, M_PI).area(), M_PI * 4));
    EXPECT_TRUE(closeTo(ngon(1, 6).area(), 3 * std::sqrt(3.0) / 2));
    EXPECT_TRUE(closeTo(polygon({{0, 0}, {4, 0}, {0, 3}}).area(), 6));
    EXPECT_TRUE(closeTo(square(3, false).area(), 9));
    EXPECT_TRUE(closeTo(rectangle(3, 4, true).area(), 12));
}

TEST(ShapeLayerFaces, SectorsStartOnThePositiveXAxis)
{
    expectBox(circle(5, M_PI / 2).bounding_box(), {0, 0, 0}, {5, 5, 0});
    expectBox(rectangle(3, 4, true).bounding_box(), {-1.5, -2, 0}, {1.5, 2, 0});
    expectBox(rectangle(3, 4, false).bounding_box(), {0, 0, 0}, {3, 4, 0});
    const std::vector<point3> corners = ngon(2, 4).vertices(true);
    ASSERT_EQ(corners.size(), 4u);
    expectPoint(corners.front(), {2, 0, 0});
}

TEST(ShapeLayerFaces, FillMakesFacesOfEdgesAndWiresOnly)
{
    EXPECT_TRUE(closeTo(fill(circle_edge(2)).area(), M_PI * 4));
    EXPECT_TRUE(closeTo(fill(polysegment({{0, 0}, {2, 0}, {2, 2}, {0, 2}}, true)).area(), 4));
    EXPECT_TRUE(fill(box(1, 1, 1, false)).is_null());
    const face_shape plane = infplane({0, 0, 5}, {0, 0, 1});
    EXPECT_EQ(plane.shape_type_name(), "Face");
    EXPECT_FALSE(plane.is_null());
}

TEST(ShapeLayerCurves, LengthsOfEdgesAndWires)
{
    EXPECT_TRUE(closeTo(segment({0, 0, 0}, {3, 4, 0}).length(), 5));
    EXPECT_TRUE(closeTo(circle_edge(2).length(), 4 * M_PI));
    EXPECT_TRUE(closeTo(circle_edge(2, M_PI / 2).length(), M_PI));
    EXPECT_TRUE(closeTo(circle_edge(2, M_PI / 2, M_PI).length(), M_PI));
    EXPECT_TRUE(closeTo(circle_arc({1, 0, 0}, {0, 1, 0}, {-1, 0, 0}).length(), M_PI));
    EXPECT_TRUE(closeTo(polysegment({{0, 0}, {1, 0}, {1, 1}}, false).length(), 2));
    EXPECT_TRUE(closeTo(polysegment({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, true).length(), 4));
    const wire_shape joined = make_wire({segment({0, 0, 0}, {1, 0, 0}), polysegment({{1, 0}, {1, 2}, {0, 2}}, false)});
    EXPECT_TRUE(closeTo(joined.length(), 4));
}

TEST(ShapeLayerCurves, InterpolationPassesThroughItsPoints)
{
    const std::vector<point3> points{{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, -1, 1}};
    const edge_shape open = interpolate(points, false);
    expectPoint(open.value(open.first_parameter()), points.front(), 1e-7);
    expectPoint(open.value(open.last_parameter()), points.back(), 1e-7);
    EXPECT_GT(open.length(), segment(points.front(), points.back()).length());

    const edge_shape closed = interpolate(points, true);
    expectPoint(closed.value(closed.last_parameter()), points.front(), 1e-7);
}

TEST(ShapeLayerCurves, PointsAtArcLengthOnEdgesAndWires)
{
    const edge_shape arc = circle_edge(2, M_PI);
    expectPoint(arc.point_at_length(0), {2, 0, 0}, 1e-7);
    expectPoint(arc.point_at_length(M_PI), {0, 2, 0}, 1e-7);
    const vector3 tangent = arc.d1(0);
    EXPECT_NEAR(tangent.x, 0.0, 1e-9);
    EXPECT_GT(tangent.y, 0.0);

    const wire_shape path = polysegment({{0, 0}, {2, 0}, {2, 3}}, false);
    expectPoint(path.point_at_length(3.5), {2, 1.5, 0}, 1e-7);
    expectPoint(path.value(path.last_parameter()), {2, 3, 0}, 1e-7);
}

TEST(ShapeLayerCurves, AsWireDropsVeryShortEdges)
{
    const ShapeLog log;
    const wire_shape outline = rectangle(2, 1, false).as_wire();
    EXPECT_TRUE(closeTo(outline.length(), 6));

    const shape withSpeck = make_compound({segment({0, 0, 0}, {1, 0, 0}), segment({1, 0, 0}, {1, 0, 1e-6})});
    const wire_shape cleaned = withSpeck.as_wire();
    EXPECT_EQ(cleaned.edges().size(), 1u);
    EXPECT_TRUE(log.contains("Ignore very short edge"));
}

TEST(ShapeLayerMeasures, MeasuresFollowTheShapeType)
{
    const solid_shape block = box(1, 2, 3, false);
    const face_shape disc = circle(1);
    EXPECT_EQ(disc.length(), -1.0);
    EXPECT_EQ(block.area(), -1.0);
    EXPECT_EQ(segment({0, 0, 0}, {1, 0, 0}).volume(), -1.0);
    EXPECT_TRUE(closeTo(block.mass(), 6));
    EXPECT_TRUE(closeTo(disc.mass(), M_PI));
    EXPECT_TRUE(closeTo(circle_edge(1).mass(), 2 * M_PI));

    // A compound sums what its direct children of the fitting types have.
    const shape mixed = make_compound({disc, square(2, false), block});
    EXPECT_TRUE(closeTo(mixed.area(), M_PI + 4));
    EXPECT_TRUE(closeTo(make_compound({segment({0, 0, 0}, {2, 0, 0}), block}).length(), 2));
}

TEST(ShapeLayerMeasures, TypesNamesAndEmptiness)
{
    EXPECT_EQ(box(1, 1, 1, false).shape_type(), 2);
    EXPECT_EQ(circle(1).shape_type_name(), "Face");
    EXPECT_EQ(polysegment({{0, 0}, {1, 0}}, false).shape_type_name(), "Wire");
    EXPECT_EQ(make_compound({}).shape_type_name(), "Compound");
    EXPECT_EQ(shape().shape_type_name(), "Undefined");

    const shape nothing = make_difference(box(1, 1, 1, false), box(1, 1, 1, false), true);
    EXPECT_FALSE(nothing.is_null());
    EXPECT_TRUE(nothing.is_empty());
    EXPECT_FALSE(nothing.has_vertices());
    EXPECT_TRUE(shape().is_empty());
}

TEST(ShapeLayerMeasures, ExploringInExplorerOrder)
{
    const solid_shape block = box(1, 2, 3, false);
    EXPECT_EQ(block.faces().size(), 6u);
    EXPECT_EQ(block.wires().size(), 6u);
    EXPECT_EQ(block.edges().size(), 24u); // each edge once per face
    EXPECT_EQ(block.solids().size(), 1u);
    EXPECT_EQ(block.vertices(true).size(), 8u);
    EXPECT_EQ(block.vertices(false).size(), 48u);

    const solid_shape copy = block;
    EXPECT_TRUE(copy.is_equal(block));
}

TEST(ShapeLayerMeasures, NearestPartsOfASolid)
{
    const solid_shape block = box(10, 10, 10, false);
    const edge_shape edge = block.nearest_edge({5, -1, -1});
    expectPoint(edge.value((edge.first_parameter() + edge.last_parameter()) / 2), {5, 0, 0}, 1e-6);
    const face_shape face = block.nearest_face({5, 5, 12});
    expectPoint(face.center(), {5, 5, 10}, 1e-6);
    const shape corner = block.nearest_vertex({11, 11, -1});
    expectPoint(corner.vertices(false).front(), {10, 10, 0});
}

TEST(ShapeLayerMeasures, UnwrapTakesOutASingleMember)
{
    const solid_shape one = box(1, 1, 1, false);
    const solid_shape two = box(1, 1, 1, false).translated(5, 0, 0);
    EXPECT_TRUE(unwrap(make_compound({one})).is_equal(one));
    EXPECT_EQ(unwrap(make_compound({one, two})).shape_type_name(), "Compound");
    const shape nested = make_compound({make_compound({one})});
    EXPECT_TRUE(unwrap(nested).is_equal(nested));
    EXPECT_TRUE(unwrap(one).is_equal(one));
}

TEST(ShapeLayerTransforms, RigidMotionsKeepVolumeAndMoveTheCentre)
{
    const solid_shape block = box(2, 4, 6, false).translated(10, 0, 0);
    expectPoint(block.center(), {11, 2, 3});

    const solid_shape turned = block.transformed(rotateZ(M_PI / 2));
    EXPECT_TRUE(closeTo(turned.volume(), 48));
    expectPoint(turned.center(), {-2, 11, 3}, 1e-9);

    const shape mirrored = block.transformed(mirrorXY());
    EXPECT_TRUE(closeTo(mirrored.volume(), 48));
    expectPoint(mirrored.center(), {11, 2, -3}, 1e-9);
    expectPoint(block.transformed(mirrorO()).center(), {-11, -2, -3}, 1e-9);
    expectPoint(block.transformed(mirrorYZ()).center(), {-11, 2, 3}, 1e-9);
    expectPoint(block.transformed(mirrorX()).center(), {11, -2, -3}, 1e-9);

    expectPoint(block.transformed(rotate(vector3(1, 0, 0), M_PI)).center(), {11, -2, -3}, 1e-9);
    // The original stays where it was.
    expectPoint(block.center(), {11, 2, 3});
}

TEST(ShapeLayerTransforms, ScalesChangeVolumeByTheirFactors)
{
    const solid_shape block = box(2, 2, 2, false);
    const solid_shape doubled = block.transformed(scale(2, {1, 1, 1}));
    EXPECT_TRUE(closeTo(doubled.volume(), 64));
    expectPoint(doubled.center(), {1, 1, 1}, 1e-9);

    EXPECT_TRUE(closeTo(block.transformed(scaleX(3)).volume(), 24, 1e-9));
    EXPECT_TRUE(closeTo(block.transformed(scaleXYZ(1, 2, 0.5)).volume(), 8, 1e-9));
    // A general scale turns curved faces into splines, whose volume the
    // kernel's fixed-order integration gives to about a percent.
    EXPECT_TRUE(closeTo(cylinder(1, 1, false).transformed(scaleXY(2, 3)).volume(), 6 * M_PI, 2e-2));
}

TEST(ShapeLayerTransforms, TypedShapesStayTyped)
{
    const edge_shape moved = segment({0, 0, 0}, {1, 0, 0}).translated(0, 5, 0);
    EXPECT_TRUE(closeTo(moved.length(), 1));
    expectPoint(moved.value(moved.first_parameter()), {0, 5, 0});
    const face_shape turned = square(1, false).transformed(rotateX(M_PI / 2));
    EXPECT_TRUE(closeTo(turned.area(), 1));
    expectBox(turned.bounding_box(), {0, 0, 0}, {1, 0, 1});
}

TEST(ShapeLayerTransforms, PointsAndTheRotationVector)
{
    expectPoint(translate(1, 2, 3)({1, 1, 1}), {2, 3, 4});
    expectPoint(rotateY(M_PI / 2)({1, 0, 0}), {0, 0, -1}, 1e-12);
    expectPoint(scaleXYZ(2, 3, 4)({1, 1, 1}), {2, 3, 4});
    expectPoint(mirrorXZ()({1, 2, 3}), {1, -2, 3});
    // y and z of the rotation vector trade places: (0, a, 0) turns about z.
    expectPoint(rotate(0, M_PI / 2, 0)({1, 0, 0}), {0, 1, 0}, 1e-12);
    expectPoint(rotate(0, 0, M_PI / 2)({1, 0, 0}), {0, 0, -1}, 1e-12);
    expectPoint(rotate(0, 0, 0)({1, 2, 3}), {1, 2, 3});
}

TEST(ShapeLayerSweeps, LinearExtrudeOfFacesAndWires)
{
    const shape prism = linear_extrude(rectangle(3, 4, false), {0, 0, 5}, false);
    EXPECT_TRUE(closeTo(prism.volume(), 60));
    expectBox(prism.bounding_box(), {0, 0, 0}, {3, 4, 5});

    const shape centred = linear_extrude(circle(1), {0, 0, 2}, true);
    EXPECT_TRUE(closeTo(centred.volume(), 2 * M_PI));
    expectBox(centred.bounding_box(), {-1, -1, -1}, {1, 1, 1});

    const shape wall = linear_extrude(segment({0, 0, 0}, {2, 0, 0}), {0, 0, 3}, false);
    EXPECT_TRUE(closeTo(wall.area(), 6));

    const face_shape flat = square(1, false);
    EXPECT_TRUE(linear_extrude(flat, {0, 0, 0}, false).is_equal(flat));
}

TEST(ShapeLayerSweeps, PipeShellSweepsAProfileAlongASpine)
{
    const wire_shape spine = polysegment({{0, 0, 0}, {0, 0, 10}}, false);
    const shape shell = pipe_shell({circle_edge(1)}, spine, true, true, 90);
    EXPECT_EQ(shell.shape_type_name(), "Shell");
    EXPECT_TRUE(closeTo(shell.area(), 2 * M_PI * 10, 1e-6));
}
