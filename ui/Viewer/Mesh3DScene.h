#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "meshing/VolumeMesh.h"

class Document;

// The volume mesh that the "3D mesh" views show: made when a view first needs it,
// and again after the machine or the mesh settings change.
class Mesh3DScene : public QObject
{
    Q_OBJECT
public:
    explicit Mesh3DScene(Document *document, QObject *parent = nullptr);

    // Never null; empty until made, or when netgen failed.
    std::shared_ptr<const VolumeMesh> volumeMesh() const { return m_volumeMesh; }
    bool isGenerating() const { return m_generating; }
    bool isOutdated() const { return m_outdated; }

public slots:
    // Makes the mesh when it is out of date, keeping the events going meanwhile.
    void createScene();

signals:
    void createSceneStarted();
    void createSceneFinished();
    // The step netgen is at, as "%1: %2%".
    void progressCreateScene(QString text);
    // The machine or the settings changed: a view on screen asks for the mesh again.
    void sceneOutdated();

private:
    void markOutdated();

    Document *m_document;
    std::shared_ptr<const VolumeMesh> m_volumeMesh;
    bool m_generating = false;
    bool m_outdated = true;
};
