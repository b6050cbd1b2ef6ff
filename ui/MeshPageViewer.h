#pragma once

#include "ui/PageViewer.h"

class Document;
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

private:
    QTabWidget *m_tabs;
    MeshViewer *m_meshViewer;
    NoZoomableView m_noZoom;
};
