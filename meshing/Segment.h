#pragma once

#include <QList>
#include <QSharedPointer>
#include <QString>

#include "meshing/Shape2D.h"

// A node of the planar graph of a section. Nodes are referred to by their
// index in the generator's list; removing one only marks it.
class Node : public PointF
{
public:
    using PointF::PointF;
    Node() = default;
    Node(const PointF &point)
        : PointF(point)
    {
    }

    bool removed = false;
};

// An edge of the planar graph. Shared by the lists that hold it, so that a
// reversal is seen by all of them.
class Segment
{
public:
    virtual void reverse();
    virtual Segment *clone() const = 0;
    virtual ~Segment() = default;

    bool joins(qint64 a, qint64 b) const;
    bool touches(qint64 node) const { return node0 == node || node1 == node; }
    // The far end seen from node.
    qint64 other(qint64 node) const { return node == node0 ? node1 : node0; }
    QString toString(const QList<Node> &nodes) const;
    QString toShortString() const;

    qint64 node0 = -1;
    qint64 node1 = -1;
    // Read by the log text only.
    bool hide = false;
    // How many more contour walks may use this segment.
    qint32 pass = 0;
    // The segment's branch has been walked.
    bool processed = false;

protected:
    Segment() = default;
    Segment(qint64 first, qint64 last);
    Segment(const Segment &) = default;
    Segment &operator=(const Segment &) = default;
};

class LineSegment : public Segment
{
public:
    LineSegment() = default;
    LineSegment(qint64 first, qint64 last)
        : Segment(first, last)
    {
    }

    Segment *clone() const override { return new LineSegment(*this); }
};

using SegmentPtr = QSharedPointer<Segment>;

class SegmentList : public QList<SegmentPtr>
{
public:
    using QList<SegmentPtr>::QList;

    // Fewer than two segments, or each ends where the next begins.
    bool isSequence() const;
    bool isClosed() const;
    // The same loop, read either way round.
    static bool sameContour(const SegmentList &a, const SegmentList &b);
    // Reversed clones in reverse order.
    SegmentList reversed() const;
    // Clones in the same order.
    SegmentList cloned() const;
    // Removes the first segment that joins the same two nodes either way.
    void removeByNodes(const Segment &segment);
    void sortByNode0();
    QString toString(const QList<::Node> &nodes) const;
};
