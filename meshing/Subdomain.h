#pragma once

#include <QList>
#include <QPainterPath>
#include <QRectF>
#include <QSharedPointer>
#include <QString>

#include "meshing/Segment.h"
#include "meshing/Shape2D.h"

class AbstractMaterial;

// A closed region of a section: its outline, its area less its holes, and
// later the body and material it belongs to. A value for worker threads; the
// viewers draw it from its path.
class Subdomain
{
public:
    Subdomain(qint32 id, const SegmentList &segments, const QPainterPath &path);

    // From 1; also the drawing order of a viewer.
    qint32 id() const { return m_id; }
    void setId(qint32 id);
    // The body flag the region belongs to; 0 until assigned.
    quint32 scope() const { return m_scope; }
    void setScope(quint32 scope);
    // Outer contour, counter-clockwise.
    const SegmentList &segments() const { return m_segments; }
    // An empty material until one is assigned.
    QSharedPointer<AbstractMaterial> material() const { return m_material; }
    void setMaterial(const QSharedPointer<AbstractMaterial> &material);
    // Without holes.
    double area() const { return m_area; }
    void setArea(double area);
    double length() const { return m_length; }
    void setLength(double length);
    const QPainterPath &path() const { return m_path; }
    // Also the bounds, the path's rectangle grown by 1 on every side.
    void setPath(const QPainterPath &path);
    QRectF bounds() const { return m_bounds; }

    bool contains(const QPointF &point) const;
    // The inner point farthest from the outline; (0, 0) for an empty path.
    PointF polylabelPoint() const;
    // The centroid of the path's points; (0, 0) for an empty path.
    PointF centroidPoint() const;
    QString toolTip() const;

private:
    qint32 m_id;
    quint32 m_scope = 0;
    SegmentList m_segments;
    QSharedPointer<AbstractMaterial> m_material;
    double m_area = 0.0;
    double m_length = 0.0;
    QRectF m_bounds;
    QPainterPath m_path;
};

using SubdomainList = QList<QSharedPointer<Subdomain>>;

// The names of the body flags, joined by " | ".
QString scopeText(quint32 scope);
