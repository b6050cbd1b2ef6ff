#pragma once

#include <optional>

#include "geometry/Piece.h"

class Document;

// The mass of one material of the machine.
struct MaterialMass
{
    // Whether the machine has pieces of it.
    bool hasPieces = false;
    // kg; empty where the library lacks the material.
    std::optional<double> kilograms;

    double orZero() const { return kilograms.value_or(0.0); }
};

// The masses of the machine's materials, from the volumes of its pieces (mm³), the
// winding's wire, and the library's mass densities (kg/m³). The rotor iron is weighed
// as solid iron: its stacking factor is left to the reader.
struct MaterialMasses
{
    MaterialMass statorIron;
    MaterialMass statorWinding;
    MaterialMass rotorIron;
    MaterialMass rotorMagnet;
    MaterialMass rotorConductor;

    static MaterialMasses of(const Document &document, const PieceList &pieces);
};
