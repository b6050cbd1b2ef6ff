#include "ui/GraphicsMeshItem.h"

#include <QPainter>
#include <QSet>
#include <QStyleOptionGraphicsItem>

GraphicsMeshItem::GraphicsMeshItem(CDT::Snapshot mesh, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , m_mesh(std::move(mesh))
{
    // Each edge once, though two faces share it.
    QSet<QPair<int, int>> drawn;
    const auto addEdge = [&](int a, int b) {
        const QPair<int, int> key(qMin(a, b), qMax(a, b));
        if (drawn.contains(key))
            return;
        drawn.insert(key);
        m_edges.moveTo(m_mesh.vertices.at(a).point);
        m_edges.lineTo(m_mesh.vertices.at(b).point);
    };
    for (const CDT::Face &face : m_mesh.faces) {
        if (!face.inDomain)
            continue;
        for (int i = 0; i < 3; ++i)
            addEdge(face.vertices[i], face.vertices[(i + 1) % 3]);
    }
    m_edgeCount = drawn.size();
    for (const CDT::Edge &edge : m_mesh.constraints) {
        m_constraints.moveTo(m_mesh.vertices.at(edge.vertex0).point);
        m_constraints.lineTo(m_mesh.vertices.at(edge.vertex1).point);
    }
    // A united null rectangle would be dropped: the bounds come from the extremes.
    if (!m_mesh.vertices.isEmpty()) {
        QPointF low = m_mesh.vertices.first().point;
        QPointF high = low;
        for (const CDT::Vertex &vertex : m_mesh.vertices) {
            low = QPointF(qMin(low.x(), vertex.point.x()), qMin(low.y(), vertex.point.y()));
            high = QPointF(qMax(high.x(), vertex.point.x()), qMax(high.y(), vertex.point.y()));
        }
        m_bounds = QRectF(low, high);
    }
}

void GraphicsMeshItem::setSwitches(const Switches &switches)
{
    m_switches = switches;
    update();
}

void GraphicsMeshItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    if (m_switches.edges) {
        painter->setPen(QPen(QColor(60, 60, 60), 0.0));
        painter->drawPath(m_edges);
    }
    if (m_switches.constraints) {
        painter->setPen(QPen(QColor(180, 0, 0), 0.0));
        painter->drawPath(m_constraints);
    }
    if (!m_switches.nodes)
        return;
    // Vertices keep their size in pixels whatever the zoom.
    const double scale = option->levelOfDetailFromTransform(painter->worldTransform());
    const double radius = 2.0 / qMax(scale, 1e-12);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(0, 0, 160));
    for (const CDT::Vertex &vertex : m_mesh.vertices) {
        if (option->exposedRect.isEmpty() || option->exposedRect.contains(vertex.point))
            painter->drawEllipse(vertex.point, radius, radius);
    }
}
