#include "ui/MeshNetgenViewer.h"

#include <QGraphicsPathItem>
#include <QGraphicsScene>
#include <QLabel>
#include <QPainterPath>
#include <QPen>
#include <QTimer>

#include "ui/Viewer/Mesh3DScene.h"

MeshNetgenViewer::MeshNetgenViewer(Mesh3DScene *scene, QWidget *parent)
    : RuleZoomViewer(parent)
    , m_scene(scene)
    , m_flatScene(new QGraphicsScene(this))
    , m_generating(new QLabel(tr("Generating 3D flat mesh..."), this))
{
    setObjectName(QStringLiteral("MeshNetgenViewer"));
    setScene(m_flatScene);
    m_generating->setObjectName(QStringLiteral("labelGenerating"));
    m_generating->setStyleSheet(QStringLiteral("background-color: rgba(245, 245, 245, 160); padding: 3"));
    m_generating->move(8, 8);
    m_generating->hide();
    connect(m_scene, &Mesh3DScene::createSceneStarted, m_generating, &QWidget::show);
    connect(m_scene, &Mesh3DScene::createSceneFinished, this, &MeshNetgenViewer::showMesh);
    connect(m_scene, &Mesh3DScene::sceneOutdated, this, [this] {
        if (isVisible())
            requestMesh();
    });
}

void MeshNetgenViewer::showEvent(QShowEvent *event)
{
    RuleZoomViewer::showEvent(event);
    // The other view may have had the mesh made already.
    if (!m_scene->isOutdated() && !m_scene->isGenerating() && m_shownMesh != m_scene->volumeMesh())
        showMesh();
    requestMesh();
}

void MeshNetgenViewer::requestMesh()
{
    // Once control is back in the event loop: the mesh is made in a loop of its own.
    QTimer::singleShot(0, m_scene, &Mesh3DScene::createScene);
}

void MeshNetgenViewer::showMesh()
{
    m_generating->hide();
    m_flatScene->clear();
    const std::shared_ptr<const VolumeMesh> mesh = m_scene->volumeMesh();
    m_shownMesh = mesh;
    QPainterPath edges;
    for (const VolumeMesh::Triangle &triangle : mesh->triangles) {
        const servoce::point3 &first = mesh->points[triangle.vertices[0]];
        edges.moveTo(first.x, first.y);
        for (int corner : {1, 2, 0}) {
            const servoce::point3 &point = mesh->points[triangle.vertices[corner]];
            edges.lineTo(point.x, point.y);
        }
    }
    QPen pen(Qt::darkBlue);
    pen.setCosmetic(true);
    m_flatScene->addPath(edges, pen);
    m_flatScene->setSceneRect(m_flatScene->itemsBoundingRect());
    if (zoomAutoFit())
        zoomFit();
}
