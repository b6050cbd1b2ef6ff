#include "document/MaterialMasses.h"

#include <cmath>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"
#include "winding/WindingObject.h"

namespace {

// Shape volumes are in mm³, mass densities in kg/m³.
const double cubicMillimetresPerCubicMetre = 1e9;

template <class Engine>
std::optional<double> densityOf(const QString &name)
{
    const auto *material = Engine::instance().describe(name);
    return material ? std::optional<double>(material->massDensity) : std::nullopt;
}

// The pieces of a kind in one body, weighed with a density.
MaterialMass massOf(const PieceList &pieces, Piece::Scope body, qint32 kind, std::optional<double> density)
{
    MaterialMass mass;
    double volume = 0.0;
    for (const Piece &piece : pieces) {
        if ((piece.scope() & body) && piece.kind() == kind) {
            mass.hasPieces = true;
            volume += piece.shape().volume();
        }
    }
    if (density)
        mass.kilograms = volume / cubicMillimetresPerCubicMetre * *density;
    return mass;
}

} // namespace

MaterialMasses MaterialMasses::of(const Document &document, const PieceList &pieces)
{
    const Stator *stator = document.stator();
    const Rotor *rotor = document.rotor();
    const WindingObject *winding = document.winding();
    MaterialMasses masses;
    masses.statorIron = massOf(pieces, Piece::StatorMask, AbstractMaterial::IronKind,
                               densityOf<MaterialIronEngine>(stator->ironMaterial()));
    if (masses.statorIron.kilograms)
        *masses.statorIron.kilograms *= stator->ironStacking();
    masses.rotorIron = massOf(pieces, Piece::RotorMask, AbstractMaterial::IronKind,
                              densityOf<MaterialIronEngine>(rotor->ironMaterial()));
    masses.rotorMagnet = massOf(pieces, Piece::RotorMask, AbstractMaterial::MagnetKind,
                                densityOf<MaterialMagnetEngine>(rotor->magnetMaterial()));
    masses.rotorConductor = massOf(pieces, Piece::RotorMask, AbstractMaterial::ConductorKind,
                                   densityOf<MaterialConductorEngine>(rotor->conductorMaterial()));

    // The wire of every layout, in m, of its strands' cross-section in mm².
    masses.statorWinding = massOf(pieces, Piece::StatorMask, AbstractMaterial::WindingKind, std::nullopt);
    if (const std::optional<double> density = densityOf<MaterialConductorEngine>(stator->windingMaterial())) {
        const double radius = winding->wireDiameter() / 2.0;
        masses.statorWinding.kilograms = winding->strandsConductor() * winding->wireLength() * winding->countLayouts()
                                         * M_PI * radius * radius / 1e6 * *density;
    }
    return masses;
}
