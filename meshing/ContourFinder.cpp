#include "meshing/ContourFinder.h"

#include <QDebug>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <cmath>

#include "meshing/GeometryGenerator.h"
#include "base/Numeric.h"

namespace {

// Side points lie this many tolerances off a segment's middle.
const double sideDistance = 9.0;

// A segment of a region with the regions on its two sides.
struct Item
{
    qint64 node0;
    qint64 node1;
    Subdomain *left;
    Subdomain *right;
};

using ItemList = QList<Item>;

QString pointText(const QPointF &point)
{
    return flat::pointText(point, 'f', 9);
}

// The smallest region that holds the point: the search order lists higher ids first.
Subdomain *regionAt(const SubdomainList &searchOrder, const QPointF &point)
{
    for (const QSharedPointer<Subdomain> &subdomain : searchOrder) {
        if (subdomain->contains(point))
            return subdomain.data();
    }
    return nullptr;
}

struct SidePoints
{
    QPointF left;
    QPointF right;
};

SidePoints sidePoints(const QLineF &line, double distance)
{
    const QPointF middle = line.center();
    const double length = line.length();
    const QPointF normal(-line.dy() / length, line.dx() / length);
    return {middle + normal * distance, middle - normal * distance};
}

// Chains items into loops; a loop that does not close stays open.
QList<ItemList> chainLoops(ItemList items)
{
    QList<ItemList> loops;
    while (!items.isEmpty()) {
        ItemList loop{items.takeFirst()};
        for (bool grown = true; grown && loop.first().node0 != loop.last().node1;) {
            grown = false;
            for (int i = 0; i < items.size(); ++i) {
                if (items.at(i).node0 == loop.last().node1) {
                    loop.append(items.takeAt(i));
                    grown = true;
                    break;
                }
            }
            if (grown)
                continue;
            for (int i = 0; i < items.size(); ++i) {
                if (items.at(i).node1 == loop.first().node0) {
                    loop.prepend(items.takeAt(i));
                    grown = true;
                    break;
                }
            }
        }
        loops.append(loop);
    }
    return loops;
}

bool isClosed(const ItemList &loop)
{
    return !loop.isEmpty() && loop.first().node0 == loop.last().node1;
}

QSet<QPair<qint64, qint64>> edgesOf(const ItemList &loop)
{
    QSet<QPair<qint64, qint64>> edges;
    for (const Item &item : loop)
        edges.insert(qMakePair(std::min(item.node0, item.node1), std::max(item.node0, item.node1)));
    return edges;
}

void sortByNode0(ItemList &items)
{
    std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return a.node0 < b.node0; });
}

// Looks up both sides of every segment of every region.
ItemList sideItems(const GeometryGenerator &generator, const SubdomainList &searchOrder)
{
    const double tolerance = generator.distanceTolerant();
    const QList<Node> &nodes = generator.nodes();
    ItemList items;
    QSet<QPair<qint64, qint64>> seen;
    for (const QSharedPointer<Subdomain> &subdomain : searchOrder) {
        for (const SegmentPtr &segment : subdomain->segments()) {
            const QPair<qint64, qint64> key(segment->node0, segment->node1);
            if (seen.contains(key))
                continue;
            const QLineF line(nodes.at(int(segment->node0)), nodes.at(int(segment->node1)));
            const SidePoints sides = sidePoints(line, sideDistance * tolerance);
            Subdomain *left = regionAt(searchOrder, sides.left);
            Subdomain *right = regionAt(searchOrder, sides.right);
            if (left == right) {
                qCritical().noquote() << "Error: item.leftSubdomain == item.rightSubdomain for segment:"
                                      << segment->toString(nodes) << "at leftPoint:" << pointText(sides.left)
                                      << ", rightPoint:" << pointText(sides.right);
                continue;
            }
            // Farther points must see the same regions, or the tolerance is too coarse for this place.
            for (int iter = 3; iter >= 1; --iter) {
                const SidePoints check = sidePoints(line, sideDistance * iter * tolerance);
                const bool agree =
                    regionAt(searchOrder, check.left) == left && regionAt(searchOrder, check.right) == right;
                if (agree && iter == 3)
                    break;
                const char *text = agree      ? "Info: Problem with tolerance distance"
                                   : iter > 1 ? "Warning: Problem with tolerance distance"
                                              : "Error: Problem with tolerance distance";
                (agree || iter > 1 ? qWarning() : qCritical()).noquote()
                    << text << "checkPoints, leftPoint:" << pointText(check.left)
                    << " ,rightPoint:" << pointText(check.right) << "distanceTolerant:" << tolerance
                    << "Iter:" << iter;
                if (agree)
                    break;
            }
            if (left != subdomain.data() && right == subdomain.data())
                qCritical() << "Error: Violation in the orientation of segments, subdomain" << subdomain->id();
            seen.insert(key);
            items.append({segment->node0, segment->node1, left, right});
        }
    }
    return items;
}

} // namespace

SubdomainList ContourFinder::find(const GeometryGenerator &generator, const GeometryData &data)
{
    const SubdomainList result = data.subdomains;
    SubdomainList searchOrder = result;
    std::stable_sort(searchOrder.begin(), searchOrder.end(),
                     [](const QSharedPointer<Subdomain> &a, const QSharedPointer<Subdomain> &b) {
                         return a->id() > b->id();
                     });
    ItemList items = sideItems(generator, searchOrder);
    sortByNode0(items);

    QHash<Subdomain *, ItemList> leftMap;
    QHash<Subdomain *, ItemList> rightMap;
    QList<Subdomain *> rightOrder;
    for (const QSharedPointer<Subdomain> &subdomain : result) {
        for (const Item &item : qAsConst(items)) {
            if (item.left != subdomain.data())
                continue;
            leftMap[item.left].append(item);
            if (!rightMap.contains(item.right))
                rightOrder.append(item.right);
            rightMap[item.right].append(item);
        }
    }
    for (ItemList &list : leftMap)
        sortByNode0(list);

    for (Subdomain *region : qAsConst(rightOrder)) {
        ItemList inner = rightMap.value(region);
        if (inner.size() <= 2 || region == nullptr)
            continue;
        for (Item &item : inner) {
            std::swap(item.left, item.right);
            std::swap(item.node0, item.node1);
        }
        std::reverse(inner.begin(), inner.end());
        sortByNode0(inner);
        inner.erase(std::unique(inner.begin(), inner.end(),
                                [](const Item &a, const Item &b) {
                                    return a.node0 == b.node0 && a.node1 == b.node1;
                                }),
                    inner.end());
        const QList<ItemList> ownLoops = chainLoops(leftMap.value(region));
        const QSet<QPair<qint64, qint64>> ownEdges =
            ownLoops.isEmpty() ? QSet<QPair<qint64, qint64>>() : edgesOf(ownLoops.first());

        QPainterPath path = region->path();
        double holes = 0.0;
        for (const ItemList &loop : chainLoops(inner)) {
            if (!isClosed(loop) || edgesOf(loop) == ownEdges)
                continue;
            SegmentList segments;
            for (const Item &item : loop)
                segments.append(SegmentPtr(new LineSegment(item.node0, item.node1)));
            const QPainterPath hole = generator.contourPath(segments);
            holes += GeometryGenerator::pathArea(hole);
            path.addPath(hole);
        }
        const double area = region->area() - holes;
        if (holes <= Numeric::zeroTolerance || Numeric::isZero(area))
            continue;
        if (area < 0.0) {
            qCritical() << "Error: area is less zero, subdomain:" << region->id();
            continue;
        }
        region->setPath(path);
        region->setLength(path.length());
        region->setArea(area);
    }
    return result;
}
