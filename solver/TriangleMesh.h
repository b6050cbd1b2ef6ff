#pragma once

#include <Eigen/Core>
#include <array>
#include <vector>

namespace solver {

// A first-order triangle: three node numbers from 0, counter-clockwise or not, and the
// number from 0 of its region in the problem's region table.
struct Triangle
{
    std::array<int, 3> nodes;
    int region = 0;
};

// The plain mesh the solver works on: the columns of the exchange file's p and t, with
// numbers from 0. Coordinates are in metres.
struct TriangleMesh
{
    std::vector<Eigen::Vector2d> nodes;
    std::vector<Triangle> triangles;
};

// The constant gradients of the three shape functions of a triangle:
// dN_i/dx = b_i / (2 area), dN_i/dy = c_i / (2 area). The area is positive whatever the
// orientation of the nodes.
class ElementShape
{
public:
    ElementShape(const TriangleMesh &mesh, const Triangle &triangle);

    double area() const { return m_area; }
    const Eigen::Vector3d &b() const { return m_b; }
    const Eigen::Vector3d &c() const { return m_c; }
    Eigen::Vector2d centroid() const { return m_centroid; }

    // The curl of A ez for nodal values a: B = (dA/dy, -dA/dx).
    Eigen::Vector2d curl(const Eigen::Vector3d &a) const;
    // The matrix of the integral of grad N_i . grad N_j over the triangle.
    Eigen::Matrix3d stiffness() const;

private:
    double m_area = 0.0;
    Eigen::Vector3d m_b;
    Eigen::Vector3d m_c;
    Eigen::Vector2d m_centroid;
};

} // namespace solver
