#include "ui/Viewer/ElementScenes.h"

#include "document/Document.h"
#include "materials/WindingMaterial.h"
#include "meshing/Mesh.h"
#include "ui/Viewer/EndturnPieces.h"
#include "winding/Winding.h"
#include "winding/WindingObject.h"

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

void MotorGeometryScene::setShowSectionRadial(bool show)
{
    if (m_showSectionRadial == show)
        return;
    m_showSectionRadial = show;
    emit showSectionRadialChanged(show);
    setPieces(pieces());
}

void MotorGeometryScene::setShowSectionCylindrical(bool show)
{
    if (m_showSectionCylindrical == show)
        return;
    m_showSectionCylindrical = show;
    emit showSectionCylindricalChanged(show);
    setPieces(pieces());
}

QVector<Handle(AIS_InteractiveObject)> MotorGeometryScene::guides(const SectionGuides::AxialExtent &extent) const
{
    QVector<Handle(AIS_InteractiveObject)> drawn = GeometryScene::guides(extent);
    const Mesh *mesh = document()->mesh();
    if (m_showSectionCylindrical) {
        for (double radius : mesh->sliceRadii())
            drawn.append(SectionGuides::cylinder(radius, extent, QColor(40, 180, 90)));
    }
    if (m_showSectionRadial)
        drawn.append(SectionGuides::radialPlane(mesh->radialOuterRadius(), extent, QColor(240, 190, 20)));
    return drawn;
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
    const PieceList endturns = endturnPieces(document()->winding(), m_filamentsOnly);
    all.append(endturns);
    // The bundles drawn are the end winding's solids: it is no longer stale.
    if (!m_filamentsOnly && !endturns.isEmpty())
        document()->winding()->setEndturnShapeGenerated(true, false);
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
