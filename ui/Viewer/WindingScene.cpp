#include "ui/Viewer/WindingScene.h"

#include <QSettings>

#include "document/Document.h"
#include "materials/WindingMaterial.h"
#include "ui/Viewer/EndturnPieces.h"
#include "winding/WindingObject.h"

namespace {

const QString group = QStringLiteral("WindingScene");

Winding::Scopes layoutBit(int layout)
{
    return layout >= 1 && layout <= 4 ? Winding::Scopes(Winding::Layout1 << (layout - 1)) : Winding::Scopes();
}

Winding::Scopes phaseBit(int phase)
{
    return phase >= Winding::A && phase < Winding::Count ? Winding::Scopes(Winding::PhaseA << phase)
                                                         : Winding::Scopes();
}

} // namespace

WindingScene::WindingScene(Document *document, QObject *parent) : GeometryScene(document, group, parent)
{
    loadOwnSettings();
    WindingObject *winding = document->winding();
    connect(winding, &WindingObject::windingChanged, this, &GeometryScene::scheduleChanges);
    connect(winding, &WindingObject::layoutsChanged, this, &GeometryScene::scheduleChanges);
}

WindingScene::~WindingScene()
{
    saveSettings();
}

void WindingScene::loadSettings()
{
    GeometryScene::loadSettings();
    loadOwnSettings();
}

void WindingScene::loadOwnSettings()
{
    QSettings settings;
    settings.beginGroup(group);
    m_visibleLayouts = Winding::Scopes(settings.value(QStringLiteral("VisibleLayouts"), uint(Winding::LayoutAny)).toUInt());
    m_visiblePhases = Winding::Scopes(settings.value(QStringLiteral("VisiblePhases"), uint(Winding::PhaseAny)).toUInt());
    m_filamentsOnly = settings.value(QStringLiteral("ShowOnlyFilamens"), false).toBool();
}

void WindingScene::saveSettings() const
{
    GeometryScene::saveSettings();
    QSettings settings;
    settings.beginGroup(group);
    settings.setValue(QStringLiteral("VisibleLayouts"), uint(m_visibleLayouts));
    settings.setValue(QStringLiteral("VisiblePhases"), uint(m_visiblePhases));
    settings.setValue(QStringLiteral("ShowOnlyFilamens"), m_filamentsOnly);
}

void WindingScene::setVisibleLayouts(Winding::Scopes layouts)
{
    if (m_visibleLayouts == layouts)
        return;
    m_visibleLayouts = layouts;
    emit visibleLayoutsChanged(m_visibleLayouts);
    showVisible();
}

void WindingScene::setVisiblePhases(Winding::Scopes phases)
{
    if (m_visiblePhases == phases)
        return;
    m_visiblePhases = phases;
    emit visiblePhasesChanged(m_visiblePhases);
    showVisible();
}

void WindingScene::setShowOnlyFilaments(bool filamentsOnly)
{
    if (m_filamentsOnly == filamentsOnly)
        return;
    m_filamentsOnly = filamentsOnly;
    emit showOnlyFilamentsChanged(filamentsOnly);
    m_endturns = endturnPieces(document()->winding(), m_filamentsOnly);
    showVisible();
}

PieceList WindingScene::buildPieces()
{
    PieceList sides;
    for (const Piece &piece : document()->pieces()) {
        if (piece.kind() == AbstractMaterial::WindingKind && (Piece::Scopes(piece.scope()) & Piece::StatorMask))
            sides.append(piece);
    }
    return sides;
}

void WindingScene::createScene(const PieceList &pieces)
{
    WindingObject *winding = document()->winding();
    m_layers = std::max(1, winding->effectiveNumberLayers());
    m_marks.clear();
    for (int layout = 0; layout < winding->countLayouts(); ++layout)
        m_marks.append(winding->slotMarks(layout));
    m_coilSides = pieces;
    m_endturns = endturnPieces(winding, m_filamentsOnly);
    showVisible();
}

void WindingScene::showVisible()
{
    PieceList shown;
    for (const PieceList *list : {&m_coilSides, &m_endturns}) {
        for (const Piece &piece : *list) {
            // A coil side of no phase, in a slot the layout leaves empty, goes with its face.
            const Winding::Scopes scope = scopeOf(piece);
            const Winding::Scopes phase = scope & Winding::PhaseAny;
            if ((scope & m_visibleLayouts) && (!phase || (phase & m_visiblePhases)))
                shown.append(piece);
        }
    }
    setPieces(shown);
}

Winding::Scopes WindingScene::scopeOf(const Piece &piece) const
{
    if (const auto endturn = piece.material().dynamicCast<EndturnMaterial>())
        return layoutBit(endturn->layout()) | phaseBit(endturn->phase());
    const auto side = piece.material().dynamicCast<WindingMaterial>();
    if (!side || side->layout() < 1 || side->layout() > m_marks.size())
        return {};
    // Slots and layers of the pieces count from 1, the winding's marks from 0.
    const QVector<Winding::SlotMark> &marks = m_marks.at(side->layout() - 1);
    const int at = m_layers * (side->slot() - 1) + side->layer() - 1;
    if (at < 0 || at >= marks.size() || marks.at(at).isEmpty())
        return layoutBit(side->layout());
    return layoutBit(side->layout()) | phaseBit(marks.at(at).phase);
}

QColor WindingScene::colorOf(const Piece &piece) const
{
    const Winding::Scopes phase = scopeOf(piece) & Winding::PhaseAny;
    for (int p = Winding::A; p < Winding::Count; ++p) {
        if (phase == phaseBit(p))
            return Winding::phaseColor(Winding::Phase(p), false);
    }
    return GeometryScene::colorOf(piece);
}
