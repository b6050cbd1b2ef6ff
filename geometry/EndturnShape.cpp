#include "geometry/EndturnShape.h"

#include <BRepAdaptor_CompCurve.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepOffsetAPI_MakePipe.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Circ.hxx>
#include <QDebug>

namespace Winding {

servoce::shape endturnSolid(const Endturn &endturn, double diameter)
{
    const servoce::wire_shape spine = endturn.path.as_wire();
    if (spine.is_null() || !(diameter > 0.0))
        return servoce::shape();
    try {
        const TopoDS_Wire wire = TopoDS::Wire(spine.Shape());
        // The bundle's section stands square to the path where the path leaves the slot.
        BRepAdaptor_CompCurve curve(wire);
        gp_Pnt start;
        gp_Vec tangent;
        curve.D1(curve.FirstParameter(), start, tangent);
        if (tangent.Magnitude() <= gp::Resolution())
            return servoce::shape();
        const gp_Circ section(gp_Ax2(start, gp_Dir(tangent)), diameter / 2.0);
        const TopoDS_Face profile =
            BRepBuilderAPI_MakeFace(BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(section).Edge()).Wire()).Face();
        BRepOffsetAPI_MakePipe pipe(wire, profile);
        pipe.Build();
        if (!pipe.IsDone())
            throw Standard_Failure("the sweep did not finish");
        return servoce::shape(pipe.Shape());
    } catch (const Standard_Failure &failure) {
        qCritical().noquote() << "Critical error while creating endturn shape:" << failure.GetMessageString();
        return servoce::shape();
    }
}

} // namespace Winding
