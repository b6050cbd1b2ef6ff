#pragma once

#include <memory>

#include "meshing/VolumeMesh.h"
#include "ui/RuleZoomViewer.h"

class Mesh3DScene;
class QGraphicsScene;
class QLabel;

// The volume mesh seen flat, from above: the edges of its boundary triangles
// projected on the plane of the axis' normal.
class MeshNetgenViewer : public RuleZoomViewer
{
    Q_OBJECT
public:
    MeshNetgenViewer(Mesh3DScene *scene, QWidget *parent = nullptr);

    QGraphicsScene *flatScene() const { return m_flatScene; }

protected:
    void showEvent(QShowEvent *event) override;

private:
    void requestMesh();
    void showMesh();

    Mesh3DScene *m_scene;
    std::shared_ptr<const VolumeMesh> m_shownMesh;
    QGraphicsScene *m_flatScene;
    QLabel *m_generating;
};
