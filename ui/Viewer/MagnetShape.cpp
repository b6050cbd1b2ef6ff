#include "ui/Viewer/MagnetShape.h"

#include <QDebug>
#include <QtMath>

#include <BOPAlgo_Splitter.hxx>
#include <BRepAlgoAPI_Section.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <gp_Trsf.hxx>

#include "base/Numeric.h"
#include "materials/MagnetMaterial.h"

namespace {

Quantity_Color toColor(const QColor &color)
{
    return Quantity_Color(color.redF(), color.greenF(), color.blueF(), Quantity_TOC_sRGB);
}

Bnd_Box boxOf(const TopoDS_Shape &shape)
{
    Bnd_Box box;
    BRepBndLib::Add(shape, box);
    return box;
}

// In a cut of the machine the ordinate is the axial position: the sine of the
// field's angle says whether it leaves the magnet upward (+1) or downward (-1);
// 0 for a field along the circumference or a radial pattern.
int axialSense(const Magnetization &magnetization)
{
    if (magnetization.type != Magnetization::Type::Parallel)
        return 0;
    const double sine = std::sin(qDegreesToRadians(magnetization.effectiveAngle()));
    if (std::abs(sine) < 0.5)
        return 0;
    return sine > 0.0 ? 1 : -1;
}

bool liesAbove(const TopoDS_Face &face)
{
    const double tolerance = Numeric::zeroTolerance;
    for (TopExp_Explorer vertices(face, TopAbs_VERTEX); vertices.More(); vertices.Next()) {
        if (BRep_Tool::Pnt(TopoDS::Vertex(vertices.Current())).Z() < -tolerance)
            return false;
    }
    return true;
}

} // namespace

MagnetShape::MagnetShape(const TopoDS_Shape &shape, const Magnetization &magnetization, const QColor &color)
    : AIS_ColoredShape(shape)
{
    // Matte, so that a face turned to the light keeps its colour.
    SetMaterial(Graphic3d_NameOfMaterial_Plastered);
    SetColor(toColor(color));
    const int sense = axialSense(magnetization);
    const Bnd_Box box = boxOf(shape);
    if (sense == 0 || box.IsVoid())
        return;
    double xmin, ymin, zmin, xmax, ymax, zmax;
    box.Get(xmin, ymin, zmin, xmax, ymax, zmax);
    if (!createPoles(shape, gp_Pln(gp_Pnt(0.0, 0.0, 0.5 * (zmin + zmax)), gp::DZ())))
        return;
    TopoDS_Compound both;
    BRep_Builder builder;
    builder.MakeCompound(both);
    builder.Add(both, m_above);
    builder.Add(both, m_below);
    SetShape(both);
    const TopoDS_Compound &north = sense > 0 ? m_above : m_below;
    const TopoDS_Compound &south = sense > 0 ? m_below : m_above;
    CustomAspects(north)->SetColor(toColor(MagnetMaterial::northColor()));
    CustomAspects(south)->SetColor(toColor(MagnetMaterial::southColor()));
}

bool MagnetShape::createPoles(const TopoDS_Shape &shape, const gp_Pln &plane)
{
    const Bnd_Box box = boxOf(shape);
    if (box.IsVoid())
        return false;
    double xmin, ymin, zmin, xmax, ymax, zmax;
    box.Get(xmin, ymin, zmin, xmax, ymax, zmax);
    double polar = qRadiansToDegrees(std::atan2(0.5 * (ymin + ymax), 0.5 * (xmin + xmax)));
    if (polar < 0.0)
        polar += 360.0;
    if (qFuzzyCompare(polar, 360.0))
        polar = 0.0;
    const double planeZ = plane.Location().Z();

    // Turned onto +X and lowered so that the plane is z = 0: the sides are then
    // told by the sign of z alone.
    gp_Trsf turn;
    turn.SetRotation(gp::OZ(), -qDegreesToRadians(polar));
    gp_Trsf lower;
    lower.SetTranslation(gp_Vec(0.0, 0.0, -planeZ));
    const TopoDS_Shape placed = BRepBuilderAPI_Transform(shape, lower * turn, Standard_True).Shape();

    BRepAlgoAPI_Section section(placed, gp_Pln(gp::Origin(), gp::DZ()), Standard_False);
    section.ComputePCurveOn1(Standard_True);
    section.Approximation(Standard_True);
    section.Build();
    if (!section.IsDone())
        return false;

    BOPAlgo_Splitter splitter;
    splitter.AddArgument(placed);
    splitter.AddTool(section.Shape());
    splitter.SetFuzzyValue(0.0);
    splitter.Perform();
    if (splitter.HasErrors()) {
        qCritical() << "BOPAlgo_Splitter has errors";
        return false;
    }

    BRep_Builder builder;
    TopoDS_Compound above;
    TopoDS_Compound below;
    builder.MakeCompound(above);
    builder.MakeCompound(below);
    for (TopExp_Explorer faces(splitter.Shape(), TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face &face = TopoDS::Face(faces.Current());
        builder.Add(liesAbove(face) ? above : below, face);
    }

    const gp_Trsf back = (lower * turn).Inverted();
    m_above = TopoDS::Compound(BRepBuilderAPI_Transform(above, back, Standard_True).Shape());
    m_below = TopoDS::Compound(BRepBuilderAPI_Transform(below, back, Standard_True).Shape());
    return true;
}
