#pragma once

#include <QCoreApplication>
#include <functional>

#include "base/ElementTypes.h"
#include "base/Machine.h"
#include "geometry/Piece.h"
#include "winding/Winding.h"

// The winding pieces of a slot pitch, and then of the whole body, get their layers:
// which piece is the upper or lower, left or right coil side follows from where it
// lies and from how the stator body and the winding are built. Where a body holds
// the two halves of one coil side, they are joined.
class SlotWindingPieces
{
    Q_DECLARE_TR_FUNCTIONS(SlotWindingPieces)
public:
    struct Build
    {
        Machine::Type machine = Machine::SR;
        int id = 1;
        bool middle = false;
        ElementTypes::MiddleType middleType = ElementTypes::Yoke;
        int numberLayers = 1;
        Winding::LayersOrientation orientation = Winding::UpperLower;
        Winding::Type windingType = Winding::Planar;
        // The body's turn about the axis, radians: pieces are ordered as if it were none.
        double displacement = 0.0;
    };

    using Report = std::function<void(const QString &message)>;

    SlotWindingPieces(const Build &build, Report report);

    // Layers and layouts. A count of pieces that does not fit the build is reported, and
    // the pieces keep their layers.
    PieceList numberedPitch(PieceList pieces) const;
    // The same over all slots, once the pitch is turned round the body, and slot numbers.
    PieceList numberedBody(PieceList pieces, int slotCount) const;

private:
    PieceList sorted(PieceList pieces) const;
    void reportCount(int count) const;

    bool pitchCountFits(int count) const;
    bool pitchJoinsPairs(int count) const;
    int pitchLayerOf(int k) const;
    int pitchReportedCount() const;

    bool bodyCountFits(int perSlot) const;
    PieceList bodyLayers(const PieceList &pieces, int perSlot) const;

    // Which coil layout of the machine each piece belongs to: a body between two gaps may
    // carry one layout on each face.
    PieceList withLayouts(PieceList pieces) const;
    int layoutOf(int k, int count) const;
    // Slots are numbered round the body, each holding one piece per layer and face.
    PieceList withSlots(PieceList pieces) const;

    Build m_build;
    Report m_report;
};
