#pragma once

#include "ui/PageViewer.h"

class Document;
class Mesh3DScene;
class Mesh3DViewer;
class MeshNetgenViewer;
class MeshViewer;
class QTabWidget;

// The mesh page: the 2D meshes of the slices and the radial model, and the 3D mesh.
class MeshPageViewer : public PageViewer
{
    Q_OBJECT
public:
    explicit MeshPageViewer(Document *document, QWidget *parent = nullptr);

    // The view of the visible tab.
    ZoomableView *zoomableView() override;
    MeshViewer *meshViewer() const { return m_meshViewer; }
    QTabWidget *tabs() const { return m_tabs; }
    // The tabs "Flat view" and "3D view" of the volume mesh.
    QTabWidget *volumeTabs() const { return m_volumeTabs; }
    MeshNetgenViewer *flatViewer() const { return m_flatViewer; }
    // Null where no 3D view can be drawn.
    Mesh3DViewer *volumeViewer() const { return m_volumeViewer; }

private:
    QTabWidget *m_tabs;
    MeshViewer *m_meshViewer;
    Mesh3DScene *m_volumeScene;
    QTabWidget *m_volumeTabs;
    MeshNetgenViewer *m_flatViewer;
    Mesh3DViewer *m_volumeViewer = nullptr;
    NoZoomableView m_noZoom;
};
