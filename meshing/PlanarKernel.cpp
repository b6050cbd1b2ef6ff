#include "meshing/PlanarKernel.h"

#include <CGAL/Cartesian_converter.h>
#include <CGAL/Exact_rational.h>
#include <CGAL/Polygon_2_algorithms.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/intersections.h>
#include <vector>

#include "meshing/MyKernel.h"

namespace {

using Point = MyKernel::Point_2;
using Segment = MyKernel::Segment_2;
// Crossings are constructed exactly and rounded once: a crossing on a line
// along an axis keeps that line's coordinate to the last bit, else the
// triangulation sees the two as not collinear and fans slivers out of the point.
using ExactKernel = CGAL::Simple_cartesian<CGAL::Exact_rational>;

Point toPoint(const QPointF &point)
{
    return Point(point.x(), point.y());
}

std::vector<Point> toPoints(const QList<PointF> &polygon)
{
    std::vector<Point> points;
    points.reserve(size_t(polygon.size()));
    for (const PointF &point : polygon)
        points.push_back(toPoint(point));
    return points;
}

} // namespace

namespace planar {

QList<PointF> segmentIntersection(const QLineF &a, const QLineF &b)
{
    const Segment segmentA(toPoint(a.p1()), toPoint(a.p2()));
    const Segment segmentB(toPoint(b.p1()), toPoint(b.p2()));
    if (segmentA.is_degenerate() || segmentB.is_degenerate())
        return {};
    const CGAL::Cartesian_converter<MyKernel, ExactKernel> toExact;
    const auto result = CGAL::intersection(toExact(segmentA), toExact(segmentB));
    if (!result)
        return {};
    const auto rounded = [](const ExactKernel::Point_2 &point) {
        return PointF(CGAL::to_double(point.x()), CGAL::to_double(point.y()));
    };
    if (const ExactKernel::Point_2 *point = boost::get<ExactKernel::Point_2>(&*result))
        return {rounded(*point)};
    const ExactKernel::Segment_2 &overlap = boost::get<ExactKernel::Segment_2>(*result);
    return {rounded(overlap.source()), rounded(overlap.target())};
}

bool isSimple(const QList<PointF> &polygon)
{
    if (polygon.size() < 3)
        return false;
    const std::vector<Point> points = toPoints(polygon);
    return CGAL::is_simple_2(points.begin(), points.end(), MyKernel());
}

bool isCounterClockwise(const QList<PointF> &polygon)
{
    const std::vector<Point> points = toPoints(polygon);
    return CGAL::orientation_2(points.begin(), points.end(), MyKernel()) == CGAL::COUNTERCLOCKWISE;
}

} // namespace planar
