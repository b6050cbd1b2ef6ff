#pragma once

#include <QList>
#include <QPair>
#include <QPointF>
#include <QString>
#include <QVector>
#include <functional>
#include <optional>
#include <vector>

#include "geometry/Piece.h"
#include "geometry/servoce/shape.h"
#include "meshing/GeometryData.h"
#include "meshing/SectionCreater.h"

// One body of the stack as the slices see it.
struct SliceBody
{
    QString name;
    // The body flag of its pieces.
    quint32 scope = 0;
    // In their place in the machine.
    PieceList pieces;
    // Degrees, relative to the least displaced body of its element.
    double displacement = 0.0;
    // Degrees of one slot or pole pitch, whose middle lies on the body's angle.
    double pitch = 360.0;
    // Symmetric about its own middle plane.
    bool middle = false;
    double bottom = 0.0;
    double top = 0.0;
    // Axial ranges of the gaps on the two faces; none at an end of the machine.
    std::optional<QPair<double, double>> gapBelow;
    std::optional<QPair<double, double>> gapAbove;
};

// A piece as the material probe reads it.
struct SolidsOfPiece
{
    QSharedPointer<AbstractMaterial> material;
    servoce::boundbox box;
    std::vector<servoce::solid_shape> solids;
};

// What the slices are cut from: plain values, read only while slices are made.
struct SliceMachine
{
    // Stator bodies first, then rotor bodies.
    QVector<SliceBody> bodies;
    // All pieces, for the material of each region.
    PieceList pieces;
    int periodicity = 1;
    // Degrees of the modelled period.
    double angleSpan = 360.0;
    // Reaches beyond every body, for the sector that cuts one period.
    double sectorRadius = 0.0;
    // Axial length of the machine.
    double height = 0.0;
    // The chord limit of the sections.
    double sizeLimit = 1.0;
    // The body flag at a point (abscissa, axial position); 0 outside every body.
    std::function<quint32(const QPointF &)> scopeAt;
};

// The closed regions of the cylindrical cuts of one period of the machine, each
// with its body and material.
class SliceGeometry
{
public:
    explicit SliceGeometry(SliceMachine machine);

    // The middles of n equal rings between the two radii, and the ring width.
    static QList<double> sliceRadii(double inner, double outer, int count);
    static QList<double> sliceWidths(double inner, double outer, int count);

    // The unrolled width of the period at the radius.
    double periodWidth(double radius) const;
    // The curves of one body over the period, with its frame up to the middle of its gaps.
    Shape2DList bodyCurves(const SliceBody &body, const CylindricalSectionCreater &creater) const;
    // The regions of the cut at the radius; the outline is not among them.
    GeometryData createSlice(double radius) const;
    // The curves of one body in the plane through the axis at its own angle, from
    // the axis to the outer radius, with the edges of the active domain.
    Shape2DList radialCurves(const SliceBody &body, const RadialSectionCreater &creater, double outerRadius,
                             double inner, double outer) const;
    // The regions of the plane through the axis, from the axis to the outer radius.
    GeometryData createRadial(double outerRadius, double inner, double outer) const;
    // Drops the outline region and gives every region its body and material; a
    // negative radius means the radial cut. A cut of one body turned back by its
    // displacement names that turn, in degrees.
    void prepareSubdomains(double radius, GeometryData &data, double turn = 0.0) const;

private:
    // The curves of all bodies, each once.
    static Shape2DList joined(const std::vector<Shape2DList> &curves);
    // A point that lies in the region and in no other, found from its shape.
    std::optional<PointF> probePoint(const Subdomain &subdomain, const GeometryData &data, double radius) const;
    // The material of the solid at the point of the cut; null in air.
    // Turn is the angle in degrees of the cut beyond the point's own.
    static QSharedPointer<AbstractMaterial> materialAt(const QVector<SolidsOfPiece> &solids, double radius,
                                                      const PointF &point, double turn, qint32 id);
    // The displacement of the body of that flag; 0 for none.
    double displacementOf(quint32 scope) const;

    SliceMachine m_machine;
};
