#include "ui/Viewer/Mesh3DViewer.h"

#include <Graphic3d_MaterialAspect.hxx>
#include <MeshVS_DisplayModeFlags.hxx>
#include <MeshVS_Drawer.hxx>
#include <MeshVS_DrawerAttribute.hxx>
#include <MeshVS_Mesh.hxx>
#include <MeshVS_MeshPrsBuilder.hxx>
#include <QLabel>
#include <QTimer>
#include <vector>

#include "ui/Viewer/Mesh3DScene.h"
#include "ui/Viewer/VolumeMeshSource.h"

namespace {

constexpr double boundaryTransparency = 0.5;

Handle(MeshVS_Mesh) presentationOf(const std::shared_ptr<const VolumeMesh> &mesh, std::vector<int> triangles,
                                   Quantity_NameOfColor colour, double transparency)
{
    Handle(MeshVS_Mesh) presentation = new MeshVS_Mesh();
    presentation->SetDataSource(new VolumeMeshSource(mesh, std::move(triangles)));
    presentation->AddBuilder(new MeshVS_MeshPrsBuilder(presentation), Standard_True);
    const Handle(MeshVS_Drawer) &drawer = presentation->GetDrawer();
    drawer->SetBoolean(MeshVS_DA_DisplayNodes, Standard_False);
    drawer->SetBoolean(MeshVS_DA_ShowEdges, Standard_True);
    drawer->SetColor(MeshVS_DA_InteriorColor, colour);
    // The mesh presentation takes its transparency from its materials alone.
    Graphic3d_MaterialAspect material(Graphic3d_NameOfMaterial_Plastified);
    material.SetTransparency(float(transparency));
    drawer->SetMaterial(MeshVS_DA_FrontMaterial, material);
    drawer->SetMaterial(MeshVS_DA_BackMaterial, material);
    presentation->SetDisplayMode(MeshVS_DMF_Shading);
    return presentation;
}

} // namespace

Mesh3DViewer::Mesh3DViewer(Mesh3DScene *scene, QWidget *parent)
    : occ::View(parent)
    , m_scene(scene)
    , m_progress(new QLabel(this))
{
    setObjectName(QStringLiteral("Mesh3DViewer"));
    m_progress->setObjectName(QStringLiteral("labelProgress"));
    m_progress->setStyleSheet(QStringLiteral("background-color: rgba(245, 245, 245, 160); padding: 3"));
    m_progress->move(8, 8);
    m_progress->hide();
    connect(m_scene, &Mesh3DScene::createSceneStarted, this, [this] { showProgress(tr("Generating 3D mesh...")); });
    connect(m_scene, &Mesh3DScene::progressCreateScene, this, &Mesh3DViewer::showProgress);
    connect(m_scene, &Mesh3DScene::createSceneFinished, this, &Mesh3DViewer::showMesh);
    connect(m_scene, &Mesh3DScene::sceneOutdated, this, [this] {
        if (isVisible())
            requestMesh();
    });
}

QString Mesh3DViewer::progressText() const
{
    return m_progress->isVisibleTo(this) ? m_progress->text() : QString();
}

void Mesh3DViewer::showEvent(QShowEvent *event)
{
    occ::View::showEvent(event);
    // The other view may have had the mesh made already.
    if (!m_scene->isOutdated() && !m_scene->isGenerating() && m_shownMesh != m_scene->volumeMesh())
        showMesh();
    requestMesh();
}

void Mesh3DViewer::requestMesh()
{
    // Once control is back in the event loop: the mesh is made in a loop of its own.
    QTimer::singleShot(0, m_scene, &Mesh3DScene::createScene);
}

void Mesh3DViewer::showMesh()
{
    showProgress(QString());
    context()->RemoveAll(Standard_False);
    const std::shared_ptr<const VolumeMesh> mesh = m_scene->volumeMesh();
    m_shownMesh = mesh;
    std::vector<int> inner;
    std::vector<int> boundary;
    for (std::size_t i = 0; i < mesh->triangles.size(); ++i) {
        const VolumeMesh::Triangle &triangle = mesh->triangles[i];
        const bool outer = triangle.domainInside == 0 || triangle.domainOutside == 0;
        (outer ? boundary : inner).push_back(int(i));
    }
    if (!inner.empty())
        context()->Display(presentationOf(mesh, std::move(inner), Quantity_NOC_ORANGE, 0.0), Standard_False);
    if (!boundary.empty()) {
        context()->Display(presentationOf(mesh, std::move(boundary), Quantity_NOC_LIGHTBLUE, boundaryTransparency),
                           Standard_False);
    }
    if (zoomAutoFit())
        fitAll();
    redraw();
}

void Mesh3DViewer::showProgress(const QString &text)
{
    m_progress->setText(text);
    m_progress->adjustSize();
    m_progress->setVisible(!text.isEmpty());
}
