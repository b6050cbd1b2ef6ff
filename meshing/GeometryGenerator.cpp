#include "meshing/GeometryGenerator.h"

#include <QDebug>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QScopeGuard>
#include <QThread>
#include <QtConcurrent>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

#include "base/Tbb.h"
#include "meshing/ContourFinder.h"
#include "meshing/PlanarKernel.h"
#include "base/Numeric.h"

namespace {

const double zeroTolerance = Numeric::zeroTolerance;
// Bends of less than this many degrees at a node of two lines are merged away.
const double collinearBend = 4.0;
// Deeper recursion of appendLine means splits that do not converge.
const int maximumDepth = 2000;
// From this many nodes on, the node search runs in parallel. Below it,
// starting the tasks costs more than the scan: a few thousand nodes take
// microseconds, and a section searches once for every end of every line.
const int parallelNodeSearch = 4096;

bool sameOrLess(double value, double limit)
{
    return value < limit || qFuzzyCompare(value, limit);
}

} // namespace

QLineF GeometryGenerator::lineOf(const Segment &segment) const
{
    return QLineF(m_nodes.at(int(segment.node0)), m_nodes.at(int(segment.node1)));
}

bool GeometryGenerator::nodeEquals(const PointF &node, const PointF &point) const
{
    const double d = 2.0 * m_distanceTolerant;
    const double dx = std::abs(node.x() - point.x());
    const double dy = std::abs(node.y() - point.y());
    if (dx > 1.5 * d || dy > 1.5 * d)
        return false;
    return sameOrLess(std::hypot(dx, dy), d);
}

bool GeometryGenerator::pointOnSegment(const PointF &point, const Segment &segment) const
{
    const QPointF a = m_nodes.at(int(segment.node0));
    const QPointF b = m_nodes.at(int(segment.node1));
    const double grow = m_distanceTolerant;
    if (point.x() < std::min(a.x(), b.x()) - grow || point.x() > std::max(a.x(), b.x()) + grow
        || point.y() < std::min(a.y(), b.y()) - grow || point.y() > std::max(a.y(), b.y()) + grow)
        return false;
    QPointF foot = a;
    const QPointF ab = b - a;
    if (std::abs(ab.x()) > zeroTolerance || std::abs(ab.y()) > zeroTolerance) {
        double t = QPointF::dotProduct(point - a, ab) / QPointF::dotProduct(ab, ab);
        if (t <= 0.0 || qFuzzyCompare(1.0 + t, 1.0))
            t = 0.0;
        else if (t >= 1.0 || qFuzzyCompare(t, 1.0))
            t = 1.0;
        foot = a + ab * t;
    }
    const QPointF offset = point - foot;
    return sameOrLess(std::hypot(offset.x(), offset.y()), 2.0 * m_distanceTolerant);
}

qint64 GeometryGenerator::findNode(const PointF &point) const
{
    const int count = m_nodes.size();
    const auto matches = [this, &point](int i) { return !m_nodes.at(i).removed && nodeEquals(m_nodes.at(i), point); };
    if (QThread::idealThreadCount() < 2 || count < parallelNodeSearch) {
        for (int i = 0; i < count; ++i) {
            if (matches(i))
                return i;
        }
        return -1;
    }
    // The lowest matching index, so that the result does not depend on scheduling.
    std::atomic<int> found{std::numeric_limits<int>::max()};
    tbb::parallel_for(tbb::blocked_range<int>(0, count), [&](const tbb::blocked_range<int> &range) {
        for (int i = range.begin(); i != range.end() && i < found.load(); ++i) {
            if (matches(i)) {
                int current = found.load();
                while (i < current && !found.compare_exchange_weak(current, i)) {
                }
                return;
            }
        }
    });
    return found.load() == std::numeric_limits<int>::max() ? -1 : found.load();
}

qint64 GeometryGenerator::nodeIndex(const PointF &point)
{
    qint64 index = findNode(point);
    if (index < 0) {
        m_nodes.append(Node(point));
        index = m_nodes.size() - 1;
    }
    const SegmentList candidates = m_segments;
    for (const SegmentPtr &segment : candidates) {
        if (segment->touches(index) || !pointOnSegment(point, *segment) || !m_segments.contains(segment))
            continue;
        m_segments.removeOne(segment);
        const Node node = m_nodes.at(int(index));
        appendLine(m_nodes.at(int(segment->node0)), node);
        appendLine(node, m_nodes.at(int(segment->node1)));
    }
    return index;
}

bool GeometryGenerator::hasSegment(qint64 a, qint64 b) const
{
    return std::any_of(m_segments.cbegin(), m_segments.cend(),
                       [a, b](const SegmentPtr &segment) { return segment->joins(a, b); });
}

bool GeometryGenerator::appendLine(const Node &node0, const Node &node1, bool noSplit)
{
    const QPointF difference = node1 - node0;
    if (std::hypot(difference.x(), difference.y()) < 2.0 * m_distanceTolerant) {
        qWarning().noquote() << "Ingore empty line by (node0 == node1) at" << flat::pointText(node0)
                             << flat::pointText(node1);
        return false;
    }
    if (m_depth >= maximumDepth) {
        qCritical().noquote() << "Error: lines split without end at" << flat::pointText(node0)
                              << flat::pointText(node1);
        return false;
    }
    ++m_depth;
    const auto leave = qScopeGuard([this] { --m_depth; });

    const qint64 i0 = nodeIndex(node0);
    const qint64 i1 = nodeIndex(node1);
    if (i0 == i1 || hasSegment(i0, i1))
        return false;
    if (!noSplit) {
        const LineSegment probe(i0, i1);
        for (int i = 0; i < m_nodes.size(); ++i) {
            if (i == i0 || i == i1 || m_nodes.at(i).removed || !pointOnSegment(m_nodes.at(i), probe))
                continue;
            const Node between = m_nodes.at(i);
            appendLine(m_nodes.at(int(i0)), between);
            appendLine(between, m_nodes.at(int(i1)));
            return false;
        }
    }
    const SegmentPtr added(new LineSegment(i0, i1));
    m_segments.append(added);
    if (noSplit)
        return true;
    const QLineF line = lineOf(*added);
    QList<PointF> crossings;
    for (const SegmentPtr &segment : m_segments) {
        if (segment != added)
            crossings += Shape2DList::intersections(line, lineOf(*segment), m_distanceTolerant);
    }
    for (const PointF &crossing : crossings)
        nodeIndex(crossing);
    return true;
}

void GeometryGenerator::setTolerance(double tolerance)
{
    if (std::abs(tolerance) > zeroTolerance) {
        m_distanceTolerant = tolerance;
        return;
    }
    double left = 0.0, right = 0.0, bottom = 0.0, top = 0.0;
    for (const Node &node : m_nodes) {
        if (node.removed)
            continue;
        left = std::min(left, node.x());
        right = std::max(right, node.x());
        bottom = std::min(bottom, node.y());
        top = std::max(top, node.y());
    }
    m_distanceTolerant = std::max(right - left, top - bottom) * 1e-5;
}

void GeometryGenerator::createSegments(const Shape2DList &lines, const double &tolerance, bool merge,
                                       bool removeOffshootSegments)
{
    m_direction = -1;
    m_nodes.clear();
    m_segments.clear();
    m_freeSegments.clear();
    m_subdomains.clear();
    m_adjacency.clear();
    for (const QSharedPointer<Shape2D> &shape : lines) {
        if (shape->type() != Shape2D::LineType)
            continue;
        m_nodes.append(Node(shape->p1()));
        m_nodes.append(Node(shape->p2()));
        m_segments.append(SegmentPtr(new LineSegment(m_nodes.size() - 2, m_nodes.size() - 1)));
    }
    setTolerance(tolerance);

    const QList<Node> oldNodes = m_nodes;
    const SegmentList oldSegments = m_segments;
    m_nodes.clear();
    m_segments.clear();
    for (const SegmentPtr &segment : oldSegments)
        appendLine(oldNodes.at(int(segment->node0)), oldNodes.at(int(segment->node1)));

    if (removeOffshootSegments)
        removeOffshoots();
    if (merge)
        mergeCollinear();
}

SegmentList GeometryGenerator::segmentsAt(qint64 node) const
{
    SegmentList result;
    for (const SegmentPtr &segment : m_segments) {
        if (segment->touches(node))
            result.append(segment);
    }
    return result;
}

void GeometryGenerator::removeOffshoots()
{
    for (bool removed = true; removed;) {
        removed = false;
        QVector<int> degree(m_nodes.size(), 0);
        for (const SegmentPtr &segment : m_segments) {
            ++degree[int(segment->node0)];
            ++degree[int(segment->node1)];
        }
        for (int i = 0; i < m_nodes.size() && !removed; ++i) {
            Node &node = m_nodes[i];
            if (node.removed)
                continue;
            if (degree.at(i) == 0) {
                qCritical().noquote() << "Not found segments at node" << i
                                      << QStringLiteral("(%1, %2)").arg(qRound(node.x())).arg(qRound(node.y()));
                // Logged once: a node without segments has no part in any region.
                node.removed = true;
            } else if (degree.at(i) == 1) {
                node.removed = true;
                const SegmentPtr offshoot = segmentsAt(i).value(0);
                if (offshoot.isNull()) {
                    qCritical() << "SegmentPtr is null";
                } else {
                    qWarning().noquote() << "Warning: remove offshoot segment" << offshoot->toString(m_nodes);
                    m_segments.removeOne(offshoot);
                }
                removed = true;
            }
        }
    }
}

void GeometryGenerator::mergeCollinear()
{
    for (bool merged = true; merged;) {
        merged = false;
        QList<int> mergedNodes;
        for (int i = 0; i < m_nodes.size(); ++i) {
            if (m_nodes.at(i).removed)
                continue;
            const SegmentList atNode = segmentsAt(i);
            if (atNode.size() != 2)
                continue;
            const SegmentPtr &first = atNode.at(0);
            const SegmentPtr &second = atNode.at(1);
            if (first->node0 != i)
                first->reverse();
            if (second->node0 != i)
                second->reverse();
            if (hasSegment(first->node1, second->node1))
                continue;
            const double angle = Numeric::normalizeAngle(lineOf(*first).angleTo(lineOf(*second)));
            double bend = std::abs(angle - 180.0);
            if (bend <= zeroTolerance)
                bend = 0.0;
            if (bend >= collinearBend)
                continue;
            first->node0 = second->node1;
            m_segments.removeOne(second);
            mergedNodes.append(i);
            merged = true;
        }
        for (int i : mergedNodes)
            m_nodes[i].removed = true;
    }
}

void GeometryGenerator::buildAdjacency()
{
    m_adjacency.clear();
    for (const SegmentPtr &segment : m_segments) {
        m_adjacency[segment->node0].append(segment);
        m_adjacency[segment->node1].append(segment);
    }
}

QList<SegmentList> GeometryGenerator::branches()
{
    QList<SegmentList> result;
    SegmentList rest = m_segments;
    qint32 largestPass = 0;
    const auto degree = [this](qint64 node) { return m_adjacency.value(node).size(); };
    const auto otherAt = [this](qint64 node, const SegmentPtr &segment) {
        const SegmentList &atNode = m_adjacency[node];
        return atNode.at(0) == segment ? atNode.at(1) : atNode.at(0);
    };
    while (!rest.isEmpty()) {
        SegmentList chain{rest.first()};
        while (!chain.isClosed() && degree(chain.last()->node1) == 2) {
            const SegmentPtr next = otherAt(chain.last()->node1, chain.last());
            if (next == chain.first())
                break;
            if (next->node0 != chain.last()->node1)
                next->reverse();
            chain.append(next);
        }
        while (!chain.isClosed() && degree(chain.first()->node0) == 2) {
            const SegmentPtr previous = otherAt(chain.first()->node0, chain.first());
            if (previous == chain.last())
                break;
            if (previous->node1 != chain.first()->node0)
                previous->reverse();
            chain.prepend(previous);
        }
        const int m = std::min(degree(chain.first()->node0), degree(chain.last()->node1));
        const qint32 pass = m == 2 ? 1 : m == 3 ? 2 : 3;
        largestPass = std::max(largestPass, pass);
        for (const SegmentPtr &segment : chain)
            rest.removeOne(segment);
        result.append(chain);
    }
    for (const SegmentList &branch : result) {
        for (const SegmentPtr &segment : branch) {
            segment->pass = largestPass;
            segment->processed = false;
        }
    }
    return result;
}

SubdomainList GeometryGenerator::createSubdomains2()
{
    m_turnCache.clear();
    buildAdjacency();
    for (const SegmentPtr &segment : m_segments)
        segment->hide = false;

    QList<SegmentList> contours;
    const auto addContour = [&contours](const SegmentList &contour) {
        const bool known = std::any_of(contours.cbegin(), contours.cend(), [&contour](const SegmentList &other) {
            return SegmentList::sameContour(contour, other);
        });
        if (!known)
            contours.append(contour);
    };
    const auto finish = [](const SegmentList &branch) {
        for (const SegmentPtr &segment : branch)
            segment->processed = true;
    };
    for (SegmentList branch : branches()) {
        branch.sortByNode0();
        if (branch.isClosed()) {
            addContour(toCCW(branch));
            finish(branch);
            continue;
        }
        if (branch.first()->processed || branch.first()->pass == 0)
            continue;
        for (const int direction : {-1, 1}) {
            m_direction = direction;
            const SegmentList chain = getSegmentChain(branch.first());
            if (chain.isClosed())
                addContour(toCCW(chain));
        }
        finish(branch);
    }

    SubdomainList result;
    for (const SegmentList &contour : contours) {
        const QPainterPath path = contourPath(contour);
        const QSharedPointer<Subdomain> subdomain(new Subdomain(0, contour, path));
        subdomain->setLength(path.length());
        subdomain->setArea(pathArea(path));
        result.append(subdomain);
    }
    m_turnCache.clear();
    std::stable_sort(result.begin(), result.end(),
                     [](const QSharedPointer<Subdomain> &a, const QSharedPointer<Subdomain> &b) {
                         if (std::abs(a->area()) <= zeroTolerance && std::abs(b->area()) <= zeroTolerance)
                             return a->length() > b->length();
                         return a->area() > b->area();
                     });
    for (int i = 0; i < result.size(); ++i)
        result.at(i)->setId(i + 1);
    m_subdomains = result;
    return result;
}

SegmentList GeometryGenerator::getSegmentChain(SegmentPtr segment)
{
    if (segment->processed || segment->pass == 0)
        return {};
    SegmentList chain;
    const auto giveBack = [&chain] {
        for (const SegmentPtr &used : chain)
            ++used->pass;
    };
    for (;;) {
        --segment->pass;
        chain.append(segment);
        if (chain.isClosed())
            return chain;
        segment = nextSegment(segment);
        if (segment.isNull()) {
            qCritical().noquote() << "Error: next segment is null, branch is break, chain:"
                                  << chain.toString(m_nodes);
            giveBack();
            return {};
        }
        if (segment->processed || segment->pass == 0) {
            giveBack();
            return {};
        }
    }
}

SegmentPtr GeometryGenerator::nextSegment(const SegmentPtr &segment)
{
    if (m_adjacency.isEmpty())
        buildAdjacency();
    const qint64 node = segment->node1;
    SegmentList candidates = m_adjacency.value(node);
    candidates.removeAll(segment);
    const auto oriented = [node](const SegmentPtr &candidate) {
        if (candidate->node0 != node)
            candidate->reverse();
        return candidate;
    };
    if (candidates.isEmpty()) {
        qCritical().noquote() << "Error: branch is break, segment:" << segment->toString(m_nodes);
        return {};
    }
    if (candidates.size() == 1)
        return oriented(candidates.first());

    const QPair<qint64, qint64> key(segment->node0, segment->node1);
    const auto cached = m_turnCache.constFind(key);
    if (cached != m_turnCache.cend()) {
        const SegmentPtr turn = m_direction == -1 ? cached->first : cached->second;
        if (!turn.isNull())
            return oriented(turn);
    }
    const QLineF base(m_nodes.at(int(node)), m_nodes.at(int(segment->node0)));
    SegmentPtr left;
    SegmentPtr right;
    double leftAngle = -1.0;
    double rightAngle = 361.0;
    for (const SegmentPtr &candidate : candidates) {
        const QLineF line(m_nodes.at(int(node)), m_nodes.at(int(candidate->other(node))));
        const double angle = Numeric::normalizeAngle(-base.angleTo(line));
        if (angle == 0.0)
            return {};
        if (angle > leftAngle) {
            leftAngle = angle;
            left = candidate;
        }
        if (angle < rightAngle) {
            rightAngle = angle;
            right = candidate;
        }
    }
    if (std::abs(leftAngle - rightAngle) <= zeroTolerance)
        qWarning() << "leftAngle:" << leftAngle << " = rightAngle:" << rightAngle << ", d:" << leftAngle - rightAngle;
    if (left == right) {
        qCritical() << "Error: left segment == right segment";
        return {};
    }
    m_turnCache.insert(key, qMakePair(left, right));
    return oriented(m_direction == -1 ? left : right);
}

SegmentList GeometryGenerator::toCCW(const SegmentList &segments) const
{
    SegmentList clones = segments.cloned();
    const QList<PointF> points = segmentsToPoints(clones);
    if (!planar::isSimple(points)) {
        qCritical().noquote() << "Error: polygon is not simple:" << clones.toString(m_nodes);
        return clones;
    }
    if (!planar::isCounterClockwise(points)) {
        clones = clones.reversed();
        if (!clones.isSequence())
            qCritical() << "Error: segms is not sequence";
    }
    return clones;
}

QList<PointF> GeometryGenerator::segmentsToPoints(const SegmentList &segments) const
{
    if (segments.isEmpty())
        return {};
    QList<PointF> points{m_nodes.at(int(segments.first()->node0))};
    for (const SegmentPtr &segment : segments)
        points.append(m_nodes.at(int(segment->node1)));
    const QPointF difference = points.first() - points.last();
    const bool ringClosed = std::abs(difference.x()) <= zeroTolerance && std::abs(difference.y()) <= zeroTolerance;
    if (segments.isClosed() && !ringClosed)
        qCritical() << "Error: points.first() != points.last()";
    if (ringClosed) {
        if (!segments.isClosed())
            qCritical() << "Error: !segments.isClosed()";
        points.removeLast();
    }
    return points;
}

QPainterPath GeometryGenerator::contourPath(const SegmentList &segments) const
{
    const QList<PointF> points = segmentsToPoints(segments);
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    if (points.isEmpty())
        return path;
    path.moveTo(points.first());
    for (int i = 1; i < points.size(); ++i)
        path.lineTo(points.at(i));
    path.closeSubpath();
    return path.simplified();
}

double GeometryGenerator::pathArea(const QPainterPath &path)
{
    const int count = path.elementCount();
    double twice = 0.0;
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element a = path.elementAt(i);
        const QPainterPath::Element b = path.elementAt((i + 1) % count);
        twice += a.x * b.y - b.x * a.y;
    }
    return std::abs(twice) / 2.0;
}

GeometryData GeometryGenerator::geometryData(bool findHoles)
{
    GeometryData data;
    data.distanceTolerant = m_distanceTolerant;
    data.nodes = m_nodes;
    data.segments = m_segments;
    data.subdomains = m_subdomains;

    m_freeSegments = m_segments;
    for (const QSharedPointer<Subdomain> &subdomain : qAsConst(m_subdomains)) {
        for (const SegmentPtr &segment : subdomain->segments())
            m_freeSegments.removeByNodes(*segment);
    }
    QVector<int> degree(m_nodes.size(), 0);
    for (const SegmentPtr &segment : qAsConst(m_segments)) {
        ++degree[int(segment->node0)];
        ++degree[int(segment->node1)];
    }
    QList<qint64> open;
    for (const SegmentPtr &segment : qAsConst(m_freeSegments)) {
        for (const qint64 node : {segment->node0, segment->node1}) {
            if (degree.at(int(node)) < 2 && !open.contains(node))
                open.append(node);
        }
    }
    std::sort(open.begin(), open.end());
    data.freeSegments = m_freeSegments;
    for (const qint64 node : open)
        data.openPoints.append(m_nodes.at(int(node)));

    if (findHoles)
        data.subdomains = ContourFinder::find(*this, data);
    m_subdomains.clear();
    return data;
}

GeometryData GeometryGenerator::createGeometry(const Shape2DList &lines, double tolerance, bool findHoles, bool merge,
                                               bool removeOffshootSegments)
{
    createSegments(lines, tolerance, merge, removeOffshootSegments);
    createSubdomains2();
    return geometryData(findHoles);
}

GeometryData GeometryGenerator::createGeometryAsync(const Shape2DList &lines, double tolerance, bool findHoles,
                                                    bool merge, bool removeOffshootSegments)
{
    QFutureWatcher<void> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run([&] {
        createSegments(lines, tolerance, merge, removeOffshootSegments);
        createSubdomains2();
    }));
    if (!watcher.isFinished())
        loop.exec();
    watcher.waitForFinished();
    return geometryData(findHoles);
}

GeometryData GeometryGenerator::createGeometrySegments(const Shape2DList &lines, double tolerance, bool merge,
                                                       bool removeOffshootSegments)
{
    createSegments(lines, tolerance, merge, removeOffshootSegments);
    GeometryData data;
    data.distanceTolerant = m_distanceTolerant;
    data.nodes = m_nodes;
    data.segments = m_segments;
    return data;
}

Shape2DList GeometryData::lines() const
{
    Shape2DList result;
    for (const SegmentPtr &segment : segments)
        result.appendLine(nodes.at(int(segment->node0)), nodes.at(int(segment->node1)));
    return result;
}
