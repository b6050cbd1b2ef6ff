#include "geometry/servoce/face.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <Geom_Curve.hxx>
#include <cmath>
#include <gp_Pln.hxx>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace {

TopoDS_Face faceOf(const TopoDS_Wire &wire)
{
    return BRepBuilderAPI_MakeFace(wire).Face();
}

TopoDS_Face wholeFace(const Handle(Geom_Curve) &curve)
{
    return faceOf(BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(curve).Edge()).Wire());
}

// The arc of the curve from a1 to a2 closed by two radii through the origin.
TopoDS_Face sector(const Handle(Geom_Curve) &curve, double a1, double a2)
{
    const TopoDS_Edge arc = BRepBuilderAPI_MakeEdge(curve, a1, a2).Edge();
    const BRepAdaptor_Curve adaptor(arc);
    gp_Pnt start;
    gp_Pnt end;
    adaptor.D0(adaptor.FirstParameter(), start);
    adaptor.D0(adaptor.LastParameter(), end);
    const gp_Pnt origin(0, 0, 0);
    BRepBuilderAPI_MakeWire wire;
    wire.Add(arc);
    wire.Add(BRepBuilderAPI_MakeEdge(end, origin).Edge());
    wire.Add(BRepBuilderAPI_MakeEdge(origin, start).Edge());
    return faceOf(wire.Wire());
}

} // namespace

face_shape circle(double r)
{
    return guarded("circle", face_shape(), [&] { return face_shape(wholeFace(detail::circle_curve(r))); });
}

face_shape circle(double r, double angle)
{
    return circle(r, 0.0, angle);
}

face_shape circle(double r, double a1, double a2)
{
    return guarded("circle", face_shape(), [&] { return face_shape(sector(detail::circle_curve(r), a1, a2)); });
}

face_shape ellipse(double r1, double r2)
{
    return guarded("ellipse", face_shape(), [&] { return face_shape(wholeFace(detail::ellipse_curve(r1, r2))); });
}

face_shape ellipse(double r1, double r2, double a1, double a2)
{
    return guarded("ellipse", face_shape(), [&] { return face_shape(sector(detail::ellipse_curve(r1, r2), a1, a2)); });
}

face_shape ngon(double r, int n)
{
    std::vector<point3> corners;
    for (int i = 0; i < n; ++i) {
        const double angle = 2.0 * M_PI * i / n;
        corners.emplace_back(r * std::cos(angle), r * std::sin(angle));
    }
    return polygon(corners);
}

face_shape polygon(const std::vector<point3> &points)
{
    return guarded("polygon", face_shape(), [&] {
        BRepBuilderAPI_MakePolygon polygon;
        for (const point3 &point : points)
            polygon.Add(detail::pnt(point));
        polygon.Close();
        return face_shape(faceOf(polygon.Wire()));
    });
}

face_shape square(double a, bool center)
{
    return rectangle(a, a, center);
}

face_shape rectangle(double a, double b, bool center)
{
    return guarded("rectangle", face_shape(), [&] {
        const double x = center ? -a / 2 : 0.0;
        const double y = center ? -b / 2 : 0.0;
        const std::vector<point3> corners{{x, y}, {x + a, y}, {x + a, y + b}, {x, y + b}};
        return face_shape(faceOf(detail::polysegment_wire(corners, true)));
    });
}

face_shape infplane(const point3 &pos, const vector3 &dir)
{
    return guarded("infplane", face_shape(), [&] {
        return face_shape(BRepBuilderAPI_MakeFace(gp_Pln(detail::pnt(pos), gp_Dir(dir.x, dir.y, dir.z))).Face());
    });
}

face_shape fill(const shape &boundary)
{
    return guarded("fill", face_shape(), [&] {
        if (boundary.is_null())
            return face_shape();
        switch (boundary.Shape().ShapeType()) {
        case TopAbs_EDGE:
            return face_shape(faceOf(BRepBuilderAPI_MakeWire(TopoDS::Edge(boundary.Shape())).Wire()));
        case TopAbs_WIRE:
            return face_shape(faceOf(TopoDS::Wire(boundary.Shape())));
        default:
            return face_shape();
        }
    });
}

} // namespace servoce
