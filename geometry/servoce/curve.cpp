#include "geometry/servoce/curve.h"

#include <BRepAdaptor_CompCurve.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <GC_MakeCircle.hxx>
#include <GC_MakeEllipse.hxx>
#include <GCPnts_QuasiUniformDeflection.hxx>
#include <GeomAPI_Interpolate.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TColgp_HArray1OfPnt.hxx>
#include <gp.hxx>
#include <gp_Elips.hxx>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace detail {

Handle(Geom_Circle) circle_curve(double r)
{
    return GC_MakeCircle(gp::XOY(), r).Value();
}

Handle(Geom_Ellipse) ellipse_curve(double r1, double r2)
{
    // The kernel's own check of the radii, with its own message.
    return GC_MakeEllipse(gp_Elips(gp::XOY(), r1, r2)).Value();
}

TopoDS_Wire polysegment_wire(const std::vector<point3> &points, bool closed)
{
    if (points.size() < 2)
        throw std::logic_error("Need at least two points for polysegment");
    BRepBuilderAPI_MakeWire wire;
    for (size_t i = 0; i + 1 < points.size(); ++i)
        wire.Add(BRepBuilderAPI_MakeEdge(pnt(points[i]), pnt(points[i + 1])).Edge());
    if (closed)
        wire.Add(BRepBuilderAPI_MakeEdge(pnt(points.back()), pnt(points.front())).Edge());
    return wire.Wire();
}

} // namespace detail

edge_shape segment(const point3 &a, const point3 &b)
{
    return guarded("segment", edge_shape(), [&] {
        return edge_shape(BRepBuilderAPI_MakeEdge(detail::pnt(a), detail::pnt(b)).Edge());
    });
}

wire_shape polysegment(const std::vector<point3> &points, bool closed)
{
    return guarded("polysegment", wire_shape(), [&] { return wire_shape(detail::polysegment_wire(points, closed)); });
}

edge_shape interpolate(const std::vector<point3> &points, bool closed)
{
    return guarded("interpolate", edge_shape(), [&] {
        Handle(TColgp_HArray1OfPnt) array = new TColgp_HArray1OfPnt(1, int(points.size()));
        for (size_t i = 0; i < points.size(); ++i)
            array->SetValue(int(i) + 1, detail::pnt(points[i]));
        GeomAPI_Interpolate interpolation(array, closed, 1e-7);
        interpolation.Perform();
        return edge_shape(BRepBuilderAPI_MakeEdge(interpolation.Curve()).Edge());
    });
}

edge_shape circle_arc(const point3 &a, const point3 &b, const point3 &c)
{
    return guarded("circle_arc", edge_shape(), [&] {
        const Handle(Geom_TrimmedCurve) arc = GC_MakeArcOfCircle(detail::pnt(a), detail::pnt(b), detail::pnt(c)).Value();
        return edge_shape(BRepBuilderAPI_MakeEdge(arc).Edge());
    });
}

edge_shape circle_edge(double r)
{
    return guarded("circle_edge", edge_shape(), [&] {
        return edge_shape(BRepBuilderAPI_MakeEdge(detail::circle_curve(r)).Edge());
    });
}

edge_shape circle_edge(double r, double angle)
{
    return circle_edge(r, 0.0, angle);
}

edge_shape circle_edge(double r, double a1, double a2)
{
    return guarded("circle_edge", edge_shape(), [&] {
        return edge_shape(BRepBuilderAPI_MakeEdge(detail::circle_curve(r), a1, a2).Edge());
    });
}

edge_shape ellipse_edge(double r1, double r2)
{
    return guarded("ellipse_edge", edge_shape(), [&] {
        return edge_shape(BRepBuilderAPI_MakeEdge(detail::ellipse_curve(r1, r2)).Edge());
    });
}

edge_shape ellipse_edge(double r1, double r2, double a1, double a2)
{
    return guarded("ellipse_edge", edge_shape(), [&] {
        return edge_shape(BRepBuilderAPI_MakeEdge(detail::ellipse_curve(r1, r2), a1, a2).Edge());
    });
}

wire_shape make_wire(const std::vector<shape> &parts)
{
    return guarded("make_wire", wire_shape(), [&] {
        BRepBuilderAPI_MakeWire wire;
        for (const shape &part : parts) {
            if (part.is_null())
                throw Standard_Failure("a part of the wire is null");
            if (part.Shape().ShapeType() == TopAbs_WIRE)
                wire.Add(TopoDS::Wire(part.Shape()));
            else
                wire.Add(TopoDS::Edge(part.Shape()));
        }
        return wire_shape(wire.Wire());
    });
}

namespace {

template <class Adaptor>
std::vector<point3> sampled(const Adaptor &curve, double deflection)
{
    GCPnts_QuasiUniformDeflection sampler(curve, deflection, GeomAbs_C1);
    if (!sampler.IsDone())
        throw Standard_Failure("the curve can't be sampled");
    std::vector<point3> points;
    for (int index = 1; index <= sampler.NbPoints(); ++index) {
        const gp_Pnt point = sampler.Value(index);
        points.emplace_back(point.X(), point.Y(), point.Z());
    }
    return points;
}

} // namespace

std::vector<point3> deflection_points(const shape &curve, double deflection)
{
    return guarded("deflection_points", std::vector<point3>(), [&] {
        if (curve.is_null())
            return std::vector<point3>();
        if (curve.Shape().ShapeType() == TopAbs_EDGE)
            return sampled(BRepAdaptor_Curve(TopoDS::Edge(curve.Shape())), deflection);
        if (curve.Shape().ShapeType() == TopAbs_WIRE)
            return sampled(BRepAdaptor_CompCurve(TopoDS::Wire(curve.Shape())), deflection);
        return std::vector<point3>();
    });
}

} // namespace servoce
