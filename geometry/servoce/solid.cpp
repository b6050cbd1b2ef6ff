#include "geometry/servoce/solid.h"

#include <BRepOffsetAPI_MakePipeShell.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <gp.hxx>
#include <gp_Ax2.hxx>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace {

gp_Ax2 placement(double h, bool center)
{
    return center ? gp_Ax2(gp_Pnt(0, 0, -h / 2), gp::DZ()) : gp::XOY();
}

shape tubeOf(const TopoDS_Shape &outer, const TopoDS_Shape &inner)
{
    return shape(detail::difference(outer, inner, true));
}

TopoDS_Shape extrude(const TopoDS_Shape &profile, const vector3 &v)
{
    if (profile.IsNull())
        throw Standard_Failure("the shape is null");
    TopoDS_Shape base = profile;
    if (base.ShapeType() == TopAbs_SOLID) {
        const std::vector<face_shape> faces = shape(base).faces();
        if (faces.size() != 1)
            throw std::logic_error("linear_extrude doesn't work with solids");
        base = faces.front().Shape();
    }
    return BRepPrimAPI_MakePrism(base, detail::vec(v), false, true).Shape();
}

} // namespace

solid_shape box(double x, double y, double z, bool center)
{
    return guarded("box", solid_shape(), [&] {
        const gp_Pnt corner = center ? gp_Pnt(-x / 2, -y / 2, -z / 2) : gp_Pnt(0, 0, 0);
        return solid_shape(BRepPrimAPI_MakeBox(corner, x, y, z).Solid());
    });
}

solid_shape cylinder(double r, double h, bool center)
{
    return guarded("cylinder", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeCylinder(placement(h, center), r, h).Solid());
    });
}

solid_shape cylinder(double r, double h, double angle, bool center)
{
    return guarded("cylinder", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeCylinder(placement(h, center), r, h, angle).Solid());
    });
}

solid_shape cone(double r1, double r2, double h, bool center)
{
    return guarded("cone", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeCone(placement(h, center), r1, r2, h).Solid());
    });
}

solid_shape cone(double r1, double r2, double h, double angle, bool center)
{
    return guarded("cone", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeCone(placement(h, center), r1, r2, h, angle).Solid());
    });
}

solid_shape sphere(double r)
{
    return guarded("sphere", solid_shape(), [&] { return solid_shape(BRepPrimAPI_MakeSphere(r).Solid()); });
}

solid_shape sphere(double r, double angle)
{
    return guarded("sphere", solid_shape(), [&] { return solid_shape(BRepPrimAPI_MakeSphere(r, angle).Solid()); });
}

solid_shape sphere(double r, double a1, double a2)
{
    return guarded("sphere", solid_shape(), [&] { return solid_shape(BRepPrimAPI_MakeSphere(r, a1, a2).Solid()); });
}

solid_shape sphere(double r, double a1, double a2, double angle)
{
    return guarded("sphere", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeSphere(r, a1, a2, angle).Solid());
    });
}

solid_shape torus(double r1, double r2)
{
    return guarded("torus", solid_shape(), [&] { return solid_shape(BRepPrimAPI_MakeTorus(r1, r2).Solid()); });
}

solid_shape torus(double r1, double r2, double ua)
{
    return guarded("torus", solid_shape(), [&] { return solid_shape(BRepPrimAPI_MakeTorus(r1, r2, ua).Solid()); });
}

solid_shape torus(double r1, double r2, double va1, double va2)
{
    return guarded("torus", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeTorus(r1, r2, va1, va2).Solid());
    });
}

solid_shape torus(double r1, double r2, double va1, double va2, double ua)
{
    return guarded("torus", solid_shape(), [&] {
        return solid_shape(BRepPrimAPI_MakeTorus(r1, r2, va1, va2, ua).Solid());
    });
}

shape tube(double r1, double r2, double h)
{
    return guarded("tube", shape(), [&] {
        return tubeOf(BRepPrimAPI_MakeCylinder(r1, h).Solid(), BRepPrimAPI_MakeCylinder(r2, h).Solid());
    });
}

shape tube(double r1, double r2, double h, double angle)
{
    return guarded("tube", shape(), [&] {
        return tubeOf(BRepPrimAPI_MakeCylinder(r1, h, angle).Solid(), BRepPrimAPI_MakeCylinder(r2, h, angle).Solid());
    });
}

shape linear_extrude(const shape &profile, const vector3 &v, bool center)
{
    return guarded("linear_extrude", shape(), [&] {
        if (v.x == 0.0 && v.y == 0.0 && v.z == 0.0)
            return profile;
        if (!center)
            return shape(extrude(profile.Shape(), v));
        const shape moved = profile.translated(-v.x / 2, -v.y / 2, -v.z / 2);
        return shape(extrude(moved.Shape(), v));
    });
}

shape pipe_shell(const std::vector<shape> &profiles, const wire_shape &spine, bool frenet, bool force_approx_c1,
                 int max_degree)
{
    return guarded("pipe_shell", shape(), [&] {
        if (spine.is_null())
            throw Standard_Failure("the spine is null");
        BRepOffsetAPI_MakePipeShell pipe(TopoDS::Wire(spine.Shape()));
        pipe.SetMode(frenet);
        pipe.SetForceApproxC1(force_approx_c1);
        pipe.SetMaxDegree(max_degree);
        for (const shape &profile : profiles) {
            if (profile.is_null())
                throw Standard_Failure("a profile is null");
            const bool vertex = profile.Shape().ShapeType() == TopAbs_VERTEX;
            pipe.Add(vertex ? profile.Shape() : profile.as_wire().Shape());
        }
        pipe.Build();
        return shape(pipe.Shape());
    });
}

solid_shape bounding_box_shape(const boundbox &bounds)
{
    return guarded("bounding_box_shape", solid_shape(), [&] {
        return box(bounds.xmax - bounds.xmin, bounds.ymax - bounds.ymin, bounds.zmax - bounds.zmin, false)
            .translated(bounds.xmin, bounds.ymin, bounds.zmin);
    });
}

} // namespace servoce
