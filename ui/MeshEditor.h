#pragma once

#include <QWidget>

#include "ui/MeshViewer.h"

class Document;
class PropertyRows;
class QLabel;

// The settings of the 2D and 3D meshes, each change through the undo stack, and the
// counts of the model on view.
class MeshEditor : public QWidget
{
    Q_OBJECT
public:
    explicit MeshEditor(Document *document, QWidget *parent = nullptr);

public slots:
    void showCounts(const MeshScene::Counts &counts);

private:
    void updateUI();

    Document *m_document;
    PropertyRows *m_meshRows = nullptr;
    PropertyRows *m_documentRows = nullptr;
    PropertyRows *m_airgapRows = nullptr;
    PropertyRows *m_cylinderRows = nullptr;
    QLabel *m_vertices = nullptr;
    QLabel *m_edges = nullptr;
    QLabel *m_triangles = nullptr;
};
