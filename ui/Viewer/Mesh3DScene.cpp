#include "ui/Viewer/Mesh3DScene.h"

#include "document/Document.h"
#include "meshing/Mesh.h"
#include "meshing/Mesh3D.h"

Mesh3DScene::Mesh3DScene(Document *document, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_volumeMesh(std::make_shared<VolumeMesh>())
{
    connect(document, &Document::geometryChanged, this, &Mesh3DScene::markOutdated);
    connect(document, &Document::periodicityChanged, this, &Mesh3DScene::markOutdated);
    connect(document->mesh(), &Mesh::meshChanged, this, &Mesh3DScene::markOutdated);
    connect(document->mesh()->mesh3D(), &Mesh3D::progressCreateMesh, this, [this](const QString &task, int percent) {
        emit progressCreateScene(tr("%1: %2%").arg(task).arg(percent));
    });
}

void Mesh3DScene::createScene()
{
    // The mesh is made in a local event loop, where a view may ask again.
    if (m_generating || !m_outdated)
        return;
    m_generating = true;
    m_outdated = false;
    emit createSceneStarted();
    Mesh3D *mesh3D = m_document->mesh()->mesh3D();
    m_volumeMesh = mesh3D->createMesh(mesh3D->periodShapes());
    m_generating = false;
    emit createSceneFinished();
    // A change while netgen ran leaves this mesh stale.
    if (m_outdated)
        emit sceneOutdated();
}

void Mesh3DScene::markOutdated()
{
    m_outdated = true;
    emit sceneOutdated();
}
