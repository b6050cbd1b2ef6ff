#include "ui/Viewer/GeometryViewer.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/Controls/MessageLabels.h"

#include "ui/Viewer/GeometryScene.h"

GeometryViewer::GeometryViewer(GeometryScene *scene, QWidget *parent)
    : occ::View(parent)
    , m_scene(scene)
    , m_progress(new QLabel(this))
    , m_errors(new ErrorLabel(this))
    , m_warnings(new WarningLabel(this))
{
    m_scene->setParent(this);
    m_progress->setObjectName(QStringLiteral("labelProgress"));
    m_progress->setStyleSheet(QStringLiteral("background-color: rgba(245, 245, 245, 160); padding: 3"));
    m_progress->move(8, 8);
    m_progress->hide();
    m_errors->setObjectName(QStringLiteral("labelErrors"));
    m_warnings->setObjectName(QStringLiteral("labelWarnings"));
    // Notes laid over the view go above the stretch; the bars stay at the bottom.
    auto *layout = new QVBoxLayout(this);
    layout->addStretch(1);
    layout->addWidget(m_errors);
    layout->addWidget(m_warnings);
    connect(m_errors, &QLabel::linkActivated, this, &GeometryViewer::errorLinkActivated);
    connect(m_warnings, &QLabel::linkActivated, this, &GeometryViewer::warningLinkActivated);
    connect(m_scene, &GeometryScene::redrawScene, this, &GeometryViewer::showScene);
    connect(m_scene, &GeometryScene::progressCreateScene, this, &GeometryViewer::showProgress);
    connect(this, &occ::View::selectionChanged, this, &GeometryViewer::selectionInView);
}

QString GeometryViewer::progressText() const
{
    return m_progress->isVisibleTo(this) ? m_progress->text() : QString();
}

void GeometryViewer::setErrorText(const QString &text)
{
    m_errors->setText(text);
    m_errors->setVisible(!text.isEmpty());
}

void GeometryViewer::setWarningText(const QString &text)
{
    m_warnings->setText(text);
    m_warnings->setVisible(!text.isEmpty());
}

QString GeometryViewer::errorText() const
{
    return m_errors->text();
}

QString GeometryViewer::warningText() const
{
    return m_warnings->text();
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
