#pragma once

#include <QString>
#include <QVector>
#include <optional>

#include "geometry/Piece.h"
#include "meshing/CDT.h"
#include "meshing/MeshStep.h"

// An air gap as its rows see it: its axial range, cut into equal layers.
struct GapRows
{
    double low = 0.0;
    double high = 0.0;
    int layers = 3;

    double layerHeight() const { return (high - low) / layers; }
};

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
};

// What every cell of the slices shares.
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

// Meshes each body over half a pitch, mirrors and replicates the cell over the
// period, and joins the bodies in rows of equal segments in each gap. Failed
// steps are reported and the build goes on with what it has.
class SliceMesher
{
public:
    SliceMesher(MeshSettings settings, QVector<MeshBody> bodies, MeshStepError onError);

    // The unrolled width of the period at the radius.
    double periodWidth(double radius) const;
    // The segments of each row of the gap over a width.
    int rowSegments(const GapRows &gap, double width) const;
    // The mesh of one body over the period, in the body's own frame; index counts slices from 0.
    CDT cell(const MeshBody &body, int index, double radius) const;
    // All bodies of one slice, each at its displacement, with their mirror images.
    CDT slice(int index, double radius) const;

private:
    // Turns the faces of the bands between the rows of a gap into a lattice of
    // diagonals, but in the middle band.
    void reorderAirgapEdges(CDT &cdt, const GapRows &gap) const;
    // Rows of equal segments from x = 0, counted from the face of the gap that the body does not touch.
    void insertRows(CDT &cdt, const GapRows &gap, bool bodyBelowGap, int rows, double width) const;

    MeshSettings m_settings;
    QVector<MeshBody> m_bodies;
    MeshStepError m_onError;
};
