#pragma once

#include <QVector>

#include "meshing/CDT.h"
#include "meshing/GapLattice.h"
#include "meshing/MeshBody.h"
#include "meshing/MeshStep.h"

// Meshes each body over half a pitch, mirrors and replicates the cell over the
// period, and joins the bodies in rows of equal segments in each gap. Failed
// steps are reported and the build goes on with what it has.
class SliceMesher
{
public:
    SliceMesher(MeshSettings settings, QVector<MeshBody> bodies, MeshStepError onError);

    // The unrolled width of the period at the radius.
    double periodWidth(double radius) const;
    // The mesh of one body over the period, in the body's own frame; index counts slices from 0.
    CDT cell(const MeshBody &body, int index, double radius) const;
    // All bodies of one slice, each at its displacement, with their mirror images.
    CDT slice(int index, double radius) const;

private:
    MeshSettings m_settings;
    QVector<MeshBody> m_bodies;
    MeshStepError m_onError;
    GapLattice m_lattice;
};
