#pragma once

#include <QVector>

#include "ui/Viewer/GeometryScene.h"
#include "winding/LayoutText.h"
#include "winding/Winding.h"

// The stator winding alone in 3D: the coil sides in the slots and the end turns, in the
// colours of their phases, each phase and stator face shown or hidden on its own.
class WindingScene : public GeometryScene
{
    Q_OBJECT
public:
    explicit WindingScene(Document *document, QObject *parent = nullptr);
    ~WindingScene() override;

    Winding::Scopes visibleLayouts() const { return m_visibleLayouts; }
    void setVisibleLayouts(Winding::Scopes layouts);
    Winding::Scopes visiblePhases() const { return m_visiblePhases; }
    void setVisiblePhases(Winding::Scopes phases);
    bool showOnlyFilaments() const { return m_filamentsOnly; }
    void setShowOnlyFilaments(bool filamentsOnly);

    // The phase and stator face of a coil side or end turn; empty for any other piece.
    Winding::Scopes scopeOf(const Piece &piece) const;

    void loadSettings() override;
    void saveSettings() const override;

signals:
    void visibleLayoutsChanged(Winding::Scopes &layouts);
    void visiblePhasesChanged(Winding::Scopes &phases);
    void showOnlyFilamentsChanged(bool filamentsOnly);

protected:
    PieceList buildPieces() override;
    void createScene(const PieceList &pieces) override;
    QColor colorOf(const Piece &piece) const override;

private:
    // The built pieces that the visible phases and faces keep.
    void showVisible();
    void loadOwnSettings();

    PieceList m_coilSides;
    PieceList m_endturns;
    // Of each stator face, as the winding marks its slots.
    QVector<QVector<Winding::SlotMark>> m_marks;
    int m_layers = 1;
    Winding::Scopes m_visibleLayouts = Winding::LayoutAny;
    Winding::Scopes m_visiblePhases = Winding::PhaseAny;
    bool m_filamentsOnly = false;
};
