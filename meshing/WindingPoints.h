#pragma once

#include <QList>
#include <QVector>

#include "meshing/MeshBody.h"
#include "meshing/MeshStep.h"
#include "meshing/Shape2D.h"

class SliceGeometry;
class ShapeList;

// The vertices that the slice meshes of a stator body must have inside its
// conductors: the same in every slot and, seen along the tangent, in every
// slice, so that the conductors are divided alike everywhere.
class WindingPoints
{
public:
    // The geometry names the material of each region; it must outlive this.
    WindingPoints(MeshSettings settings, const SliceGeometry &geometry, QList<double> sliceRadii,
                  MeshStepError onError);

    // For each slice, points of the half-pitch cell from x = 0; empty lists for a body without conductors.
    QVector<QList<PointF>> createGeometryWinding(const MeshBody &body) const;
    // A point at x of the frame of radius ra and half pitch ha, at the same distance
    // from the slot's centre line in the frame of radius rb and half pitch hb.
    static double carried(double x, double ra, double ha, double rb, double hb);

private:
    // Points of a refined half-pitch cell of the body cut at the radius.
    QList<PointF> slicePoints(const MeshBody &body, const ShapeList &pitch, double radius) const;

    MeshSettings m_settings;
    const SliceGeometry &m_geometry;
    QList<double> m_sliceRadii;
    MeshStepError m_onError;
};
