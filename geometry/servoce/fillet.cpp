#include "geometry/servoce/fillet.h"

#include <BRepCheck_Analyzer.hxx>
#include <BRepFilletAPI_MakeChamfer.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepFilletAPI_MakeFillet2d.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <Standard_NoSuchObject.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <algorithm>
#include <stdexcept>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace {

const char *const unsupported = "Fillet argument has unsupported type.";

bool isSolidLike(const TopoDS_Shape &shape)
{
    return shape.ShapeType() < TopAbs_SHELL;
}

bool isFace(const TopoDS_Shape &shape)
{
    return shape.ShapeType() == TopAbs_FACE;
}

TopoDS_Shape unwrapped(const shape &model)
{
    if (model.is_null())
        throw Standard_Failure("the shape is null");
    return detail::unwrap(model.Shape());
}

std::vector<TopoDS_Edge> allEdges(const TopoDS_Shape &shape)
{
    std::vector<TopoDS_Edge> edges;
    for (TopExp_Explorer explorer(shape, TopAbs_EDGE); explorer.More(); explorer.Next())
        edges.push_back(TopoDS::Edge(explorer.Current()));
    return edges;
}

// Rounds that overlap can come out "done" but self-intersecting, and larger
// than the solid they were cut from.
TopoDS_Shape checked(const TopoDS_Shape &result)
{
    if (!BRepCheck_Analyzer(result).IsValid())
        throw Standard_Failure("the result is not a valid shape");
    return result;
}

TopoDS_Shape filletEdges(const TopoDS_Shape &solid, double r, const std::vector<TopoDS_Edge> &edges)
{
    BRepFilletAPI_MakeFillet fillet(solid, ChFi3d_Rational);
    for (const TopoDS_Edge &edge : edges)
        fillet.Add(r, edge);
    fillet.Build();
    return checked(fillet.Shape());
}

TopoDS_Shape filletCorners(const TopoDS_Face &face, double r, const std::vector<TopoDS_Vertex> &corners)
{
    BRepFilletAPI_MakeFillet2d fillet(face);
    for (const TopoDS_Vertex &corner : corners)
        fillet.AddFillet(corner, r);
    fillet.Build();
    return fillet.Shape();
}

std::vector<TopoDS_Vertex> allCorners(const TopoDS_Face &face)
{
    std::vector<TopoDS_Vertex> corners;
    for (TopExp_Explorer wire(face, TopAbs_WIRE); wire.More(); wire.Next()) {
        for (BRepTools_WireExplorer edge(TopoDS::Wire(wire.Current())); edge.More(); edge.Next())
            corners.push_back(edge.CurrentVertex());
    }
    return corners;
}

std::vector<TopoDS_Vertex> cornersNear(const TopoDS_Face &face, const std::vector<point3> &points)
{
    std::vector<TopoDS_Vertex> corners;
    for (const point3 &point : points)
        corners.push_back(TopoDS::Vertex(shape(face).nearest_vertex(point).Shape()));
    return corners;
}

// The nearest edge to each point, each edge once.
std::vector<TopoDS_Edge> edgesNear(const TopoDS_Shape &solid, const std::vector<point3> &points)
{
    std::vector<TopoDS_Edge> edges;
    for (const point3 &point : points) {
        const TopoDS_Edge edge = TopoDS::Edge(shape(solid).nearest_edge(point).Shape());
        if (edge.IsNull())
            throw Standard_Failure("no edge near the point");
        const auto same = [&](const TopoDS_Edge &listed) { return listed.IsEqual(edge); };
        if (std::none_of(edges.begin(), edges.end(), same))
            edges.push_back(edge);
    }
    return edges;
}

TopoDS_Shape chamferEdges(const TopoDS_Shape &solid, double r, const std::vector<TopoDS_Edge> &edges)
{
    TopTools_IndexedDataMapOfShapeListOfShape facesOfEdges;
    TopExp::MapShapesAndAncestors(solid, TopAbs_EDGE, TopAbs_FACE, facesOfEdges);
    BRepFilletAPI_MakeChamfer chamfer(solid);
    for (const TopoDS_Edge &edge : edges) {
        if (facesOfEdges.Contains(edge))
            chamfer.Add(r, edge);
    }
    return checked(chamfer.Shape());
}

void checkChamferable(const TopoDS_Shape &shape)
{
    if (isFace(shape))
        throw Standard_NoSuchObject("chamfer of a face");
    if (shape.ShapeType() != TopAbs_SOLID && shape.ShapeType() != TopAbs_COMPOUND)
        throw std::runtime_error(unsupported);
}

} // namespace

shape fillet(const shape &model, double r)
{
    return guarded("fillet", shape(), [&] {
        const TopoDS_Shape target = unwrapped(model);
        if (isSolidLike(target))
            return shape(filletEdges(target, r, allEdges(target)));
        if (isFace(target))
            return shape(filletCorners(TopoDS::Face(target), r, allCorners(TopoDS::Face(target))));
        throw std::runtime_error(unsupported);
    });
}

shape fillet(const shape &model, double r, const std::vector<point3> &points)
{
    return guarded("fillet", shape(), [&] {
        const TopoDS_Shape target = unwrapped(model);
        if (isFace(target))
            return shape(filletCorners(TopoDS::Face(target), r, cornersNear(TopoDS::Face(target), points)));
        if (!isSolidLike(target))
            throw std::runtime_error(unsupported);
        const std::vector<TopoDS_Edge> edges = edgesNear(target, points);
        double radius = r;
        for (const TopoDS_Edge &edge : edges)
            radius = std::min(radius, shape(edge).length() / 2);
        return shape(filletEdges(target, radius, edges));
    });
}

shape fillet(const shape &model, double r, const std::vector<shape> &edges)
{
    return guarded("fillet", shape(), [&] {
        const TopoDS_Shape target = unwrapped(model);
        if (isFace(target)) {
            std::vector<point3> points;
            for (const shape &part : edges) {
                const std::vector<point3> ends = part.vertices(false);
                points.insert(points.end(), ends.begin(), ends.end());
            }
            return shape(filletCorners(TopoDS::Face(target), r, cornersNear(TopoDS::Face(target), points)));
        }
        if (!isSolidLike(target))
            throw std::runtime_error(unsupported);
        std::vector<TopoDS_Edge> chosen;
        for (const shape &part : edges) {
            const std::vector<TopoDS_Edge> partEdges = allEdges(part.Shape());
            chosen.insert(chosen.end(), partEdges.begin(), partEdges.end());
        }
        return shape(filletEdges(target, r, chosen));
    });
}

shape chamfer(const shape &model, double r)
{
    return guarded("chamfer", shape(), [&] {
        const TopoDS_Shape target = unwrapped(model);
        checkChamferable(target);
        return shape(chamferEdges(target, r, allEdges(target)));
    });
}

shape chamfer(const shape &model, double r, const std::vector<point3> &points)
{
    return guarded("chamfer", shape(), [&] {
        const TopoDS_Shape target = unwrapped(model);
        checkChamferable(target);
        return shape(chamferEdges(target, r, edgesNear(target, points)));
    });
}

} // namespace servoce
