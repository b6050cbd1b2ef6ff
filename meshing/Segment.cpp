#include "meshing/Segment.h"

#include <algorithm>
#include <utility>

Segment::Segment(qint64 first, qint64 last)
    : node0(first)
    , node1(last)
{
}

void Segment::reverse()
{
    std::swap(node0, node1);
}

bool Segment::joins(qint64 a, qint64 b) const
{
    return (node0 == a && node1 == b) || (node0 == b && node1 == a);
}

QString Segment::toString(const QList<Node> &nodes) const
{
    const auto position = [&nodes](qint64 index) {
        if (index < 0 || index >= nodes.size())
            return QString();
        return flat::pointText(nodes.at(int(index)));
    };
    return QStringLiteral("L [%1%2 -> %3%4] %5 processed:%6")
        .arg(node0)
        .arg(position(node0))
        .arg(node1)
        .arg(position(node1))
        .arg(hide ? QStringLiteral("hide") : QString())
        .arg(processed);
}

QString Segment::toShortString() const
{
    return QStringLiteral("L [%1 -> %2] pass:%3").arg(node0).arg(node1).arg(pass);
}

bool SegmentList::isSequence() const
{
    for (int i = 1; i < size(); ++i) {
        if (at(i - 1)->node1 != at(i)->node0)
            return false;
    }
    return true;
}

bool SegmentList::isClosed() const
{
    return !isEmpty() && first()->node0 == last()->node1 && isSequence();
}

bool SegmentList::sameContour(const SegmentList &a, const SegmentList &b)
{
    if (a.size() != b.size())
        return false;
    const int n = a.size();
    bool forward = true;
    bool backward = true;
    for (int i = 0; i < n && (forward || backward); ++i) {
        const Segment &s = *a.at(i);
        const Segment &f = *b.at(i);
        const Segment &r = *b.at(n - 1 - i);
        forward = forward && s.node0 == f.node0 && s.node1 == f.node1;
        backward = backward && s.node0 == r.node1 && s.node1 == r.node0;
    }
    return forward || backward;
}

SegmentList SegmentList::reversed() const
{
    SegmentList result;
    result.reserve(size());
    for (auto it = crbegin(); it != crend(); ++it) {
        SegmentPtr clone((*it)->clone());
        clone->reverse();
        result.append(clone);
    }
    return result;
}

SegmentList SegmentList::cloned() const
{
    SegmentList result;
    result.reserve(size());
    for (const SegmentPtr &segment : *this)
        result.append(SegmentPtr(segment->clone()));
    return result;
}

void SegmentList::removeByNodes(const Segment &segment)
{
    const auto found = std::find_if(begin(), end(), [&segment](const SegmentPtr &candidate) {
        return candidate->joins(segment.node0, segment.node1);
    });
    if (found != end())
        erase(found);
}

void SegmentList::sortByNode0()
{
    std::stable_sort(begin(), end(), [](const SegmentPtr &a, const SegmentPtr &b) { return a->node0 < b->node0; });
}

QString SegmentList::toString(const QList<::Node> &nodes) const
{
    QString text = QStringLiteral("SegmentList [%1]").arg(size());
    for (const SegmentPtr &segment : *this)
        text += QLatin1Char('\n') + segment->toString(nodes);
    return text;
}
