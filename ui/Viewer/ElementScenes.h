#pragma once

#include "ui/Viewer/GeometryScene.h"

// The whole machine. It builds the document's pieces on the document's behalf,
// so that every view can follow the building of the geometry.
class MotorGeometryScene : public GeometryScene
{
    Q_OBJECT
public:
    explicit MotorGeometryScene(Document *document, QObject *parent = nullptr);

    void applyMotorChanges() { applyChanges(); }

signals:
    void showSectionRadialChanged(bool show);
    void showSectionCylindricalChanged(bool show);

protected:
    PieceList buildPieces() override;
    void createScene(const PieceList &pieces) override;
};

// The bodies of one element alone, out of the same pieces of the document.
class ElementGeometryScene : public GeometryScene
{
    Q_OBJECT
public:
    ElementGeometryScene(Document *document, const QString &name, Piece::Scopes bodies, QObject *parent = nullptr);

protected:
    PieceList buildPieces() override;

private:
    Piece::Scopes m_bodies;
};

class StatorGeometryScene : public ElementGeometryScene
{
    Q_OBJECT
public:
    explicit StatorGeometryScene(Document *document, QObject *parent = nullptr);
    void applyStatorChanges() { applyChanges(); }
};

class RotorGeometryScene : public ElementGeometryScene
{
    Q_OBJECT
public:
    explicit RotorGeometryScene(Document *document, QObject *parent = nullptr);
    void applyRotorChanges() { applyChanges(); }
};
