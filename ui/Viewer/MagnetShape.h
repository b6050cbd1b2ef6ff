#pragma once

#include <AIS_ColoredShape.hxx>
#include <TopoDS_Compound.hxx>
#include <gp_Pln.hxx>

#include "materials/Magnetization.h"

// A magnet drawn with its poles: the faces on the side its field leaves in the
// north colour, the others in the south colour. A magnet whose field does not
// cross its mid plane, or that cannot be split, is drawn whole in its own colour.
class MagnetShape : public AIS_ColoredShape
{
    DEFINE_STANDARD_RTTI_INLINE(MagnetShape, AIS_ColoredShape)
public:
    MagnetShape(const TopoDS_Shape &shape, const Magnetization &magnetization, const QColor &color);

    // Splits the faces of the shape along its cut by the plane into those above the
    // plane and those below; false when the split failed.
    bool createPoles(const TopoDS_Shape &shape, const gp_Pln &plane);
    const TopoDS_Compound &above() const { return m_above; }
    const TopoDS_Compound &below() const { return m_below; }

private:
    TopoDS_Compound m_above;
    TopoDS_Compound m_below;
};
