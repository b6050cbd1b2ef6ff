#include "ui/Viewer/GeometryViewer.h"

#include <QLabel>

#include "ui/Viewer/GeometryScene.h"

GeometryViewer::GeometryViewer(GeometryScene *scene, QWidget *parent)
    : occ::View(parent)
    , m_scene(scene)
    , m_progress(new QLabel(this))
{
    m_scene->setParent(this);
    m_progress->setObjectName(QStringLiteral("labelProgress"));
    m_progress->setStyleSheet(QStringLiteral("background-color: rgba(245, 245, 245, 160); padding: 3"));
    m_progress->move(8, 8);
    m_progress->hide();
    connect(m_scene, &GeometryScene::redrawScene, this, &GeometryViewer::showScene);
    connect(m_scene, &GeometryScene::progressCreateScene, this, &GeometryViewer::showProgress);
    connect(this, &occ::View::selectionChanged, this, &GeometryViewer::selectionInView);
}

QString GeometryViewer::progressText() const
{
    return m_progress->isVisibleTo(this) ? m_progress->text() : QString();
}

void GeometryViewer::showEvent(QShowEvent *event)
{
    occ::View::showEvent(event);
    m_scene->setShown(true);
}

void GeometryViewer::hideEvent(QHideEvent *event)
{
    occ::View::hideEvent(event);
    m_scene->setShown(false);
}

void GeometryViewer::showScene()
{
    context()->RemoveAll(Standard_False);
    for (const Handle(AIS_InteractiveObject) &object : m_scene->objects())
        context()->Display(object, AIS_Shaded, 0, Standard_False);
    if (zoomAutoFit())
        fitAll();
    redraw();
}

void GeometryViewer::showProgress(const QString &text)
{
    m_progress->setText(text);
    m_progress->adjustSize();
    m_progress->setVisible(!text.isEmpty());
}

void GeometryViewer::selectionInView()
{
    context()->InitSelected();
    const Handle(AIS_InteractiveObject) object =
        context()->MoreSelected() ? context()->SelectedInteractive() : Handle(AIS_InteractiveObject)();
    emit m_scene->selectionChanged(m_scene->pieceOf(object));
}
