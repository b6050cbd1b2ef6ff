#include "ui/MaterialsPanel.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QVBoxLayout>

#include "ui/MaterialWeightWidget.h"
#include "ui/MaterialsWidget.h"
#include "ui/Viewer/ElementScenes.h"
#include "ui/Viewer/GeometryScene.h"

namespace {

struct Visibility
{
    MaterialsWidget::RowId row;
    void (MaterialsWidget::*toggled)(bool);
    const char *key;
};

const Visibility visibilities[] = {
    {MaterialsWidget::General, &MaterialsWidget::buttonMaterialGeneralToggled, "VisibleGeneral"},
    {MaterialsWidget::StatorIron, &MaterialsWidget::buttonMaterialStatorIronToggled, "VisibleStatorIron"},
    {MaterialsWidget::StatorWinding, &MaterialsWidget::buttonMaterialStatorWindingToggled, "VisibleStatorWinding"},
    {MaterialsWidget::StatorEndturn, &MaterialsWidget::buttonMaterialStatorEndturnToggled, "VisibleStatorEndturn"},
    {MaterialsWidget::RotorIron, &MaterialsWidget::buttonMaterialRotorIronToggled, "VisibleRotorIron"},
    {MaterialsWidget::RotorConductor, &MaterialsWidget::buttonMaterialRotorConductorToggled, "VisibleRotorConductor"},
    {MaterialsWidget::RotorMagnet, &MaterialsWidget::buttonMaterialRotorMagnetToggled, "VisibleRotorMagnet"},
};

} // namespace

MaterialsPanel::MaterialsPanel(Document *document, GeometryScene *scene, QWidget *parent)
    : QWidget(parent), m_materials(new MaterialsWidget(this)), m_weight(new MaterialWeightWidget(this))
{
    setObjectName(QStringLiteral("materialsPanel"));
    m_materials->setObjectName(QStringLiteral("widgetMaterials"));
    m_weight->setObjectName(QStringLiteral("widgetMaterialWeight"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_materials, 1);
    layout->addWidget(sectionsOf(scene));
    layout->addWidget(m_weight);

    m_materials->setDocument(document);
    m_weight->setDocument(document);
    for (const Visibility &visibility : visibilities) {
        const QString key = QLatin1String(visibility.key);
        m_materials->setRowChecked(visibility.row, scene->isMaterialVisible(key));
        connect(m_materials, visibility.toggled, scene, [scene, key](bool on) { scene->setMaterialVisible(key, on); });
    }
    connect(scene, &GeometryScene::redrawScene, m_materials, [this, scene] { m_materials->setPieces(scene->pieces()); });
    connect(scene, &GeometryScene::selectionChanged, m_materials, &MaterialsWidget::setSelection);
    if (auto *motor = qobject_cast<MotorGeometryScene *>(scene)) {
        connect(m_materials, &MaterialsWidget::hightlightWindingPhasesToggled, motor,
                &MotorGeometryScene::setHighlightPhases);
        connect(m_materials, &MaterialsWidget::showOnlyFilamentsToggled, motor, &MotorGeometryScene::setFilamentsOnly);
    }
    m_materials->setPieces(scene->pieces());
}

QWidget *MaterialsPanel::sectionsOf(GeometryScene *scene)
{
    auto *box = new QGroupBox(tr("Analysis sections"), this);
    box->setObjectName(QStringLiteral("groupBoxSections"));
    auto *layout = new QVBoxLayout(box);
    const auto addCheckBox = [box, layout](const char *name, const QString &text, bool checked) {
        auto *check = new QCheckBox(text, box);
        check->setObjectName(QLatin1String(name));
        check->setChecked(checked);
        layout->addWidget(check);
        return check;
    };
    QCheckBox *borders = addCheckBox("checkBoxShowSlicePlanes", tr("Slice borders"), scene->showSlicePlanes());
    connect(borders, &QCheckBox::toggled, scene, &GeometryScene::setShowSlicePlanes);
    if (auto *motor = qobject_cast<MotorGeometryScene *>(scene)) {
        QCheckBox *cuts = addCheckBox("checkBoxShowSectionCylindrical", tr("Cylindrical sections of the slices"),
                                      motor->showSectionCylindrical());
        connect(cuts, &QCheckBox::toggled, motor, &MotorGeometryScene::setShowSectionCylindrical);
        QCheckBox *radial = addCheckBox("checkBoxShowSectionRadial", tr("Radial section"), motor->showSectionRadial());
        connect(radial, &QCheckBox::toggled, motor, &MotorGeometryScene::setShowSectionRadial);
    }
    return box;
}
