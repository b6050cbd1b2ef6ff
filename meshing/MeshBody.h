#pragma once

#include <QList>
#include <QString>
#include <QVector>
#include <optional>

#include "geometry/Piece.h"
#include "meshing/GapLattice.h"
#include "meshing/Shape2D.h"

// One body of the stack as its cell is meshed.
struct MeshBody
{
    QString name;
    // In their place in the machine.
    PieceList pieces;
    // Degrees, relative to the least displaced body of its element.
    double displacement = 0.0;
    // The displacement of the body that is this one's mirror image in the
    // machine's central plane; none when it has no image.
    std::optional<double> partnerDisplacement;
    double bottom = 0.0;
    double top = 0.0;
    // Degrees of one slot or pole pitch; the body is symmetric about its half.
    double pitch = 360.0;
    // Symmetric about the ordinate middle too, so that a quarter is meshed.
    bool mirrored = false;
    double middle = 0.0;
    std::optional<GapRows> gapBelow;
    std::optional<GapRows> gapAbove;
    // For each slice, vertices inside the conductors of the half-pitch cell; none for a rotor body.
    QVector<QList<PointF>> windingPoints;
};

// What every cell of the slices and of the radial model shares.
struct MeshSettings
{
    // Axial length of the machine.
    double height = 0.0;
    // Degrees of the modelled period.
    double angleSpan = 360.0;
    // Reaches beyond every body, for the sector that cuts one pitch.
    double sectorRadius = 0.0;
    // The chord limit of the sections.
    double sizeLimit = 1.0;
    // Greatest triangle side.
    double sizeBound = 10.0;
    // Row segment length in units of the layer height.
    double airgapQuality = 1.5;
    // The gaps of the machine, for the marks of their rows.
    QVector<GapRows> gaps;
};

// The refinement of every cell; the mesh that stands at the last step is used.
namespace cellRefinement {
constexpr double aspectBound = 0.125;
constexpr int stepLimit = 50000;
} // namespace cellRefinement
