#pragma once

#include "meshing/CDT.h"

// An air gap as its rows see it: its axial range, cut into equal layers.
struct GapRows
{
    double low = 0.0;
    double high = 0.0;
    int layers = 3;

    double layerHeight() const { return (high - low) / layers; }
    // Rows that each side of the gap brings: the middle layer stays between them.
    int rowsOfSide() const { return layers / 2; }
};

// The rows of equal segments that join the meshes of two bodies across an air
// gap, and the lattice of diagonals between the rows.
class GapLattice
{
public:
    GapLattice(double sizeBound, double airgapQuality);

    // The segments of each row of the gap over a width.
    int rowSegments(const GapRows &gap, double width) const;
    // Rows of equal segments from x0 to x1, which both end there to the last bit;
    // counted from the face of the gap that the body does not touch.
    void insertRows(CDT &cdt, const GapRows &gap, bool bodyBelowGap, int rows, double x0, double x1) const;
    // Turns the faces of the bands between the rows of a gap into a lattice of
    // diagonals, but in the middle band.
    void reorderEdges(CDT &cdt, const GapRows &gap) const;

private:
    double m_sizeBound;
    double m_airgapQuality;
};
