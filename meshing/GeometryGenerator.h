#pragma once

#include <QHash>
#include <QList>
#include <QPainterPath>
#include <QPair>
#include <QVector>

#include "meshing/GeometryData.h"
#include "meshing/Segment.h"
#include "meshing/Shape2D.h"
#include "meshing/Subdomain.h"

// Turns the heap of lines of a section into a planar graph (merged nodes,
// lines split where they cross, offshoots removed) and walks out its closed
// regions. A value for one job on one thread.
class GeometryGenerator
{
public:
    // Joins the two points, merging them with nodes within the tolerance and
    // splitting this and other lines where they cross or touch. False when no
    // new segment joins exactly these two points; with noSplit the line neither
    // looks for nodes on it nor splits others.
    bool appendLine(const Node &node0, const Node &node1, bool noSplit = false);
    // The segment that continues a contour walk at the far end of segment,
    // turned to start there; null at a dead end or an overlap.
    SegmentPtr nextSegment(const SegmentPtr &segment);
    // A tolerance of 1e-7 or less is taken from the size of the section.
    void createSegments(const Shape2DList &lines, const double &tolerance, bool merge, bool removeOffshoots);
    // The closed regions, largest first, numbered from 1.
    SubdomainList createSubdomains2();
    // A closed walk from segment, or nothing.
    SegmentList getSegmentChain(SegmentPtr segment);
    // Clones of a closed contour, counter-clockwise when it is simple.
    SegmentList toCCW(const SegmentList &segments) const;
    // The corners of a contour, a closed one without its repeated first point.
    QList<PointF> segmentsToPoints(const SegmentList &segments) const;
    // The even-odd path through the corners of a contour.
    QPainterPath contourPath(const SegmentList &segments) const;

    GeometryData createGeometry(const Shape2DList &lines, double tolerance, bool findHoles, bool merge,
                                bool removeOffshoots);
    // The same on the global thread pool, while this thread keeps its events going.
    GeometryData createGeometryAsync(const Shape2DList &lines, double tolerance, bool findHoles, bool merge,
                                     bool removeOffshoots);
    // The graph alone, without regions.
    GeometryData createGeometrySegments(const Shape2DList &lines, double tolerance, bool merge, bool removeOffshoots);
    // The result of the last run; hands the regions over.
    GeometryData geometryData(bool findHoles);

    double distanceTolerant() const { return m_distanceTolerant; }
    const QList<Node> &nodes() const { return m_nodes; }
    const SegmentList &segments() const { return m_segments; }

    // The area enclosed by a path's points, taken in turn.
    static double pathArea(const QPainterPath &path);

private:
    bool nodeEquals(const PointF &node, const PointF &point) const;
    bool pointOnSegment(const PointF &point, const Segment &segment) const;
    qint64 findNode(const PointF &point) const;
    qint64 nodeIndex(const PointF &point);
    bool hasSegment(qint64 a, qint64 b) const;
    SegmentList segmentsAt(qint64 node) const;
    QLineF lineOf(const Segment &segment) const;
    void setTolerance(double tolerance);
    void removeOffshoots();
    void mergeCollinear();
    QList<SegmentList> branches();
    void buildAdjacency();

    double m_distanceTolerant = 0.0;
    QList<Node> m_nodes;
    SegmentList m_segments;
    SegmentList m_freeSegments;
    SubdomainList m_subdomains;
    // -1 takes the leftmost turn at a junction, +1 the rightmost.
    int m_direction = -1;
    QHash<QPair<qint64, qint64>, QPair<SegmentPtr, SegmentPtr>> m_turnCache;
    // Segments at each node while contours are walked.
    QHash<qint64, SegmentList> m_adjacency;
    // Guards the recursion of appendLine against a runaway split.
    int m_depth = 0;
};
