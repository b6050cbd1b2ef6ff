#include <cmath>
#include <gtest/gtest.h>

#include "geometry/ShapeLayerSupport.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/failure.h"
#include "geometry/servoce/fillet.h"
#include "geometry/servoce/solid.h"
#include "geometry/servoce/step.h"
#include "geometry/servoce/unify.h"

using namespace servoce;

// Each case: the message in the log, the same text as the last failure, and
// the empty result of its kind.

TEST(ShapeLayerFailures, BooleansWithANullOperandFailWithTheirText)
{
    const ShapeLog log;
    const solid_shape block = box(1, 1, 1, false);

    EXPECT_TRUE(make_union(block, shape(), false).is_null());
    EXPECT_TRUE(log.contains("warn: union algorithm failed"));
    EXPECT_EQ(last_failure(), "warn: union algorithm failed");

    EXPECT_TRUE(make_difference(shape(), block, true).is_null());
    EXPECT_TRUE(log.contains("warn: difference algorithm failed"));

    EXPECT_TRUE(make_intersect(block, shape(), true).is_null());
    EXPECT_TRUE(log.contains("warn: intersect algorithm failed"));

    EXPECT_TRUE(make_section(block, shape(), false).is_null());
    EXPECT_TRUE(log.contains("warn: section algorithm failed"));

    EXPECT_TRUE(general_fuse({block, shape()}, true).is_null());
    EXPECT_EQ(last_failure(), "warn: union algorithm failed");

    EXPECT_TRUE(make_union(shape(), shape(), true).is_null());
    EXPECT_TRUE(make_section(shape(), shape(), true).is_null());
    EXPECT_TRUE(make_difference({shape(), block}, true).is_null());
}

TEST(ShapeLayerFailures, PrimitivesRefuseImpossibleSizes)
{
    const ShapeLog log;
    EXPECT_TRUE(cylinder(-1, 10, false).is_null());
    EXPECT_FALSE(last_failure().empty());
    EXPECT_TRUE(log.contains("servoce::cylinder: "));

    EXPECT_TRUE(box(0, 1, 1, false).is_null());
    EXPECT_TRUE(sphere(-2).is_null());
    EXPECT_TRUE(circle_edge(-1).is_null());
    EXPECT_TRUE(circle(-1).is_null());

    EXPECT_TRUE(ellipse_edge(1, 2).is_null());
    EXPECT_EQ(last_failure(), "gp_Elips() - invalid construction parameters");
    EXPECT_TRUE(ellipse(1, 2).is_null());
    EXPECT_EQ(last_failure(), "gp_Elips() - invalid construction parameters");

    EXPECT_TRUE(polysegment({{0, 0, 0}}, false).is_null());
    EXPECT_EQ(last_failure(), "Need at least two points for polysegment");
    EXPECT_TRUE(interpolate({{0, 0, 0}}, false).is_null());
    EXPECT_TRUE(infplane({0, 0, 0}, {0, 0, 0}).is_null());
    EXPECT_EQ(last_failure(), "gp_Dir() - input vector has zero norm");
}

TEST(ShapeLayerFailures, FilletsThatCannotBeBuilt)
{
    const ShapeLog log;
    // Rounds of 5 mm on a 10 mm cube meet; the kernel gives up.
    EXPECT_TRUE(fillet(box(10, 10, 10, false), 5).is_null());
    EXPECT_EQ(last_failure(), "BRep_API: command not done");
    EXPECT_TRUE(log.contains("servoce::fillet: BRep_API: command not done"));
    // Rounds of 6 mm overlap; the kernel's result intersects itself.
    EXPECT_TRUE(fillet(box(10, 10, 10, false), 6).is_null());
    EXPECT_EQ(last_failure(), "the result is not a valid shape");
    EXPECT_TRUE(fillet(circle(3), 1).is_null());

    EXPECT_TRUE(fillet(segment({0, 0, 0}, {1, 0, 0}), 1).is_null());
    EXPECT_EQ(last_failure(), "Fillet argument has unsupported type.");
    EXPECT_TRUE(fillet(shape(), 1).is_null());

    EXPECT_TRUE(chamfer(polysegment({{0, 0}, {1, 0}}, false), 1).is_null());
    EXPECT_EQ(last_failure(), "Fillet argument has unsupported type.");
    EXPECT_TRUE(chamfer(square(2, false), 0.5).is_null());
    EXPECT_FALSE(last_failure().empty());
}

TEST(ShapeLayerFailures, SweepsAndUnifyOfWhatTheyCannotTake)
{
    const ShapeLog log;
    EXPECT_TRUE(linear_extrude(box(1, 1, 1, false), {0, 0, 1}, false).is_null());
    EXPECT_EQ(last_failure(), "linear_extrude doesn't work with solids");
    EXPECT_TRUE(log.contains("linear_extrude doesn't work with solids"));

    EXPECT_TRUE(unify(shape()).is_null());
    EXPECT_EQ(last_failure(), "Cannot remove splitter from empty shape");


    EXPECT_TRUE(read_step("/nonexistent/servoce.step").is_null());
    EXPECT_FALSE(write_step(box(1, 1, 1, false), "/nonexistent/servoce.step"));
    EXPECT_FALSE(write_step(shape(), "/tmp/servoce_null.step"));
}

TEST(ShapeLayerFailures, NullPartsAreRefusedBeforeTheKernelSeesThem)
{
    const ShapeLog log;
    EXPECT_TRUE(make_wire({segment({0, 0, 0}, {1, 0, 0}), shape()}).is_null());
    EXPECT_EQ(last_failure(), "a part of the wire is null");
    EXPECT_TRUE(linear_extrude(shape(), {0, 0, 1}, false).is_null());
    EXPECT_TRUE(pipe_shell({circle_edge(1)}, wire_shape(), false, false, 11).is_null());
    EXPECT_EQ(last_failure(), "the spine is null");
    EXPECT_TRUE(pipe_shell({shape()}, polysegment({{0, 0}, {0, 1}}, false), false, false, 11).is_null());
    // A compound leaves null members out.
    EXPECT_EQ(make_compound({box(1, 1, 1, false), shape()}).solids().size(), 1u);
}

TEST(ShapeLayerFailures, CastsToAnotherTypeGiveNullShapes)
{
    const ShapeLog log;
    const face_shape disc = circle(1);
    EXPECT_TRUE(disc.as_edge().is_null());
    EXPECT_EQ(last_failure(), "TopoDS::Edge");
    EXPECT_TRUE(disc.as_wire_exact().is_null());
    EXPECT_EQ(last_failure(), "TopoDS::Wire");
    EXPECT_TRUE(disc.as_solid().is_null());
    EXPECT_EQ(last_failure(), "TopoDS::Solid");
    EXPECT_TRUE(box(1, 1, 1, false).as_face().is_null());
    EXPECT_EQ(last_failure(), "TopoDS::Face");
    EXPECT_TRUE(log.contains("TopoDS::Face"));

    EXPECT_FALSE(shape(disc).as_face().is_null());
    EXPECT_TRUE(last_failure().empty());
}

TEST(ShapeLayerFailures, TransformationsWithoutAnAxisOrAScale)
{
    const ShapeLog log;
    const transformation broken = rotate(vector3(0, 0, 0), 1.0);
    EXPECT_FALSE(broken.is_valid());
    EXPECT_EQ(last_failure(), "gp_Dir() - input vector has zero norm");
    EXPECT_FALSE(scale(0).is_valid());

    EXPECT_TRUE(box(1, 1, 1, false).transformed(broken).is_null());
    EXPECT_TRUE(std::isnan(broken({1, 2, 3}).x));
    // A null shape stays null, and that is no failure.
    EXPECT_TRUE(shape().translated(1, 0, 0).is_null());
    EXPECT_TRUE(last_failure().empty());
}

TEST(ShapeLayerFailures, MeasuresOfNullShapes)
{
    const ShapeLog log;
    EXPECT_EQ(shape().volume(), -1.0);
    EXPECT_EQ(shape().length(), -1.0);
    EXPECT_EQ(shape().mass(), -1.0);
    EXPECT_EQ(last_failure(), "undefined shape");
    EXPECT_TRUE(std::isnan(shape().center().x));
    EXPECT_TRUE(std::isnan(make_compound({}).bounding_box().xmin));
    EXPECT_TRUE(segment({0, 0, 0}, {1, 0, 0}).nearest_face({0, 0, 0}).is_null());
}

TEST(ShapeLayerFailures, EveryQueryOfANullShapeIsSafe)
{
    const ShapeLog log;
    const shape none;
    EXPECT_FALSE(none.has_vertices());
    EXPECT_EQ(none.shape_type(), -1);
    EXPECT_TRUE(none.is_equal(shape()));
    EXPECT_TRUE(none.edges().empty());
    EXPECT_TRUE(none.faces().empty());
    EXPECT_TRUE(none.vertices(true).empty());
    EXPECT_EQ(none.area(), -1.0);
    EXPECT_TRUE(std::isnan(none.bounding_box().xmax));
    EXPECT_TRUE(none.nearest_vertex({0, 0, 0}).is_null());
    EXPECT_TRUE(none.as_wire().is_null());
    EXPECT_TRUE(none.as_edge().is_null());
    EXPECT_TRUE(unwrap(none).is_null());
    EXPECT_TRUE(fill(none).is_null());
    EXPECT_TRUE(chamfer(none, 1).is_null());
    EXPECT_TRUE(fillet(none, 1, std::vector<point3>{{0, 0, 0}}).is_null());
    EXPECT_TRUE(none.transformed(scaleX(2)).is_null());
    EXPECT_TRUE(std::isnan(edge_shape().point_at_length(1).x));
    EXPECT_EQ(wire_shape().first_parameter(), 0.0);
    EXPECT_TRUE(unwrap(make_compound({})).shape_type_name() == "Compound");
}

TEST(ShapeLayerFailures, AFailureInsideAComposedOperationSurvivesIt)
{
    const ShapeLog log;
    EXPECT_TRUE(bounding_box_shape(boundbox{0, 0, 0, 0, 1, 1}).is_null());
    EXPECT_FALSE(last_failure().empty());

    EXPECT_FALSE(box(1, 1, 1, false).is_null());
    EXPECT_TRUE(last_failure().empty());
}
