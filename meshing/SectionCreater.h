#pragma once

#include "geometry/servoce/shape.h"
#include "meshing/Shape2D.h"
#include "meshing/ShapeList.h"

// Cuts solids with a tool and flattens the cut into lines. Read-only after
// construction, so copies may work in several threads at once.
class SectionCreater
{
public:
    // Kept for the callers; the cut does not read it.
    double sizeLimit() const { return m_sizeLimit; }
    const servoce::shape &tool() const { return m_tool; }

    // The section curves of every shape, in no particular order. Null shapes
    // and empty cuts are left out.
    ShapeList makeSection(const ShapeList &shapes) const;

protected:
    SectionCreater(double sizeLimit, const servoce::shape &tool);
    ~SectionCreater() = default;

private:
    double m_sizeLimit;
    servoce::shape m_tool;
};

// The cut by a cylinder about Z, unrolled into (arc length, z). Curves that
// are neither lines nor circles about Z become at most 9 chords.
class CylindricalSectionCreater : public SectionCreater
{
public:
    // The cylinder reaches 10 % of length beyond the machine at both ends.
    CylindricalSectionCreater(double radius, double length, double sizeLimit);

    double radius() const { return m_radius; }
    // Raises the kernel's Standard_Failure when a curve cannot be discretised.
    Shape2DList create(const ShapeList &shapes) const;

private:
    double m_radius;
};

// The cut by the plane through the axis, flattened into (x, z).
class RadialSectionCreater : public SectionCreater
{
public:
    explicit RadialSectionCreater(double sizeLimit);

    // Raises the kernel's Standard_Failure when a curve cannot be discretised.
    Shape2DList create(const ShapeList &shapes) const;
    // The cut of a body at its own angle (degrees): one pitch about that angle, at
    // most half a turn, cut between the heights within the radius, turned back to
    // angle 0, where the plane meets it on the side of positive x only.
    Shape2DList createAtAngle(const ShapeList &shapes, double radius, double bottom, double top, double angle,
                              double pitch) const;
};
