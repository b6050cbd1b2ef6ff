#include "ui/Viewer/WindingViewer.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>

#include "document/Document.h"
#include "ui/Viewer/WindingScene.h"
#include "winding/WindingObject.h"

WindingViewer::WindingViewer(WindingScene *scene, QWidget *parent)
    : GeometryViewer(scene, parent), m_panel(new QWidget(this)), m_note(new QLabel(this))
{
    m_panel->setObjectName(QStringLiteral("windingPanels"));
    m_panel->setStyleSheet(QStringLiteral("background-color: rgba(245, 245, 245, 200)"));
    auto *row = new QHBoxLayout(m_panel);
    row->setContentsMargins(6, 2, 6, 2);
    const char *phaseNames[] = {"A", "B", "C"};
    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        auto *check = new QCheckBox(tr("Phase %1").arg(QLatin1String(phaseNames[phase])), m_panel);
        check->setObjectName(QStringLiteral("checkBoxPhase%1").arg(QLatin1String(phaseNames[phase])));
        row->addWidget(check);
        m_phases << check;
    }
    row->addSpacing(12);
    for (int layout = 1; layout <= 4; ++layout) {
        auto *check = new QCheckBox(QStringLiteral("#%1").arg(layout), m_panel);
        check->setObjectName(QStringLiteral("checkBoxLayout%1").arg(layout));
        check->setToolTip(tr("Coils of stator face #%1").arg(layout));
        row->addWidget(check);
        m_layouts << check;
    }
    m_panel->adjustSize();
    m_note->setObjectName(QStringLiteral("labelWindingNote"));
    m_note->setStyleSheet(QStringLiteral("background-color: rgba(255, 252, 207, 220); padding: 4; font-size: 14pt"));
    m_note->hide();

    for (QCheckBox *check : m_phases + m_layouts)
        connect(check, &QCheckBox::toggled, this, &WindingViewer::checkToggled);
    connect(scene, &WindingScene::visiblePhasesChanged, this, &WindingViewer::showChecks);
    connect(scene, &WindingScene::visibleLayoutsChanged, this, &WindingViewer::showChecks);
    connect(scene->document()->winding(), &WindingObject::countLayoutsChanged, this, &WindingViewer::showChecks);
    showChecks();
}

WindingScene *WindingViewer::windingScene() const
{
    return static_cast<WindingScene *>(scene());
}

QString WindingViewer::note() const
{
    return m_note->isVisibleTo(this) ? m_note->text() : QString();
}

void WindingViewer::showChecks()
{
    const WindingScene *shown = windingScene();
    const int layouts = shown->document()->winding()->countLayouts();
    for (int phase = 0; phase < m_phases.size(); ++phase) {
        const QSignalBlocker blocker(m_phases[phase]);
        m_phases[phase]->setChecked(shown->visiblePhases() & (Winding::PhaseA << phase));
    }
    for (int layout = 0; layout < m_layouts.size(); ++layout) {
        const QSignalBlocker blocker(m_layouts[layout]);
        m_layouts[layout]->setChecked(shown->visibleLayouts() & (Winding::Layout1 << layout));
        m_layouts[layout]->setVisible(layouts > 1 && layout < layouts);
    }
    m_panel->adjustSize();
    showNote();
}

void WindingViewer::checkToggled()
{
    Winding::Scopes phases;
    for (int phase = 0; phase < m_phases.size(); ++phase) {
        if (m_phases[phase]->isChecked())
            phases |= Winding::Scope(Winding::PhaseA << phase);
    }
    Winding::Scopes layouts;
    for (int layout = 0; layout < m_layouts.size(); ++layout) {
        if (m_layouts[layout]->isChecked())
            layouts |= Winding::Scope(Winding::Layout1 << layout);
    }
    windingScene()->setVisiblePhases(phases);
    windingScene()->setVisibleLayouts(layouts);
    showNote();
}

void WindingViewer::showNote()
{
    const WindingScene *shown = windingScene();
    const bool noPhase = !(shown->visiblePhases() & Winding::PhaseAny);
    const bool noLayout = !(shown->visibleLayouts() & Winding::LayoutAny);
    QString text;
    if (noPhase && noLayout)
        text = tr(" All phases and layers are off ");
    else if (noPhase)
        text = tr(" All phases are off ");
    else if (noLayout)
        text = tr(" All layouts are off ");
    m_note->setText(text);
    m_note->adjustSize();
    m_note->setVisible(!text.isEmpty());
    m_note->move((width() - m_note->width()) / 2, 20);
}

void WindingViewer::resizeEvent(QResizeEvent *event)
{
    GeometryViewer::resizeEvent(event);
    m_panel->move(8, height() - m_panel->height() - 8);
    m_note->move((width() - m_note->width()) / 2, 20);
}
