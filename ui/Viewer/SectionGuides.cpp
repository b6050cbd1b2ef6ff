#include "ui/Viewer/SectionGuides.h"

#include <AIS_Shape.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <Bnd_Box.hxx>
#include <TopoDS_Face.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Pln.hxx>

namespace SectionGuides {

namespace {

constexpr double guideTransparency = 0.5;
// How far the guides reach beyond the machine, as a share of its axial length.
constexpr double overhang = 0.15;

Handle(AIS_InteractiveObject) guideOf(const TopoDS_Shape &face, const QColor &color)
{
    Handle(AIS_Shape) shape = new AIS_Shape(face);
    shape->SetMaterial(Graphic3d_NameOfMaterial_Plastered);
    shape->SetColor(Quantity_Color(color.redF(), color.greenF(), color.blueF(), Quantity_TOC_sRGB));
    shape->SetTransparency(guideTransparency);
    return shape;
}

} // namespace

AxialExtent axialExtentOf(const PieceList &pieces)
{
    Bnd_Box box;
    for (const Piece &piece : pieces) {
        if (!piece.shape().is_null())
            BRepBndLib::Add(piece.shape().Shape(), box);
    }
    if (box.IsVoid())
        return {};
    double xmin, ymin, zmin, xmax, ymax, zmax;
    box.Get(xmin, ymin, zmin, xmax, ymax, zmax);
    const double margin = overhang * (zmax - zmin);
    return {zmin - margin, zmax + margin};
}

Handle(AIS_InteractiveObject) cylinder(double radius, const AxialExtent &extent, const QColor &color)
{
    const gp_Cylinder surface(gp_Ax3(gp_Pnt(0.0, 0.0, 0.0), gp::DZ()), radius);
    return guideOf(BRepBuilderAPI_MakeFace(surface, 0.0, 2.0 * M_PI, extent.bottom, extent.top).Face(), color);
}

Handle(AIS_InteractiveObject) radialPlane(double outerRadius, const AxialExtent &extent, const QColor &color)
{
    // The plane y = 0, whose u runs along x and v along z.
    const gp_Pln plane(gp_Ax3(gp_Pnt(0.0, 0.0, 0.0), -gp::DY(), gp::DX()));
    return guideOf(BRepBuilderAPI_MakeFace(plane, 0.0, outerRadius, extent.bottom, extent.top).Face(), color);
}

} // namespace SectionGuides
