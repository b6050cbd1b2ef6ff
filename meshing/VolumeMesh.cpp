#include "meshing/VolumeMesh.h"

double VolumeMesh::signedVolume(const Tetrahedron &tetrahedron) const
{
    const servoce::point3 &a = points[tetrahedron.vertices[0]];
    const servoce::point3 &b = points[tetrahedron.vertices[1]];
    const servoce::point3 &c = points[tetrahedron.vertices[2]];
    const servoce::point3 &d = points[tetrahedron.vertices[3]];
    const double ux = b.x - a.x, uy = b.y - a.y, uz = b.z - a.z;
    const double vx = c.x - a.x, vy = c.y - a.y, vz = c.z - a.z;
    const double wx = d.x - a.x, wy = d.y - a.y, wz = d.z - a.z;
    return (ux * (vy * wz - vz * wy) - uy * (vx * wz - vz * wx) + uz * (vx * wy - vy * wx)) / 6.0;
}

double VolumeMesh::volume() const
{
    double total = 0.0;
    for (const Tetrahedron &tetrahedron : tetrahedra)
        total += signedVolume(tetrahedron);
    return total;
}
