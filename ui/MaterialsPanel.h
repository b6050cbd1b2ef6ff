#pragma once

#include <QWidget>

class Document;
class GeometryScene;
class MaterialsWidget;
class MaterialWeightWidget;

// The side panel of a 3D view: the materials of the shown pieces, whose buttons show
// and hide them in the scene, and the mass of the machine.
class MaterialsPanel : public QWidget
{
    Q_OBJECT
public:
    MaterialsPanel(Document *document, GeometryScene *scene, QWidget *parent = nullptr);

    MaterialsWidget *materialsWidget() const { return m_materials; }
    MaterialWeightWidget *weightWidget() const { return m_weight; }

private:
    // Where the analysis cuts the machine, shown over the scene on request.
    QWidget *sectionsOf(GeometryScene *scene);

    MaterialsWidget *m_materials;
    MaterialWeightWidget *m_weight;
};
