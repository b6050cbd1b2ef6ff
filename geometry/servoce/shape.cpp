#include "geometry/servoce/shape.h"

#include <BRepBuilderAPI_Transform.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

namespace servoce {

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

shape shape::translated(double dx, double dy, double dz) const
{
    if (is_null())
        return *this;
    gp_Trsf translation;
    translation.SetTranslation(gp_Vec(dx, dy, dz));
    return shape(BRepBuilderAPI_Transform(*m_shape, translation, true).Shape());
}

const TopoDS_Shape &shape::Shape() const
{
    static const TopoDS_Shape nullShape;
    return m_shape ? *m_shape : nullShape;
}

} // namespace servoce
