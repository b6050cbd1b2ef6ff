#pragma once

#include <QList>
#include <QVector>

#include "meshing/CDT.h"
#include "meshing/GapLattice.h"
#include "meshing/MeshBody.h"
#include "meshing/MeshStep.h"
#include "meshing/Shape2D.h"

// Where the radial model lies: from the axis out to its width.
struct RadialFrame
{
    double width = 0.0;
    // The radial range of the active part.
    double inner = 0.0;
    double outer = 0.0;
    // The model has a vertex row at each.
    QList<double> sliceRadii;
};

// Meshes the plane through the axis: each body in its own frame, mirrored in its
// middle where it has one, joined to the others by rows of equal segments in
// each gap, zone by zone of the active part and the air beside it.
class RadialMesher
{
public:
    RadialMesher(MeshSettings settings, RadialFrame frame, QVector<MeshBody> bodies, MeshStepError onError);

    // The mesh of one body, with its rows up to the middle band of each of its gaps.
    CDT createMeshRadial(const MeshBody &body) const;
    // All bodies with their mirror images; the middle bands of the gaps are not in the domain.
    CDT createMeshRadial() const;

private:
    // The section of the body with its frame one layer into each gap and the
    // lines of the active part and the slices; kept gathers the section's lines
    // along lines whose constraints are removed before the final rows.
    Shape2DList cellLines(const MeshBody &body, Shape2DList &kept) const;
    // Rows zone by zone: from the axis to the active part, across it, and beyond it.
    void insertRows(CDT &cdt, const GapRows &gap, bool bodyBelowGap, int rows) const;
    // Marks the central rows of a gap for the solver and frees the others.
    void finishGap(CDT &cdt, const GapRows &gap) const;

    MeshSettings m_settings;
    RadialFrame m_frame;
    QVector<MeshBody> m_bodies;
    MeshStepError m_onError;
    GapLattice m_lattice;
};
