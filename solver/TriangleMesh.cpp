#include "solver/TriangleMesh.h"

#include <cmath>

namespace solver {

ElementShape::ElementShape(const TriangleMesh &mesh, const Triangle &triangle)
{
    const Eigen::Vector2d &p0 = mesh.nodes[triangle.nodes[0]];
    const Eigen::Vector2d &p1 = mesh.nodes[triangle.nodes[1]];
    const Eigen::Vector2d &p2 = mesh.nodes[triangle.nodes[2]];
    m_b = {p1.y() - p2.y(), p2.y() - p0.y(), p0.y() - p1.y()};
    m_c = {p2.x() - p1.x(), p0.x() - p2.x(), p1.x() - p0.x()};
    const double twiceSignedArea = m_c(2) * m_b(1) - m_c(1) * m_b(2);
    // Clockwise nodes flip the sign of b and c with the area: dividing by the signed
    // area keeps the gradients right, so the signs are folded into b and c.
    if (twiceSignedArea < 0.0) {
        m_b = -m_b;
        m_c = -m_c;
    }
    m_area = std::abs(twiceSignedArea) / 2.0;
    m_centroid = (p0 + p1 + p2) / 3.0;
}

Eigen::Vector2d ElementShape::curl(const Eigen::Vector3d &a) const
{
    const double twiceArea = 2.0 * m_area;
    return {m_c.dot(a) / twiceArea, -m_b.dot(a) / twiceArea};
}

Eigen::Matrix3d ElementShape::stiffness() const
{
    return (m_b * m_b.transpose() + m_c * m_c.transpose()) / (4.0 * m_area);
}

} // namespace solver
