#include "geometry/EndturnShape.h"

#include <BRepAdaptor_CompCurve.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepGProp.hxx>
#include <BRepOffsetAPI_MakePipeShell.hxx>
#include <GProp_GProps.hxx>
#include <ShapeFix_Shape.hxx>
#include <ShapeFix_Shell.hxx>
#include <ShapeFix_Solid.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Wire.hxx>
#include <gp.hxx>
#include <gp_Circ.hxx>
#include <gp_Trsf.hxx>
#include <QDebug>
#include <algorithm>
#include <cmath>
#include <utility>

#include "base/Tbb.h"
#include "geometry/servoce/trans.h"

namespace Winding {

namespace {

// Where the path begins, and its direction there.
std::pair<gp_Pnt, gp_Vec> startOf(const TopoDS_Wire &spine)
{
    BRepAdaptor_CompCurve curve(spine);
    gp_Pnt start;
    gp_Vec tangent;
    curve.D1(curve.FirstParameter(), start, tangent);
    if (tangent.Magnitude() <= gp::Resolution())
        throw Standard_Failure("the path has no direction where it begins");
    return {start, tangent};
}

// The bundle's section, square to the path where the path leaves the slot.
TopoDS_Wire sectionAtStart(const TopoDS_Wire &spine, double diameter)
{
    const auto [start, tangent] = startOf(spine);
    const gp_Circ section(gp_Ax2(start, gp_Dir(tangent)), diameter / 2.0);
    return BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(section).Edge()).Wire();
}

// The coil's cross-section where the path leaves its slot, turned about its middle from the
// radius, across which it lies, to square with the path: paths may leave a slot at a slant.
TopoDS_Wire profileAtStart(const TopoDS_Wire &spine, const Endturn &endturn)
{
    const std::pair<gp_Pnt, gp_Vec> begin = startOf(spine);
    const gp_Pnt &start = begin.first;
    const gp_Vec &tangent = begin.second;
    const auto distance = [&start](const CoilSide &side) {
        return start.Distance(gp_Pnt(side.center.x, side.center.y, side.center.z));
    };
    const CoilSide &side = distance(endturn.end) < distance(endturn.begin) ? endturn.end : endturn.begin;
    TopExp_Explorer wires(side.profile.Shape(), TopAbs_WIRE);
    if (!wires.More())
        throw Standard_Failure("the coil's profile has no outline");
    gp_Vec across(std::cos(side.angle), std::sin(side.angle), 0.0);
    if (across.Dot(tangent) < 0.0)
        across.Reverse();
    const gp_Vec axis = across.Crossed(tangent);
    gp_Trsf turn;
    if (axis.Magnitude() > 1e-9 * tangent.Magnitude()) {
        const servoce::point3 c = side.profile.center();
        turn.SetRotation(gp_Ax1(gp_Pnt(c.x, c.y, c.z), gp_Dir(axis)), across.Angle(tangent));
    }
    return TopoDS::Wire(BRepBuilderAPI_Transform(wires.Current(), turn, true).Shape());
}

// The swept tube, closed at both ends. It follows the corrected Frenet frame: the plain one has
// no normal along the straight pieces and flips at inflections, which twists the faces and
// leaves a wrong volume.
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
    // The fix may leave a section swept along a twisting path facing inwards.
    GProp_GProps properties;
    BRepGProp::VolumeProperties(solid, properties);
    return TopoDS::Solid(properties.Mass() < 0.0 ? solid.Reversed() : solid);
}

} // namespace

servoce::shape endturnSolid(const Endturn &endturn, double diameter)
{
    const servoce::wire_shape path = endturn.path.as_wire();
    const bool profiled = !endturn.begin.profile.is_null() && !endturn.end.profile.is_null();
    if (path.is_null() || !(profiled || diameter > 0.0))
        return servoce::shape();
    try {
        const TopoDS_Wire spine = TopoDS::Wire(path.Shape());
        const TopoDS_Wire section = profiled ? profileAtStart(spine, endturn) : sectionAtStart(spine, diameter);
        return servoce::shape(healedSolid(sweptTube(spine, section)));
    } catch (const Standard_Failure &failure) {
        qCritical().noquote() << "Critical error while creating endturn shape:" << failure.GetMessageString();
        return servoce::shape();
    }
}

namespace {

// Points along a path at fixed fractions of its parameter range: a turned copy of a path
// has its points turned at the same fractions.
std::vector<gp_Pnt> samplesOf(const servoce::shape &path)
{
    std::vector<gp_Pnt> points;
    const servoce::wire_shape wire = path.as_wire();
    if (wire.is_null())
        return points;
    BRepAdaptor_CompCurve curve(TopoDS::Wire(wire.Shape()));
    const int count = 8;
    for (int k = 0; k <= count; ++k)
        points.push_back(curve.Value(curve.FirstParameter() + (curve.LastParameter() - curve.FirstParameter()) * k / count));
    return points;
}

bool sameEnds(const Endturn &a, const Endturn &b)
{
    return a.kind == b.kind && a.dir == b.dir && a.begin.layer == b.begin.layer && a.end.layer == b.end.layer
           && a.begin.profile.is_null() == b.begin.profile.is_null();
}

} // namespace

std::vector<servoce::shape> endturnSolids(const std::vector<const Endturn *> &endturns, double diameter)
{
    struct Copy
    {
        std::size_t model = 0;
        double angle = 0.0;
    };
    std::vector<std::vector<gp_Pnt>> samples(endturns.size());
    tbb::parallel_for(std::size_t(0), endturns.size(), [&](std::size_t k) { samples[k] = samplesOf(endturns[k]->path); });
    // Each end turn that is no turned copy of an earlier one is swept; coil sides of one layer
    // have one profile, turned, so their sections are turned copies as well.
    std::vector<std::size_t> models;
    std::vector<Copy> copies(endturns.size());
    for (std::size_t k = 0; k < endturns.size(); ++k) {
        copies[k] = {k, 0.0};
        for (const std::size_t model : models) {
            if (!sameEnds(*endturns[k], *endturns[model]) || samples[k].size() != samples[model].size()
                || samples[k].empty())
                continue;
            gp_Trsf turn;
            const double angle = endturns[k]->begin.angle - endturns[model]->begin.angle;
            turn.SetRotation(gp::OZ(), angle);
            const bool turned = std::equal(samples[k].begin(), samples[k].end(), samples[model].begin(),
                                           [&turn](const gp_Pnt &p, const gp_Pnt &q) {
                                               return p.Distance(q.Transformed(turn)) < 1e-6;
                                           });
            if (turned) {
                copies[k] = {model, angle};
                break;
            }
        }
        if (copies[k].model == k)
            models.push_back(k);
    }
    std::vector<servoce::shape> solids(endturns.size());
    tbb::parallel_for(std::size_t(0), models.size(),
                      [&](std::size_t m) { solids[models[m]] = endturnSolid(*endturns[models[m]], diameter); });
    for (std::size_t k = 0; k < endturns.size(); ++k) {
        if (copies[k].model != k && !solids[copies[k].model].is_null())
            solids[k] = solids[copies[k].model].transformed(servoce::rotateZ(copies[k].angle));
    }
    return solids;
}

} // namespace Winding
