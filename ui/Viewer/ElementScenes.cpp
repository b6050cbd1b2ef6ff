#include "ui/Viewer/ElementScenes.h"

#include "document/Document.h"
#include "materials/WindingMaterial.h"
#include "ui/Viewer/EndturnPieces.h"
#include "winding/Winding.h"

MotorGeometryScene::MotorGeometryScene(Document *document, QObject *parent)
    : GeometryScene(document, QStringLiteral("Motor"), parent)
{
}

PieceList MotorGeometryScene::buildPieces()
{
    emit document()->createMotorGeometryStarted();
    return document()->pieces();
}

void MotorGeometryScene::createScene(const PieceList &pieces)
{
    m_machinePieces = pieces;
    GeometryScene::createScene(withEndturns());
    document()->checkElements();
    emit document()->geometryChanged();
    emit document()->createMotorGeometryFinished();
}

void MotorGeometryScene::setHighlightPhases(bool highlight)
{
    if (m_highlightPhases == highlight)
        return;
    m_highlightPhases = highlight;
    setPieces(pieces());
}

void MotorGeometryScene::setFilamentsOnly(bool filamentsOnly)
{
    if (m_filamentsOnly == filamentsOnly)
        return;
    m_filamentsOnly = filamentsOnly;
    setPieces(withEndturns());
}

QColor MotorGeometryScene::colorOf(const Piece &piece) const
{
    const auto endturn = piece.material().dynamicCast<EndturnMaterial>();
    if (m_highlightPhases && endturn)
        return Winding::phaseColor(Winding::Phase(endturn->phase()), false);
    return GeometryScene::colorOf(piece);
}

PieceList MotorGeometryScene::withEndturns() const
{
    PieceList all = m_machinePieces;
    all.append(endturnPieces(document()->winding(), m_filamentsOnly));
    return all;
}

ElementGeometryScene::ElementGeometryScene(Document *document, const QString &name, Piece::Scopes bodies,
                                           QObject *parent)
    : GeometryScene(document, name, parent)
    , m_bodies(bodies)
{
}

PieceList ElementGeometryScene::buildPieces()
{
    PieceList own;
    for (const Piece &piece : document()->pieces()) {
        if (m_bodies & piece.scope())
            own.append(piece);
    }
    return own;
}

StatorGeometryScene::StatorGeometryScene(Document *document, QObject *parent)
    : ElementGeometryScene(document, QStringLiteral("Stator"), Piece::StatorMask, parent)
{
}

RotorGeometryScene::RotorGeometryScene(Document *document, QObject *parent)
    : ElementGeometryScene(document, QStringLiteral("Rotor"), Piece::RotorMask, parent)
{
}
