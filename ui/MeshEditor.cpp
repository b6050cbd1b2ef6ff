#include "ui/MeshEditor.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "meshing/Mesh.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/ModelComboBoxes.h"
#include "ui/PropertyRows.h"

MeshEditor::MeshEditor(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
{
    setObjectName(QStringLiteral("MeshEditor"));
    Mesh *mesh = document->mesh();
    Airgap *gap = document->airgap(Airgap::ID1);
    const auto undoable = [document](QObject *target) {
        return [document, target](const QString &name, const QVariant &value) {
            document->setPropertyUndoable(target, name, value);
        };
    };

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    auto *settings = new QWidget(this);
    auto *grid = new QGridLayout(settings);
    grid->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(settings);

    m_meshRows = new PropertyRows(mesh, grid, undoable(mesh), this);
    QVector<int> slices;
    for (int count = 1; count <= 20; ++count)
        slices.append(count);
    auto *numberSlices = new CountComboBox(slices, settings);
    m_meshRows->addCombo(tr("Number of cylindrical slices:"), "numberSlices", numberSlices, QString(),
                         tr("The simulation time is proportional to the number of cylindrical slices. \n"
                            "The minimum number of cylindrical slices is 1 ..."));
    numberSlices->setObjectName(QStringLiteral("comboBoxMeshSlices"));
    NumberEdit *sizeBound = m_meshRows->addNumber(tr("Maximum triangle side (mm):"), "sizeBound", QString(),
                                                  tr("The upper bound of length of the longest triangle side"));
    sizeBound->setObjectName(QStringLiteral("editSizeBound"));
    QCheckBox *autoSize = m_meshRows->addCheck(tr("/ Auto"), "autoSizeBound");
    autoSize->setToolTip(tr("Calculate maximum triangle side automatically"));

    m_documentRows = new PropertyRows(document, grid, undoable(document), this);
    auto *condition = new BoundaryConditionComboBox(settings);
    m_documentRows->addCombo(tr("Boundary conditions:"), "boundaryCondition", condition, QString(), QString());
    m_documentRows->addButton("boundaryCondition", tr("Auto"), tr("Assign best possible boundary conditions automatically"),
                              [document] {
                                  document->setPropertyUndoable(document, QStringLiteral("boundaryConditionMode"),
                                                                QVariant::fromValue(Document::Automatic));
                              })
        ->setObjectName(QStringLiteral("buttonAuto"));

    m_airgapRows = new PropertyRows(gap, grid, undoable(gap), this);
    auto *layers = new CountComboBox({3, 5, 7, 9}, settings);
    m_airgapRows->addCombo(tr("Number of layers in air gap:"), "numberLayers", layers, QString(), QString());
    layers->setObjectName(QStringLiteral("comboBoxNumberLayersAirgap"));
    m_meshRows->addCombo(tr("Air gap mesh quality:"), "airgapQuality", new AirgapMeshQualityComboBox(settings),
                         QString(), QString());

    auto *cylinder = new QGroupBox(tr("3D Bounding Cylinder"), this);
    m_cylinderRows = new PropertyRows(mesh, new QGridLayout(cylinder), undoable(mesh), this);
    m_cylinderRows->addNumber(tr("Radius extension (mm):"), "boundCylinderRadius", QString(), QString())
        ->setObjectName(QStringLiteral("editBoundCylinderRadius"));
    m_cylinderRows->addNumber(tr("Axial extension (mm):"), "boundCylinderAxialExtension", QString(), QString())
        ->setObjectName(QStringLiteral("editBoundCylinderAxialExtension"));
    layout->addWidget(cylinder);

    auto *statistics = new QGroupBox(tr("Mesh Statistics"), this);
    auto *counts = new QGridLayout(statistics);
    const auto addCount = [statistics, counts](const QString &label, const char *name) {
        const int row = counts->rowCount();
        counts->addWidget(new QLabel(label, statistics), row, 0);
        auto *value = new QLabel(QStringLiteral("0"), statistics);
        value->setObjectName(QLatin1String(name));
        counts->addWidget(value, row, 1);
        return value;
    };
    m_vertices = addCount(tr("Vertices:"), "labelVertices");
    m_edges = addCount(tr("Edges:"), "labelEdges");
    m_triangles = addCount(tr("Triangles:"), "labelTriangles");
    layout->addWidget(statistics);
    layout->addStretch();

    connect(mesh, &Mesh::meshChanged, this, &MeshEditor::updateUI);
    for (auto signal : {&Mesh::autoSizeBoundChanged, &Mesh::sizeBoundChanged, &Mesh::airgapQualityChanged,
                        &Mesh::numberSlicesChanged, &Mesh::boundCylinderRadiusChanged,
                        &Mesh::boundCylinderAxialExtensionChanged})
        connect(mesh, signal, this, &MeshEditor::updateUI);
    connect(gap, &Airgap::numberLayersChanged, this, &MeshEditor::updateUI);
    connect(document, &Document::boundaryConditionChanged, this, &MeshEditor::updateUI);
    connect(document, &Document::boundaryConditionModeChanged, this, &MeshEditor::updateUI);
    connect(document, &Document::readonlyChanged, this, &MeshEditor::updateUI);
    connect(document, &Document::documentLoaded, this, &MeshEditor::updateUI);
    connect(document->analysis(), &MagnetostaticAnalysis::runningChanged, this, &MeshEditor::updateUI);
    updateUI();
}

void MeshEditor::showCounts(const MeshScene::Counts &counts)
{
    m_vertices->setText(QString::number(counts.vertices));
    m_edges->setText(QString::number(counts.edges));
    m_triangles->setText(QString::number(counts.triangles));
}

void MeshEditor::updateUI()
{
    for (PropertyRows *rows : {m_meshRows, m_documentRows, m_airgapRows, m_cylinderRows})
        rows->update();
    setEnabled(!m_document->isReadonly() && !m_document->analysis()->isRunning());
    // An automatic size follows the machine; the field only shows it.
    for (QWidget *widget : m_meshRows->row("sizeBound")) {
        if (auto *edit = qobject_cast<NumberEdit *>(widget))
            edit->setReadOnly(m_document->mesh()->autoSizeBound());
    }
}
