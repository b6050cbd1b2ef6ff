#include "geometry/EndturnShape.h"

#include <BRepAdaptor_CompCurve.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepOffsetAPI_MakePipeShell.hxx>
#include <ShapeFix_Shape.hxx>
#include <ShapeFix_Shell.hxx>
#include <ShapeFix_Solid.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Circ.hxx>
#include <QDebug>

namespace Winding {

namespace {

// The bundle's section, square to the path where the path leaves the slot.
TopoDS_Wire sectionAtStart(const TopoDS_Wire &spine, double diameter)
{
    BRepAdaptor_CompCurve curve(spine);
    gp_Pnt start;
    gp_Vec tangent;
    curve.D1(curve.FirstParameter(), start, tangent);
    if (tangent.Magnitude() <= gp::Resolution())
        throw Standard_Failure("the path has no direction where it begins");
    const gp_Circ section(gp_Ax2(start, gp_Dir(tangent)), diameter / 2.0);
    return BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(section).Edge()).Wire();
}

// The swept tube, closed at both ends. A round section needs no particular turn about the path,
// so it follows the corrected Frenet frame: the plain one has no normal along the straight pieces
// and flips at inflections, which twists the faces and leaves a wrong volume.
TopoDS_Shape sweptTube(const TopoDS_Wire &spine, const TopoDS_Wire &section)
{
    BRepOffsetAPI_MakePipeShell pipe(spine);
    pipe.SetMode(false);
    pipe.SetForceApproxC1(true);
    pipe.SetMaxDegree(90);
    pipe.Add(section);
    pipe.Build();
    if (!pipe.IsDone() || !pipe.MakeSolid())
        throw Standard_Failure("the sweep did not finish");
    return pipe.Shape();
}

// The tube's faces, healed, as one outward-facing solid.
TopoDS_Solid healedSolid(const TopoDS_Shape &tube)
{
    ShapeFix_Shape fixShape(tube);
    fixShape.SetPrecision(1.0);
    fixShape.Perform();
    TopExp_Explorer shells(fixShape.Shape(), TopAbs_SHELL);
    if (!shells.More())
        throw Standard_Failure("the sweep gave no shell");
    ShapeFix_Shell fixShell(TopoDS::Shell(shells.Current()));
    fixShell.FixFaceOrientation(fixShell.Shell());
    ShapeFix_Solid fixSolid;
    const TopoDS_Shape solid = fixSolid.SolidFromShell(fixShell.Shell());
    if (solid.IsNull() || solid.ShapeType() != TopAbs_SOLID)
        throw Standard_Failure("the sweep does not close to a solid");
    return TopoDS::Solid(solid);
}

} // namespace

servoce::shape endturnSolid(const Endturn &endturn, double diameter)
{
    const servoce::wire_shape path = endturn.path.as_wire();
    if (path.is_null() || !(diameter > 0.0))
        return servoce::shape();
    try {
        const TopoDS_Wire spine = TopoDS::Wire(path.Shape());
        return servoce::shape(healedSolid(sweptTube(spine, sectionAtStart(spine, diameter))));
    } catch (const Standard_Failure &failure) {
        qCritical().noquote() << "Critical error while creating endturn shape:" << failure.GetMessageString();
        return servoce::shape();
    }
}

} // namespace Winding
