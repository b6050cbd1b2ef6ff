#pragma once

// For the layer's own .cpp files: the kernel-side helpers that several of them share.

#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Vertex.hxx>
#include <TopoDS_Wire.hxx>
#include <vector>
#include <gp_Pnt.hxx>
#include <gp_Vec.hxx>
#include <string>

#include "geometry/servoce/shape.h"

namespace servoce::detail {

inline gp_Pnt pnt(const point3 &point)
{
    return gp_Pnt(point.x, point.y, point.z);
}

inline gp_Vec vec(const vector3 &vector)
{
    return gp_Vec(vector.x, vector.y, vector.z);
}

inline point3 point(const gp_Pnt &pnt)
{
    return point3(pnt.X(), pnt.Y(), pnt.Z());
}

// The typed shape of a kernel shape; a mismatch raises the kernel's
// Standard_TypeMismatch, named after the cast.
template <class T>
T typed(const TopoDS_Shape &shape);

template <>
inline shape typed<shape>(const TopoDS_Shape &kernelShape)
{
    return shape(kernelShape);
}

template <>
inline edge_shape typed<edge_shape>(const TopoDS_Shape &shape)
{
    return edge_shape(TopoDS::Edge(shape));
}

template <>
inline wire_shape typed<wire_shape>(const TopoDS_Shape &shape)
{
    return wire_shape(TopoDS::Wire(shape));
}

template <>
inline face_shape typed<face_shape>(const TopoDS_Shape &shape)
{
    return face_shape(TopoDS::Face(shape));
}

template <>
inline solid_shape typed<solid_shape>(const TopoDS_Shape &shape)
{
    return solid_shape(TopoDS::Solid(shape));
}

Handle(Geom_Circle) circle_curve(double r);
Handle(Geom_Ellipse) ellipse_curve(double r1, double r2);
TopoDS_Wire polysegment_wire(const std::vector<point3> &points, bool closed);

// The boolean difference of the public make_difference, for builders that
// subtract inside their own operation.
TopoDS_Shape difference(const TopoDS_Shape &a, const TopoDS_Shape &b, bool simplify);

// The STEP transfers of read_step and write_step; failures raise.
TopoDS_Shape read_step_file(const std::string &path);
void write_step_file(const TopoDS_Shape &shape, const std::string &path);
// The shape written as STEP text in memory and read back: what the kernel makes of its
// own exchange form. Like the other transfers, one at a time in the process.
TopoDS_Shape through_step_text(const TopoDS_Shape &shape);

// Removes the compound that booleans leave around a single result.
TopoDS_Shape unwrap(const TopoDS_Shape &shape);

} // namespace servoce::detail
