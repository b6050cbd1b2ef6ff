#pragma once

#include <QCoreApplication>
#include <functional>

#include "geometry/MotorElement.h"
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
        int id = 1;
        bool middle = false;
        MotorElement::MiddleType middleType = MotorElement::Yoke;
        int numberLayers = 1;
        Winding::LayersOrientation orientation = Winding::UpperLower;
        Winding::Type windingType = Winding::Planar;
        // The body's turn about the axis, radians: pieces are ordered as if it were none.
        double displacement = 0.0;
    };

    using Report = std::function<void(const QString &message)>;

    SlotWindingPieces(const Build &build, Report report);

    // A count of pieces that does not fit the build is reported, and the pieces stay as they are.
    PieceList numberedPitch(PieceList pieces) const;
    // The same over all slots, once the pitch is turned round the body.
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

    Build m_build;
    Report m_report;
};
