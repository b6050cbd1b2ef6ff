#include "base/Polylabel.h"

#include <QRectF>
#include <cmath>
#include <limits>
#include <queue>
#include <vector>

namespace {

double segmentDistanceSquared(const QPointF &p, const QPointF &a, const QPointF &b)
{
    QPointF closest = a;
    const QPointF ab = b - a;
    const double lengthSquared = QPointF::dotProduct(ab, ab);
    if (lengthSquared > 0.0) {
        const double t = QPointF::dotProduct(p - a, ab) / lengthSquared;
        if (t > 1.0)
            closest = b;
        else if (t > 0.0)
            closest = a + ab * t;
    }
    const QPointF d = p - closest;
    return QPointF::dotProduct(d, d);
}

// Distance to the outline, negative outside the region.
double signedDistance(const QPointF &p, const QList<QPolygonF> &rings)
{
    bool inside = false;
    double distanceSquared = std::numeric_limits<double>::infinity();
    for (const QPolygonF &ring : rings) {
        for (int i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
            const QPointF &a = ring.at(i);
            const QPointF &b = ring.at(j);
            if ((a.y() > p.y()) != (b.y() > p.y())
                && p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x())
                inside = !inside;
            distanceSquared = std::min(distanceSquared, segmentDistanceSquared(p, a, b));
        }
    }
    const double distance = std::sqrt(distanceSquared);
    return inside ? distance : -distance;
}

// A square of half size h about c; bound is the best distance any point in it may reach.
struct Cell
{
    Cell(const QPointF &centre, double half, const QList<QPolygonF> &rings)
        : c(centre)
        , h(half)
        , d(signedDistance(centre, rings))
        , bound(d + h * std::sqrt(2.0))
    {
    }

    QPointF c;
    double h;
    double d;
    double bound;
};

struct ByBound
{
    bool operator()(const Cell &a, const Cell &b) const { return a.bound < b.bound; }
};

// The area centroid of the first ring, a good first guess for convex regions.
Cell centroidCell(const QList<QPolygonF> &rings)
{
    const QPolygonF &ring = rings.first();
    double area = 0.0;
    QPointF centroid;
    for (int i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const QPointF &a = ring.at(i);
        const QPointF &b = ring.at(j);
        const double f = a.x() * b.y() - b.x() * a.y();
        centroid += (a + b) * f;
        area += f * 3.0;
    }
    return Cell(area == 0.0 ? ring.first() : centroid / area, 0.0, rings);
}

} // namespace

QPointF polylabel(const QList<QPolygonF> &rings, double precision)
{
    QRectF bounds;
    for (const QPolygonF &ring : rings)
        bounds |= ring.boundingRect();
    if (rings.isEmpty() || rings.first().isEmpty())
        return {};
    const double cellSize = std::min(bounds.width(), bounds.height());
    if (cellSize <= 0.0)
        return bounds.topLeft();
    // A precision of nothing would split cells for ever.
    precision = std::max(precision, cellSize * 1e-9);

    std::priority_queue<Cell, std::vector<Cell>, ByBound> queue;
    const double h = cellSize / 2.0;
    for (double x = bounds.left(); x < bounds.right(); x += cellSize) {
        for (double y = bounds.top(); y < bounds.bottom(); y += cellSize)
            queue.push(Cell(QPointF(x + h, y + h), h, rings));
    }

    Cell best = centroidCell(rings);
    const Cell boxCell(bounds.center(), 0.0, rings);
    if (boxCell.d > best.d)
        best = boxCell;

    while (!queue.empty()) {
        const Cell cell = queue.top();
        queue.pop();
        if (cell.d > best.d)
            best = cell;
        if (cell.bound - best.d <= precision)
            continue;
        const double half = cell.h / 2.0;
        queue.push(Cell(cell.c + QPointF(-half, -half), half, rings));
        queue.push(Cell(cell.c + QPointF(half, -half), half, rings));
        queue.push(Cell(cell.c + QPointF(-half, half), half, rings));
        queue.push(Cell(cell.c + QPointF(half, half), half, rings));
    }
    return best.c;
}
