#include "geometry/SlotSection.h"

#include <optional>
#include <vector>

#include "base/Tbb.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/solid.h"
#include "materials/AbstractMaterial.h"

namespace {

constexpr double plateThickness = 0.1;

QList<servoce::shape> shapesOf(const std::vector<std::optional<Piece>> &cuts, qint32 kind)
{
    QList<servoce::shape> shapes;
    for (const std::optional<Piece> &cut : cuts) {
        if (cut && cut->kind() == kind)
            shapes << cut->shape();
    }
    return shapes;
}

} // namespace

SlotSection SlotSection::across(const PieceList &pitchWindings, const PieceList &body, double pitch,
                                double displacement, double radius, double height)
{
    SlotSection section;
    if (pitchWindings.isEmpty())
        return section;
    const QPair<double, double> range = pitchWindings.radialRange();
    const double r = (range.first + range.second) / 2.0;
    const servoce::shape sector =
        servoce::cylinder(radius, height, pitch, false).transformed(servoce::rotateZ(displacement));
    const servoce::shape across = servoce::box(plateThickness, 2.0 * r, height, false)
                                      .translated(r, -r, 0.0)
                                      .transformed(servoce::rotateZ(displacement + pitch / 2.0));
    const servoce::shape plate = servoce::make_intersect(across, sector, true);

    std::vector<std::optional<Piece>> cuts(size_t(body.size()));
    tbb::parallel_for(0, body.size(), [&](int i) {
        const servoce::shape cut = servoce::make_intersect(body.at(i).shape(), plate, true);
        if (!cut.is_empty())
            cuts[size_t(i)] = Piece(cut, body.at(i).material(), body.at(i).scope());
    });
    QList<servoce::shape> covered;
    for (const std::optional<Piece> &cut : cuts) {
        if (cut)
            covered << cut->shape();
    }
    // What no body fills of the plate is the slot's free space.
    const servoce::shape free =
        covered.isEmpty() ? plate : servoce::make_difference(plate, servoce::makeUnion(covered, true), true);

    const QList<servoce::shape> coilCuts = shapesOf(cuts, AbstractMaterial::WindingKind);
    if (!coilCuts.isEmpty()) {
        section.coil = servoce::makeUnion(coilCuts, true);
        section.coilArea = section.coil.volume() / plateThickness;
    }
    QList<servoce::shape> slotParts{free};
    if (!section.coil.is_empty())
        slotParts << section.coil;
    section.slot = servoce::makeUnion(slotParts, true);
    section.slotArea = section.slot.is_empty() ? 0.0 : section.slot.volume() / plateThickness;
    return section;
}
