#include "geometry/MotorItem.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/MotorElement.h"
#include "geometry/Stator.h"

MotorItem::MotorItem(MotorElement *element, ID id)
    : CoreMotorElement(element->document(), element)
    , m_element(element)
    , m_id(id)
{
    setObjectName(QStringLiteral("%1Item%2").arg(element->objectName()).arg(int(id)));
}

void MotorItem::setHeight(double height)
{
    height = roundLength(height);
    if (height <= Numeric::zeroTolerance) {
        m_element->console()->error(tr("Height of %1 must be great zero!").arg(objectName()));
        height = 0.1;
    }
    if (qFuzzyCompare(m_height, height))
        return;
    m_height = height;
    // The stator's clearing takes the rotor along: a body's height moves all above it.
    document()->stator()->clearCashPieces();
    emit heightChanged(m_height);
    emit itemChanged();
    markGeometryModified(document());
}

void MotorItem::setAngularDisplacement(double angle)
{
    angle = roundLength(Numeric::normalizeAngle(angle));
    if (qFuzzyCompare(m_angularDisplacement, angle))
        return;
    m_angularDisplacement = angle;
    document()->stator()->clearCashPieces();
    emit angularDisplacementChanged(m_angularDisplacement);
    emit itemChanged();
    markGeometryModified(document());
}

QPair<double, double> MotorItem::range() const
{
    const Airgap *below = gapBelow();
    const double bottom = below ? below->posTop() : 0.0;
    return {bottom, bottom + m_height};
}

bool MotorItem::hasCachedPieces() const
{
    const std::lock_guard locker(m_piecesMutex);
    return m_pieces.has_value();
}

void MotorItem::createPieces()
{
    const std::lock_guard locker(m_piecesMutex);
    if (m_pieces)
        return;
    m_pieces = canHavePieces() ? builtBody(basePieces()) : PieceList();
}

PieceList MotorItem::basePieces()
{
    const std::lock_guard locker(m_baseMutex);
    if (m_basePieces)
        return *m_basePieces;
    if (!canHavePieces())
        return {};
    MotorItem *first = m_element->activeItems().value(0);
    PieceList pieces;
    if (reusesFirstDrawing() && first && first != this && qFuzzyCompare(first->height(), m_height)) {
        // The script draws the same pitch for the same height: the first body's work is reused.
        pieces = first->basePieces();
        for (Piece &piece : pieces)
            piece.setScope(scope());
    } else {
        pieces = prepared(scriptGeometry().value(QStringLiteral("pieces")).value<PieceList>());
        for (Piece &piece : pieces)
            piece.setScope(scope());
        pieces.simplifyShapes();
    }
    m_overlaps = BodyPieces::overlapsBetween(pieces) + BodyPieces::overlapsOutsideSector(pieces, pitch(), m_height);
    m_basePieces = pieces;
    return pieces;
}

QVector<servoce::shape> MotorItem::overlapShapes() const
{
    const std::lock_guard locker(m_baseMutex);
    return m_overlaps;
}

double MotorItem::relativeDisplacement() const
{
    double smallest = m_angularDisplacement;
    for (const MotorItem *item : m_element->activeItems())
        smallest = std::min(smallest, item->angularDisplacement());
    return m_angularDisplacement - smallest;
}

Piece::Scope MotorItem::scope() const
{
    return m_id == Empty ? Piece::Empty : Piece::Scope(firstScope() << (m_id - 1));
}

BodyPieces::Placement MotorItem::placement(bool withDisplacement) const
{
    BodyPieces::Placement placement;
    placement.upper = isUpper();
    placement.middle = isMiddle();
    placement.height = m_height;
    placement.angle = withDisplacement ? qDegreesToRadians(relativeDisplacement()) : 0.0;
    placement.scope = scope();
    return placement;
}

bool MotorItem::canHavePieces() const
{
    return m_element->isScriptLoaded() && m_element->outerDiameter() > m_element->innerDiameter()
           && document()->isConfigLoaded();
}

PieceList MotorItem::cachedPieces() const
{
    const std::lock_guard locker(m_piecesMutex);
    return m_pieces.value_or(PieceList());
}

void MotorItem::clearCashPieces()
{
    const std::lock_guard locker(m_piecesMutex);
    m_pieces.reset();
    const std::lock_guard baseLocker(m_baseMutex);
    m_basePieces.reset();
    m_overlaps.clear();
}
