#include "ui/Viewer/ElementScenes.h"

#include "document/Document.h"

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
    GeometryScene::createScene(pieces);
    document()->checkElements();
    emit document()->geometryChanged();
    emit document()->createMotorGeometryFinished();
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
