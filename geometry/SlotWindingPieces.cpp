#include "geometry/SlotWindingPieces.h"

#include <algorithm>

#include "geometry/BodyPieces.h"
#include "materials/WindingMaterial.h"

namespace {

bool isEven(int k)
{
    return k % 2 == 0;
}

// Each piece gets its own copy of its material, changed.
template <typename Change>
void changeMaterial(Piece &piece, Change change)
{
    QSharedPointer<AbstractMaterial> material = piece.material()->clone();
    change(static_cast<WindingMaterial &>(*material));
    piece.setMaterial(material);
}

PieceList withLayer(PieceList pieces, int layer)
{
    for (Piece &piece : pieces)
        changeMaterial(piece, [layer](WindingMaterial &material) { material.setLayer(layer); });
    return pieces;
}

PieceList slice(const PieceList &pieces, int from, int to)
{
    PieceList part;
    for (int k = from; k < to; ++k)
        part << pieces.at(k);
    return part;
}

// The lower half of the sorted pieces is one layer, the upper half the other.
PieceList layeredHalves(const PieceList &pieces)
{
    const int middle = pieces.size() / 2;
    PieceList numbered = withLayer(BodyPieces::joinedPairs(slice(pieces, 0, middle), true), 1);
    numbered << withLayer(BodyPieces::joinedPairs(slice(pieces, middle, pieces.size()), true), 2);
    return numbered;
}

} // namespace

SlotWindingPieces::SlotWindingPieces(const Build &build, Report report)
    : m_build(build)
    , m_report(std::move(report))
{
}

PieceList SlotWindingPieces::numberedPitch(PieceList pieces) const
{
    pieces = sorted(pieces);
    if (!pitchCountFits(pieces.size())) {
        reportCount(pitchReportedCount());
        return withLayouts(pieces);
    }
    if (pitchJoinsPairs(pieces.size()))
        pieces = BodyPieces::joinedPairs(pieces, true);
    PieceList numbered;
    for (int k = 0; k < pieces.size(); ++k)
        numbered << withLayer({pieces.at(k)}, pitchLayerOf(k));
    return withLayouts(numbered);
}

PieceList SlotWindingPieces::numberedBody(PieceList pieces, int slotCount) const
{
    pieces = sorted(withLayer(pieces, -1));
    const int perSlot = slotCount > 0 ? pieces.size() / slotCount : 0;
    if (!bodyCountFits(perSlot)) {
        reportCount(perSlot);
        return withSlots(withLayouts(pieces));
    }
    return withSlots(withLayouts(bodyLayers(pieces, perSlot)));
}

PieceList SlotWindingPieces::sorted(PieceList pieces) const
{
    pieces.rotate(-m_build.displacement);
    pieces.sortByHeightAndAngle();
    pieces.rotate(m_build.displacement);
    return pieces;
}

void SlotWindingPieces::reportCount(int count) const
{
    m_report(tr("Geometry script of stator%1 must return %2 winding piece for %3, %4 orientation")
                 .arg(m_build.id)
                 .arg(count)
                 .arg(Winding::numberLayersString(m_build.numberLayers), Winding::toString(m_build.orientation)));
}

bool SlotWindingPieces::pitchCountFits(int count) const
{
    const bool twoLayers = m_build.numberLayers == 2;
    const bool upperLower = m_build.orientation == Winding::UpperLower;
    if (!m_build.middle) {
        if (!twoLayers)
            return count == 1 || count == 2;
        return count == (upperLower ? 4 : 2) || m_build.id == 3;
    }
    if (m_build.middleType == ElementTypes::Yoke)
        return count == (twoLayers && upperLower ? 8 : 4);
    if (!twoLayers)
        return count == 1 || count == 4;
    return count == 4;
}

bool SlotWindingPieces::pitchJoinsPairs(int count) const
{
    if (!m_build.middle || m_build.middleType != ElementTypes::Yokeless)
        return false;
    if (m_build.numberLayers == 2)
        return m_build.orientation == Winding::LeftRight;
    return count == 4;
}

int SlotWindingPieces::pitchLayerOf(int k) const
{
    const bool upperLower = m_build.orientation == Winding::UpperLower;
    if (m_build.numberLayers != 2) {
        const bool toroidalYoke = m_build.middle && m_build.middleType == ElementTypes::Yoke
                                  && m_build.windingType == Winding::Toroidal;
        return toroidalYoke ? k / 2 + 1 : 1;
    }
    if (!upperLower)
        return isEven(k) ? 2 : 1;
    if (m_build.middle && m_build.middleType == ElementTypes::Yoke)
        return (k / 2) % 2 + 1;
    return k / 2 + 1;
}

int SlotWindingPieces::pitchReportedCount() const
{
    const bool upperLowerPair = m_build.numberLayers == 2 && m_build.orientation == Winding::UpperLower;
    if (!m_build.middle && upperLowerPair)
        return 4;
    if (m_build.middle && m_build.middleType == ElementTypes::Yoke && upperLowerPair)
        return 4;
    return 2;
}

bool SlotWindingPieces::bodyCountFits(int perSlot) const
{
    const bool twoLayers = m_build.numberLayers == 2;
    const bool upperLower = m_build.orientation == Winding::UpperLower;
    const bool yokeMiddle = m_build.middle && m_build.middleType == ElementTypes::Yoke;
    if (!twoLayers)
        return yokeMiddle ? perSlot == 4 : perSlot == 1 || perSlot == 2;
    if (!m_build.middle)
        return perSlot == (upperLower ? 4 : 2) || m_build.id == 3;
    if (yokeMiddle)
        return perSlot == (upperLower ? 8 : 4);
    return perSlot == (upperLower ? 4 : 2);
}

PieceList SlotWindingPieces::bodyLayers(const PieceList &pieces, int perSlot) const
{
    const bool twoLayers = m_build.numberLayers == 2;
    if (twoLayers && m_build.orientation == Winding::LeftRight) {
        PieceList numbered;
        for (int k = 0; k < pieces.size(); ++k)
            numbered << withLayer({pieces.at(k)}, isEven(k) ? 2 : 1);
        return numbered;
    }
    const bool yokeMiddle = m_build.middle && m_build.middleType == ElementTypes::Yoke;
    if (twoLayers && yokeMiddle) {
        // Each face carries a double-layer winding of its own: the layers are the halves of
        // each face, as in the pitch, not the two faces.
        const int face = pieces.size() / 2;
        PieceList numbered = layeredHalves(slice(pieces, 0, face));
        numbered << layeredHalves(slice(pieces, face, pieces.size()));
        return numbered;
    }
    if (twoLayers || (yokeMiddle && m_build.windingType == Winding::Toroidal))
        return layeredHalves(pieces);
    const bool halvesOfSides = yokeMiddle || perSlot == 2;
    return withLayer(halvesOfSides ? BodyPieces::joinedPairs(pieces, true) : pieces, 1);
}

PieceList SlotWindingPieces::withLayouts(PieceList pieces) const
{
    for (int k = 0; k < pieces.size(); ++k) {
        const int layout = layoutOf(k, pieces.size());
        changeMaterial(pieces[k], [layout](WindingMaterial &material) { material.setLayout(layout); });
    }
    return pieces;
}

int SlotWindingPieces::layoutOf(int k, int count) const
{
    const bool facesApart = m_build.middleType == ElementTypes::Yoke && m_build.windingType == Winding::Planar;
    const int face = count >= 2 ? k / (count / 2) : 0;
    switch (m_build.machine) {
    case Machine::SRSRS:
        if (m_build.id == 2)
            return facesApart ? face + 2 : 2;
        return m_build.id == 3 ? (facesApart ? 4 : 3) : 1;
    case Machine::RSR:
        return facesApart ? face + 1 : 1;
    case Machine::RSRSR:
        return facesApart ? 2 * m_build.id - 1 + face : m_build.id;
    case Machine::SR:
    case Machine::SRS:
    case Machine::UnknownType:
        break;
    }
    return m_build.id;
}

PieceList SlotWindingPieces::withSlots(PieceList pieces) const
{
    const bool yoke = m_build.middleType == ElementTypes::Yoke;
    const bool bothFaces = yoke
                           && (m_build.machine == Machine::RSR || m_build.machine == Machine::RSRSR
                               || (m_build.machine == Machine::SRSRS && m_build.id == 2));
    const int perSlot = std::max(1, m_build.numberLayers * (bothFaces ? 2 : 1));
    pieces.rotate(-m_build.displacement);
    pieces.sortByAngle();
    pieces.rotate(m_build.displacement);
    for (int k = 0; k < pieces.size(); ++k) {
        const int slot = k / perSlot + 1;
        changeMaterial(pieces[k], [slot](WindingMaterial &material) { material.setSlot(slot); });
    }
    return pieces;
}
