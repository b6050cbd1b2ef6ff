#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "meshing/NetgenMesher.h"
#include "meshing/ShapeList.h"
#include "meshing/VolumeMesh.h"

class Mesh;

// The volume mesh of one period of the machine, made by netgen. It is shown
// only: no file holds it.
class Mesh3D : public QObject
{
    Q_OBJECT

public:
    explicit Mesh3D(Mesh *mesh);

    // The solids of one period of the document's machine: the pieces of every
    // active body within the sector, and each body's air.
    ShapeList periodShapes() const;
    // What netgen is asked for at the size bound.
    static VolumeMeshParameters meshingParameters(double sizeBound);
    // Meshes the shapes at the mesh's size bound on a worker, while the caller's
    // events go on, and reports the progress. An empty mesh when netgen fails.
    std::shared_ptr<VolumeMesh> createMesh(const ShapeList &shapes);
    // The work of createMesh; null, with the failure written to the console,
    // when netgen fails.
    std::shared_ptr<VolumeMesh> meshingTask(const ShapeList &shapes, const VolumeMeshParameters &parameters) const;

signals:
    void progressCreateMesh(QString text, int percent);

private:
    Mesh *m_mesh;
};
