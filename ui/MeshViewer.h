#pragma once

#include <QGraphicsScene>
#include <QWidget>

#include "ui/GraphicsMeshItem.h"

class Document;
struct GeometryData;
class QCheckBox;
class QComboBox;
class QLabel;
class RuleZoomViewer;

// The regions and triangles of one model, slice or radial, with the y axis up.
class MeshScene : public QGraphicsScene
{
    Q_OBJECT
public:
    struct Counts
    {
        int vertices = 0;
        int edges = 0;
        int triangles = 0;
    };

    explicit MeshScene(QObject *parent = nullptr);

    // Replaces what the scene shows; materials colour the regions when asked.
    void showModel(const GeometryData &geometry, const CDT &mesh, bool materials);
    void setSwitches(const GraphicsMeshItem::Switches &switches, bool problems);
    Counts counts() const { return m_counts; }
    // A tint over the view while the model is in error.
    void setErrorFlag(bool error);
    // What the region at a point of the scene is made of; empty outside every region.
    QString regionAt(const QPointF &point) const;

signals:
    void regionClicked(const QString &text);

protected:
    void drawForeground(QPainter *painter, const QRectF &rect) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;

private:
    GraphicsMeshItem *m_meshItem = nullptr;
    QList<QGraphicsItem *> m_problemItems;
    Counts m_counts;
    bool m_error = false;
};

// The 2D mesh tab: the model chosen in a combo box, in a zoomable view, with switches
// of what is drawn. The mesh is made when it is shown and out of date.
class MeshViewer : public QWidget
{
    Q_OBJECT
public:
    explicit MeshViewer(Document *document, QWidget *parent = nullptr);

    RuleZoomViewer *view() const { return m_view; }
    MeshScene *scene() const { return m_scene; }
    QComboBox *models() const { return m_models; }
    QLabel *regionLabel() const { return m_region; }
    // The switches of what is drawn, for the page to place beside the view.
    QWidget *switches() const { return m_switches; }

signals:
    void countsChanged(const MeshScene::Counts &counts);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QCheckBox *addSwitch(const QString &text, const QString &key, bool checked);
    void fillModels();
    void requestMesh();
    void showModel();
    void applySwitches();

    Document *m_document;
    QComboBox *m_models;
    RuleZoomViewer *m_view;
    MeshScene *m_scene;
    QLabel *m_generating;
    QLabel *m_region;
    QWidget *m_switches;
    QCheckBox *m_edges = nullptr;
    QCheckBox *m_nodes = nullptr;
    QCheckBox *m_constraints = nullptr;
    QCheckBox *m_problems = nullptr;
    QCheckBox *m_materials = nullptr;
    bool m_meshRequested = false;
};

Q_DECLARE_METATYPE(MeshScene::Counts)
