#pragma once

#include <memory>

#include "meshing/VolumeMesh.h"
#include "ui/Viewer/View.h"

class Mesh3DScene;
class QLabel;

// The volume mesh in 3D: the triangles between its solids, and the period's
// outer boundary half transparent over them.
class Mesh3DViewer : public occ::View
{
    Q_OBJECT
public:
    explicit Mesh3DViewer(Mesh3DScene *scene, QWidget *parent = nullptr);

    QString progressText() const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void requestMesh();
    void showMesh();
    void showProgress(const QString &text);

    Mesh3DScene *m_scene;
    std::shared_ptr<const VolumeMesh> m_shownMesh;
    QLabel *m_progress;
};
