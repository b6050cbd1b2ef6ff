#pragma once

#include <memory>
#include <string>
#include <vector>

#include "geometry/servoce/geombase.h"
#include "geometry/servoce/trans.h"

class TopoDS_Shape;
class TopoDS_Edge;
class TopoDS_Wire;
class TopoDS_Face;
class TopoDS_Solid;

namespace servoce {

class edge_shape;
class wire_shape;
class face_shape;
class solid_shape;

// Extents of a shape, its tolerance included.
struct boundbox
{
    double xmin = 0.0;
    double ymin = 0.0;
    double zmin = 0.0;
    double xmax = 0.0;
    double ymax = 0.0;
    double zmax = 0.0;
};

// The transforming calls of a shape. Each gives a new shape and leaves this
// one as it is; a null shape stays null.
template <class Self, class Result>
class transformable
{
public:
    Result transformed(const transformation &trsf) const;
    Result transformed(const general_transformation &trsf) const;
    Result translated(double dx, double dy, double dz) const;

protected:
    ~transformable() = default;
};

// A solid or any other topological shape, as a value. Copies share the kernel's
// shape, which is never changed in place: a transformation gives a new shape.
// The kernel's types stay behind this boundary.
class shape : public transformable<shape, shape>
{
public:
    shape();
    explicit shape(const TopoDS_Shape &shape);
    shape(const shape &other);
    shape(shape &&other) noexcept;
    shape &operator=(const shape &other);
    shape &operator=(shape &&other) noexcept;
    virtual ~shape();

    bool is_null() const;
    // Null, or holding no vertex at all, as what is left of a box less itself.
    bool is_empty() const;
    bool has_vertices() const;
    // The kernel's shape type, compound 0 to shape 8; -1 for a null shape.
    int shape_type() const;
    std::string shape_type_name() const;
    // The same kernel shape in the same place and orientation.
    bool is_equal(const shape &other) const;

    // A cast to a type the shape does not have gives a null shape.
    edge_shape as_edge() const;
    wire_shape as_wire_exact() const;
    face_shape as_face() const;
    solid_shape as_solid() const;
    // The edges of any shape joined into one wire.
    wire_shape as_wire() const;

    // In the kernel's explorer order.
    std::vector<edge_shape> edges() const;
    std::vector<wire_shape> wires() const;
    std::vector<face_shape> faces() const;
    std::vector<solid_shape> solids() const;
    // With unique, a vertex within 1e-7 of one already listed is left out.
    std::vector<point3> vertices(bool unique) const;

    // Measures give -1 where the shape has no such measure.
    double length() const;
    double area() const;
    double volume() const;
    // The measure that fits the shape type.
    double mass() const;
    point3 center() const;
    boundbox bounding_box() const;

    // The first of the nearest ones in explorer order.
    edge_shape nearest_edge(const point3 &point) const;
    face_shape nearest_face(const point3 &point) const;
    shape nearest_vertex(const point3 &point) const;

    const TopoDS_Shape &Shape() const;

private:
    std::shared_ptr<const TopoDS_Shape> m_shape;
};

template <class T>
class shape_typed : public shape, public transformable<T, T>
{
public:
    using transformable<T, T>::transformed;
    using transformable<T, T>::translated;

protected:
    using shape::shape;
};

// Evaluation of a curve, an edge alone or a wire as one composite curve.
template <class Self>
class curve3_algo
{
public:
    double first_parameter() const;
    double last_parameter() const;
    point3 value(double parameter) const;
    vector3 d1(double parameter) const;
    // The point at this arc length from the start; nowhere() if there is none.
    point3 point_at_length(double length) const;

protected:
    ~curve3_algo() = default;
};

class edge_shape : public shape_typed<edge_shape>, public curve3_algo<edge_shape>
{
public:
    edge_shape() = default;
    explicit edge_shape(const TopoDS_Edge &edge);
};

class wire_shape : public shape_typed<wire_shape>, public curve3_algo<wire_shape>
{
public:
    wire_shape() = default;
    explicit wire_shape(const TopoDS_Wire &wire);
};

class face_shape : public shape_typed<face_shape>
{
public:
    face_shape() = default;
    explicit face_shape(const TopoDS_Face &face);
};

class solid_shape : public shape_typed<solid_shape>
{
public:
    solid_shape() = default;
    explicit solid_shape(const TopoDS_Solid &solid);
};

// One compound holding the shapes; null ones are left out.
shape make_compound(const std::vector<shape> &shapes);

} // namespace servoce
