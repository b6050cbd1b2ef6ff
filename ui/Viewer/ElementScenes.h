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

    // End turns in the colours of their phases instead of their material's.
    void setHighlightPhases(bool highlight);
    // End turns as their centre lines instead of as bundles.
    void setFilamentsOnly(bool filamentsOnly);
    // The plane of the radial model, and the cylinders on which the slices are cut.
    bool showSectionRadial() const { return m_showSectionRadial; }
    void setShowSectionRadial(bool show);
    bool showSectionCylindrical() const { return m_showSectionCylindrical; }
    void setShowSectionCylindrical(bool show);

signals:
    void showSectionRadialChanged(bool show);
    void showSectionCylindricalChanged(bool show);

protected:
    PieceList buildPieces() override;
    void createScene(const PieceList &pieces) override;
    QColor colorOf(const Piece &piece) const override;
    QVector<Handle(AIS_InteractiveObject)> guides(const SectionGuides::AxialExtent &extent) const override;

private:
    // The machine's pieces and the end turns, which are made here, on the GUI thread,
    // since the end-turn script runs on it.
    PieceList withEndturns() const;

    PieceList m_machinePieces;
    bool m_highlightPhases = false;
    bool m_filamentsOnly = false;
    bool m_showSectionRadial = false;
    bool m_showSectionCylindrical = false;
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
