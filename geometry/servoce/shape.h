#pragma once

#include <memory>

class TopoDS_Shape;

namespace servoce {

// A solid or any other topological shape, as a value. Copies share the kernel's
// shape, which is never changed in place: a transformation gives a new shape.
// The kernel's types stay behind this boundary.
class shape
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

    // A null shape stays null.
    shape translated(double dx, double dy, double dz) const;

    const TopoDS_Shape &Shape() const;

private:
    std::shared_ptr<const TopoDS_Shape> m_shape;
};

} // namespace servoce
