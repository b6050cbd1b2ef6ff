#include <QtMath>
#include <gtest/gtest.h>

#include "meshing/Shape2D.h"
#include "MeshingSupport.h"

namespace {

Arc2D arc(double start, double end, double radius, QPointF center = {}, bool ccw = true)
{
    Arc2D result;
    result.startAngle = start;
    result.endAngle = end;
    result.radius = radius;
    result.center = center;
    result.ccw = ccw;
    return result;
}

} // namespace

TEST(Arc2D, QuarterArcEndsOnTheAxesAndHasItsClosedFormLength)
{
    const Arc2D quarter = arc(0.0, 90.0, 5.0);
    EXPECT_EQ(quarter.p1(), QPointF(5.0, 0.0));
    EXPECT_EQ(quarter.p2(), QPointF(0.0, 5.0));
    EXPECT_NEAR(quarter.length(), 5.0 * M_PI / 2.0, 1e-12);
    // Through zero, counter-clockwise: 20 degrees, not 340.
    EXPECT_NEAR(arc(350.0, 10.0, 3.0).length(), 3.0 * qDegreesToRadians(20.0), 1e-12);
    EXPECT_TRUE(arc(10.0, 10.0, 3.0).isNull());
    EXPECT_TRUE(arc(0.0, 90.0, 0.0).isNull());
}

TEST(Arc2D, PathStaysWithinTheSagOfTheCircle)
{
    const Arc2D half = arc(0.0, 180.0, 20.0, QPointF(3.0, -1.0));
    const QPainterPath path = half.toPath();
    ASSERT_GT(path.elementCount(), 2);
    EXPECT_NEAR(QLineF(path.elementAt(0), QPointF(23.0, -1.0)).length(), 0.0, 1e-12);
    const int last = path.elementCount() - 1;
    EXPECT_NEAR(QLineF(path.elementAt(last), QPointF(-17.0, -1.0)).length(), 0.0, 1e-9);
    for (int i = 1; i < path.elementCount(); ++i) {
        const QPointF a = path.elementAt(i - 1);
        const QPointF b = path.elementAt(i);
        EXPECT_NEAR(QLineF(half.center, a).length(), 20.0, 1e-9);
        const double middle = QLineF(half.center, (a + b) / 2.0).length();
        EXPECT_LE(20.0 - middle, 1e-4 + 1e-12);
    }
    EXPECT_TRUE(arc(0.0, 0.0, 20.0).toPath().isEmpty());
}

TEST(Shape2DList, ComparesLinesAndArcsWithinTheirTolerance)
{
    const Line2D line(0.0, 0.0, 1.0, 2.0);
    EXPECT_TRUE(Shape2DList::sameAs(line, Line2D(0.0, 5e-8, 1.0, 2.0)));
    EXPECT_FALSE(Shape2DList::sameAs(line, Line2D(1.0, 2.0, 0.0, 0.0)));
    EXPECT_FALSE(Shape2DList::sameAs(line, arc(0.0, 90.0, 1.0)));
    EXPECT_TRUE(Shape2DList::sameAs(arc(0.0, 90.0, 1.0), arc(0.0, 90.0 + 5e-8, 1.0)));
    EXPECT_FALSE(Shape2DList::sameAs(arc(0.0, 90.0, 1.0), arc(0.0, 90.0, 1.0, {}, false)));
}

TEST(Shape2DList, SelectsLinesByTheirEnds)
{
    const Shape2DList lines = linesOf({QLineF(0.0, 0.0, 10.0, 0.0), QLineF(10.0, 0.0, 10.0, 5.0),
                                       QLineF(10.0005, 5.0, 0.0, 5.0), QLineF(0.0, 5.0, 0.0, 0.0)});
    EXPECT_EQ(lines.linesAtOrdinate(5.0).size(), 1);
    EXPECT_EQ(lines.linesAtAbscissa(10.0).size(), 1);
    EXPECT_EQ(lines.linesAtAbscissa(0.0).size(), 1);
    // The wider tolerance keeps a line that overshoots by 0.0005.
    EXPECT_EQ(lines.leftOf(10.0).size(), 4);
    EXPECT_EQ(lines.leftOf(9.0).size(), 1);
    EXPECT_EQ(lines.below(0.0).size(), 1);
    EXPECT_EQ(lines.below(5.0).size(), 4);
}

TEST(Shape2DList, ShiftsLinesAndArcs)
{
    Shape2DList list = linesOf({QLineF(0.0, 0.0, 1.0, 1.0)});
    list.append(QSharedPointer<Shape2D>(new Arc2D(arc(0.0, 90.0, 2.0))));
    const Shape2DList moved = list.shifted(3.0, -1.0);
    ASSERT_EQ(moved.size(), 2);
    EXPECT_EQ(moved.at(0)->p1(), QPointF(3.0, -1.0));
    EXPECT_EQ(moved.at(0)->p2(), QPointF(4.0, 0.0));
    const auto &movedArc = static_cast<const Arc2D &>(*moved.at(1));
    EXPECT_EQ(movedArc.center, QPointF(3.0, -1.0));
    EXPECT_NEAR(movedArc.startAngle, 0.0, 1e-12);
    EXPECT_NEAR(movedArc.endAngle, 90.0, 1e-12);
    // The original is untouched.
    EXPECT_EQ(list.at(0)->p1(), QPointF(0.0, 0.0));
    EXPECT_EQ(list.shifted(1e-8, 0.0).at(0), list.at(0));
}

TEST(Shape2DList, IntersectsLines)
{
    const QList<PointF> crossing = Shape2DList::intersections(QLineF(0, 0, 2, 2), QLineF(0, 2, 2, 0), 1e-5);
    ASSERT_EQ(crossing.size(), 1);
    EXPECT_NEAR(crossing.first().x(), 1.0, 1e-12);
    EXPECT_NEAR(crossing.first().y(), 1.0, 1e-12);

    const QList<PointF> sharedEnd = Shape2DList::intersections(QLineF(0, 0, 2, 0), QLineF(2, 5e-6, 2, 3), 1e-5);
    ASSERT_EQ(sharedEnd.size(), 1);
    EXPECT_EQ(sharedEnd.first(), QPointF(2, 0));

    const QList<PointF> overlap = Shape2DList::intersections(QLineF(0, 0, 4, 0), QLineF(1, 0, 6, 0), 1e-5);
    ASSERT_EQ(overlap.size(), 2);
    EXPECT_DOUBLE_EQ(std::min(overlap.at(0).x(), overlap.at(1).x()), 1.0);
    EXPECT_DOUBLE_EQ(std::max(overlap.at(0).x(), overlap.at(1).x()), 4.0);

    EXPECT_TRUE(Shape2DList::intersections(QLineF(0, 0, 4, 0), QLineF(0, 1, 4, 1), 1e-5).isEmpty());
    EXPECT_TRUE(Shape2DList::intersections(QLineF(0, 0, 1, 1), QLineF(3, 0, 2, 1), 1e-5).isEmpty());
}

// A crossing with a line along an axis lies on that line to the last bit: a
// point a rounding off it would make the triangulation fan slivers out of it.
TEST(Shape2DList, CrossingsKeepTheCoordinateOfALineAlongAnAxis)
{
    for (const double x : {50.0, 66.0 + 2.0 / 3.0, 150.0}) {
        const QList<PointF> across = Shape2DList::intersections(QLineF(0, 35, 195, 35), QLineF(x, 56, x, 14), 1e-5);
        ASSERT_EQ(across.size(), 1);
        EXPECT_EQ(across.first().x(), x);
        EXPECT_EQ(across.first().y(), 35.0);
        const QList<PointF> reversed = Shape2DList::intersections(QLineF(x, 56, x, 14), QLineF(195, 49, 0, 49), 1e-5);
        ASSERT_EQ(reversed.size(), 1);
        EXPECT_EQ(reversed.first().x(), x);
        EXPECT_EQ(reversed.first().y(), 49.0);
    }
}

TEST(Shape2D, TravelsInVariants)
{
    const QVariant line = QVariant::fromValue(Line2D(1, 2, 3, 4));
    EXPECT_EQ(line.value<Line2D>().p2(), QPointF(3, 4));
    EXPECT_TRUE(line.value<Arc2D>().isNull());
}
