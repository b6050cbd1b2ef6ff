#include "geometry/servoce/shape.h"

#include <BRepAdaptor_CompCurve.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_GTransform.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRepGProp.hxx>
#include <BRepLib_MakeWire.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <GProp_GProps.hxx>
#include <QDebug>
#include <TopExp_Explorer.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>
#include <algorithm>
#include <limits>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace {

constexpr double notMeasurable = -1.0;

template <class T>
std::vector<T> explore(const TopoDS_Shape &shape, TopAbs_ShapeEnum type)
{
    std::vector<T> result;
    for (TopExp_Explorer explorer(shape, type); explorer.More(); explorer.Next())
        result.push_back(detail::typed<T>(explorer.Current()));
    return result;
}

bool isLinear(TopAbs_ShapeEnum type)
{
    return type == TopAbs_WIRE || type == TopAbs_EDGE || type == TopAbs_VERTEX;
}

bool isSurface(TopAbs_ShapeEnum type)
{
    return type == TopAbs_SHELL || type == TopAbs_FACE;
}

bool isVoluminous(TopAbs_ShapeEnum type)
{
    return type == TopAbs_COMPOUND || type == TopAbs_COMPSOLID || type == TopAbs_SOLID || type == TopAbs_SHAPE;
}

double linearMass(const TopoDS_Shape &shape)
{
    GProp_GProps props;
    BRepGProp::LinearProperties(shape, props);
    return props.Mass();
}

double surfaceMass(const TopoDS_Shape &shape)
{
    GProp_GProps props;
    BRepGProp::SurfaceProperties(shape, props);
    return props.Mass();
}

double volumeMass(const TopoDS_Shape &shape)
{
    GProp_GProps props;
    BRepGProp::VolumeProperties(shape, props);
    return props.Mass();
}

// A compound measures as the sum of its direct children that have the measure.
template <class Fits, class Measure>
double measure(const TopoDS_Shape &shape, Fits fits, Measure mass)
{
    if (shape.IsNull())
        throw Standard_Failure("the shape is null");
    if (fits(shape.ShapeType()))
        return mass(shape);
    if (shape.ShapeType() != TopAbs_COMPOUND)
        return notMeasurable;
    double sum = 0.0;
    for (TopoDS_Iterator child(shape); child.More(); child.Next()) {
        if (fits(child.Value().ShapeType()))
            sum += mass(child.Value());
    }
    return sum;
}

template <class T>
T nearest(const TopoDS_Shape &shape, TopAbs_ShapeEnum type, const point3 &point)
{
    const TopoDS_Vertex vertex = BRepBuilderAPI_MakeVertex(detail::pnt(point)).Vertex();
    double best = std::numeric_limits<double>::infinity();
    TopoDS_Shape found;
    for (TopExp_Explorer explorer(shape, type); explorer.More(); explorer.Next()) {
        BRepExtrema_DistShapeShape distance(vertex, explorer.Current(), Extrema_ExtFlag_MINMAX, Extrema_ExtAlgo_Grad);
        if (distance.IsDone() && distance.Value() < best) {
            best = distance.Value();
            found = explorer.Current();
        }
    }
    if (found.IsNull())
        throw Standard_Failure("the shape has no part of that type");
    return detail::typed<T>(found);
}

Handle(Adaptor3d_Curve) curveOf(const edge_shape &edge)
{
    if (edge.is_null())
        throw Standard_Failure("the shape is null");
    return new BRepAdaptor_Curve(TopoDS::Edge(edge.Shape()));
}

Handle(Adaptor3d_Curve) curveOf(const wire_shape &wire)
{
    if (wire.is_null())
        throw Standard_Failure("the shape is null");
    return new BRepAdaptor_CompCurve(TopoDS::Wire(wire.Shape()), false);
}

} // namespace

template <class Self>
double curve3_algo<Self>::first_parameter() const
{
    const Self &self = static_cast<const Self &>(*this);
    return guarded("first_parameter", 0.0, [&] { return curveOf(self)->FirstParameter(); });
}

template <class Self>
double curve3_algo<Self>::last_parameter() const
{
    const Self &self = static_cast<const Self &>(*this);
    return guarded("last_parameter", 0.0, [&] { return curveOf(self)->LastParameter(); });
}

template <class Self>
point3 curve3_algo<Self>::value(double parameter) const
{
    const Self &self = static_cast<const Self &>(*this);
    return guarded("value", nowhere(), [&] { return detail::point(curveOf(self)->Value(parameter)); });
}

template <class Self>
vector3 curve3_algo<Self>::d1(double parameter) const
{
    const Self &self = static_cast<const Self &>(*this);
    const point3 none = nowhere();
    return guarded("d1", vector3(none.x, none.y, none.z), [&] {
        gp_Pnt point;
        gp_Vec tangent;
        curveOf(self)->D1(parameter, point, tangent);
        return vector3(tangent.X(), tangent.Y(), tangent.Z());
    });
}

template <class Self>
point3 curve3_algo<Self>::point_at_length(double length) const
{
    const Self &self = static_cast<const Self &>(*this);
    return guarded("point_at_length", nowhere(), [&] {
        const Handle(Adaptor3d_Curve) curve = curveOf(self);
        GCPnts_AbscissaPoint abscissa(*curve, length, curve->FirstParameter());
        if (!abscissa.IsDone())
            throw Standard_Failure("no point at that arc length");
        return detail::point(curve->Value(abscissa.Parameter()));
    });
}

template class curve3_algo<edge_shape>;
template class curve3_algo<wire_shape>;

template <class Self, class Result>
Result transformable<Self, Result>::transformed(const transformation &trsf) const
{
    const Self &self = static_cast<const Self &>(*this);
    return guarded("transformed", Result(), [&] {
        if (self.is_null())
            return Result();
        if (!trsf.is_valid())
            throw Standard_Failure("the transformation is not valid");
        return detail::typed<Result>(BRepBuilderAPI_Transform(self.Shape(), trsf.Trsf(), true).Shape());
    });
}

template <class Self, class Result>
Result transformable<Self, Result>::transformed(const general_transformation &trsf) const
{
    const Self &self = static_cast<const Self &>(*this);
    return guarded("transformed", Result(), [&] {
        if (self.is_null())
            return Result();
        if (!trsf.is_valid())
            throw Standard_Failure("the transformation is not valid");
        return detail::typed<Result>(BRepBuilderAPI_GTransform(self.Shape(), trsf.GTrsf(), true).Shape());
    });
}

template <class Self, class Result>
Result transformable<Self, Result>::translated(double dx, double dy, double dz) const
{
    return transformed(translate(dx, dy, dz));
}

template class transformable<shape, shape>;
template class transformable<edge_shape, edge_shape>;
template class transformable<wire_shape, wire_shape>;
template class transformable<face_shape, face_shape>;
template class transformable<solid_shape, solid_shape>;

shape::shape() = default;

shape::shape(const TopoDS_Shape &shape)
    : m_shape(std::make_shared<const TopoDS_Shape>(shape))
{
}

shape::shape(const shape &other) = default;
shape::shape(shape &&other) noexcept = default;
shape &shape::operator=(const shape &other) = default;
shape &shape::operator=(shape &&other) noexcept = default;
shape::~shape() = default;

bool shape::is_null() const
{
    return !m_shape || m_shape->IsNull();
}

bool shape::is_empty() const
{
    return is_null() || !has_vertices();
}

bool shape::has_vertices() const
{
    return TopExp_Explorer(Shape(), TopAbs_VERTEX).More();
}

int shape::shape_type() const
{
    return guarded("shape_type", -1, [&] {
        if (is_null())
            throw Standard_Failure("the shape is null");
        return int(Shape().ShapeType());
    });
}

std::string shape::shape_type_name() const
{
    static const char *const names[] = {"Compound", "Compsolid", "Solid", "Shell", "Face",
                                        "Wire",     "Edge",      "Vertex", "Shape"};
    const int type = shape_type();
    return type >= 0 && type <= TopAbs_SHAPE ? names[type] : "Undefined";
}

bool shape::is_equal(const shape &other) const
{
    return Shape().IsEqual(other.Shape());
}

edge_shape shape::as_edge() const
{
    return guarded("as_edge", edge_shape(), [&] { return detail::typed<edge_shape>(Shape()); });
}

wire_shape shape::as_wire_exact() const
{
    return guarded("as_wire_exact", wire_shape(), [&] { return detail::typed<wire_shape>(Shape()); });
}

face_shape shape::as_face() const
{
    return guarded("as_face", face_shape(), [&] { return detail::typed<face_shape>(Shape()); });
}

solid_shape shape::as_solid() const
{
    return guarded("as_solid", solid_shape(), [&] { return detail::typed<solid_shape>(Shape()); });
}

wire_shape shape::as_wire() const
{
    return guarded("as_wire", wire_shape(), [&] {
        const TopoDS_Shape &self = Shape();
        if (self.IsNull())
            throw Standard_Failure("the shape is null");
        if (self.ShapeType() == TopAbs_WIRE)
            return detail::typed<wire_shape>(self);
        if (self.ShapeType() == TopAbs_EDGE)
            return wire_shape(BRepBuilderAPI_MakeWire(TopoDS::Edge(self)).Wire());

        TopTools_ListOfShape edges;
        for (TopExp_Explorer explorer(self, TopAbs_EDGE); explorer.More(); explorer.Next()) {
            if (linearMass(explorer.Current()) <= 1e-5) {
                qDebug() << "Ignore very short edge";
                continue;
            }
            edges.Append(explorer.Current());
        }
        BRepLib_MakeWire maker;
        maker.Add(edges);
        if (maker.Error() != BRepLib_WireDone)
            qDebug() << "BRepLib_MakeWire error" << int(maker.Error());
        return maker.IsDone() ? wire_shape(maker.Wire()) : wire_shape();
    });
}

std::vector<edge_shape> shape::edges() const
{
    return explore<edge_shape>(Shape(), TopAbs_EDGE);
}

std::vector<wire_shape> shape::wires() const
{
    return explore<wire_shape>(Shape(), TopAbs_WIRE);
}

std::vector<face_shape> shape::faces() const
{
    return explore<face_shape>(Shape(), TopAbs_FACE);
}

std::vector<solid_shape> shape::solids() const
{
    return explore<solid_shape>(Shape(), TopAbs_SOLID);
}

std::vector<point3> shape::vertices(bool unique) const
{
    std::vector<point3> result;
    for (TopExp_Explorer explorer(Shape(), TopAbs_VERTEX); explorer.More(); explorer.Next()) {
        const gp_Pnt point = BRep_Tool::Pnt(TopoDS::Vertex(explorer.Current()));
        const auto near = [&](const point3 &listed) { return point.Distance(detail::pnt(listed)) <= 1e-7; };
        if (unique && std::any_of(result.begin(), result.end(), near))
            continue;
        result.push_back(detail::point(point));
    }
    return result;
}

double shape::length() const
{
    return guarded("length", notMeasurable, [&] { return measure(Shape(), isLinear, linearMass); });
}

double shape::area() const
{
    return guarded("area", notMeasurable, [&] { return measure(Shape(), isSurface, surfaceMass); });
}

double shape::volume() const
{
    return guarded("volume", notMeasurable, [&] {
        if (is_null())
            throw Standard_Failure("the shape is null");
        return isVoluminous(Shape().ShapeType()) ? volumeMass(Shape()) : notMeasurable;
    });
}

double shape::mass() const
{
    return guarded("mass", notMeasurable, [&] {
        if (is_null())
            throw std::runtime_error("undefined shape");
        const TopAbs_ShapeEnum type = Shape().ShapeType();
        if (isVoluminous(type))
            return volumeMass(Shape());
        if (isSurface(type))
            return surfaceMass(Shape());
        return linearMass(Shape());
    });
}

point3 shape::center() const
{
    return guarded("center", nowhere(), [&] {
        if (is_null())
            throw Standard_Failure("the shape is null");
        GProp_GProps props;
        if (Shape().ShapeType() == TopAbs_FACE)
            BRepGProp::SurfaceProperties(Shape(), props);
        else
            BRepGProp::VolumeProperties(Shape(), props);
        return detail::point(props.CentreOfMass());
    });
}

boundbox shape::bounding_box() const
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    return guarded("bounding_box", boundbox{nan, nan, nan, nan, nan, nan}, [&] {
        Bnd_Box box;
        BRepBndLib::Add(Shape(), box);
        boundbox result;
        box.Get(result.xmin, result.ymin, result.zmin, result.xmax, result.ymax, result.zmax);
        return result;
    });
}

edge_shape shape::nearest_edge(const point3 &point) const
{
    return guarded("nearest_edge", edge_shape(), [&] { return nearest<edge_shape>(Shape(), TopAbs_EDGE, point); });
}

face_shape shape::nearest_face(const point3 &point) const
{
    return guarded("nearest_face", face_shape(), [&] { return nearest<face_shape>(Shape(), TopAbs_FACE, point); });
}

shape shape::nearest_vertex(const point3 &point) const
{
    return guarded("nearest_vertex", shape(), [&] { return nearest<shape>(Shape(), TopAbs_VERTEX, point); });
}

const TopoDS_Shape &shape::Shape() const
{
    static const TopoDS_Shape nullShape;
    return m_shape ? *m_shape : nullShape;
}

edge_shape::edge_shape(const TopoDS_Edge &edge)
    : shape_typed<edge_shape>(edge)
{
}

wire_shape::wire_shape(const TopoDS_Wire &wire)
    : shape_typed<wire_shape>(wire)
{
}

face_shape::face_shape(const TopoDS_Face &face)
    : shape_typed<face_shape>(face)
{
}

solid_shape::solid_shape(const TopoDS_Solid &solid)
    : shape_typed<solid_shape>(solid)
{
}

shape make_compound(const std::vector<shape> &shapes)
{
    return guarded("make_compound", shape(), [&] {
        TopoDS_Compound compound;
        BRep_Builder builder;
        builder.MakeCompound(compound);
        for (const shape &member : shapes) {
            if (!member.is_null())
                builder.Add(compound, member.Shape());
        }
        return shape(compound);
    });
}

namespace detail {

TopoDS_Shape unwrap(const TopoDS_Shape &shape)
{
    if (shape.IsNull() || !TopExp_Explorer(shape, TopAbs_VERTEX).More() || shape.ShapeType() != TopAbs_COMPOUND)
        return shape;
    TopoDS_Shape single;
    int count = 0;
    for (TopoDS_Iterator child(shape); child.More(); child.Next()) {
        if (child.Value().ShapeType() == TopAbs_COMPOUND)
            continue;
        single = child.Value();
        ++count;
    }
    return count == 1 ? single : shape;
}

} // namespace detail

} // namespace servoce
