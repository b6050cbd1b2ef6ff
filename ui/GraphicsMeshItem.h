#pragma once

#include <QGraphicsItem>

#include "meshing/CDT.h"

// The triangles of one mesh: the edges of the faces inside the domain, the constrained
// edges, and the vertices in a size of pixels that doesn't follow the zoom.
class GraphicsMeshItem : public QGraphicsItem
{
public:
    struct Switches
    {
        bool edges = true;
        bool constraints = true;
        bool nodes = false;
    };

    explicit GraphicsMeshItem(CDT::Snapshot mesh, QGraphicsItem *parent = nullptr);

    void setSwitches(const Switches &switches);
    const Switches &switches() const { return m_switches; }
    // Edges of the faces inside the domain, each counted once.
    int edgeCount() const { return m_edgeCount; }

    QRectF boundingRect() const override { return m_bounds; }
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    CDT::Snapshot m_mesh;
    QPainterPath m_edges;
    QPainterPath m_constraints;
    QRectF m_bounds;
    Switches m_switches;
    int m_edgeCount = 0;
};
