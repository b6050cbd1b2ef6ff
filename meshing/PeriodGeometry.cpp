#include "meshing/PeriodGeometry.h"

#include <QtMath>
#include <cmath>
#include <vector>

#include "geometry/servoce/boolops.h"
#include "geometry/servoce/solid.h"

namespace {

constexpr double turnTolerance = 1e-7;

} // namespace

PeriodGeometry::PeriodGeometry(double radius, double angleSpan)
    : m_radius(radius)
    , m_angleSpan(angleSpan)
{
}

bool PeriodGeometry::isWholeTurn() const
{
    return std::abs(m_angleSpan - 360.0) <= turnTolerance;
}

servoce::shape PeriodGeometry::boundingSolid(const PeriodBody &body) const
{
    const double bottom = body.bottom - body.extensionBelow;
    const double height = body.top + body.extensionAbove - bottom;
    return servoce::cylinder(m_radius, height, qDegreesToRadians(m_angleSpan), false)
        .transformed(servoce::rotateZ(qDegreesToRadians(body.displacement)))
        .translated(0.0, 0.0, bottom);
}

ShapeList PeriodGeometry::solids(const QVector<PeriodBody> &bodies) const
{
    ShapeList all;
    for (const PeriodBody &body : bodies) {
        const ShapeList whole = ShapeList::of(body.pieces);
        ShapeList pieces = whole;
        if (!isWholeTurn()) {
            pieces = pieces.cutToSector(m_radius, body.bottom - body.extensionBelow, body.top + body.extensionAbove,
                                        qDegreesToRadians(body.displacement), qDegreesToRadians(m_angleSpan));
        }
        // The air is the sector less the whole pieces, one after another: a piece
        // cut to the sector would lay its faces on the sector's sides, and all
        // pieces at once as one tool, where they touch, leave slivers of them in the air.
        std::vector<servoce::shape> airAndPieces{boundingSolid(body)};
        for (int i = 0; i < pieces.size(); ++i) {
            if (pieces.at(i).is_empty())
                continue;
            all.append(pieces.at(i));
            airAndPieces.push_back(whole.at(i));
        }
        const servoce::shape air = servoce::make_difference(airAndPieces, false);
        if (!air.is_empty())
            all.append(air);
    }
    return all;
}
