#include "ui/MaterialsWidget.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "document/CommandSetPropertyObject.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/BasicMaterials.h"
#include "materials/MagnetMaterial.h"
#include "materials/WindingMaterial.h"
#include "meshing/Mesh.h"
#include "ui/MaterialRowWidgets.h"

namespace {

struct RowSpec
{
    const char *button;
    const char *caption;
    qint32 kind;
    Piece::Scope scopeMask; // Empty: a piece of any body
    const char *frame;
    void (MaterialsWidget::*toggled)(bool);
};

const RowSpec rowSpecs[MaterialsWidget::RowCount] = {
    {"buttonGeneral", QT_TRANSLATE_NOOP("MaterialsWidget", "General"), AbstractMaterial::GeneralKind, Piece::Empty,
     "frameGeneral", &MaterialsWidget::buttonMaterialGeneralToggled},
    {"buttonStatorIron", QT_TRANSLATE_NOOP("MaterialsWidget", "Iron (stator)"), AbstractMaterial::IronKind,
     Piece::StatorMask, "frameStatorIron", &MaterialsWidget::buttonMaterialStatorIronToggled},
    {"buttonStatorWinding", QT_TRANSLATE_NOOP("MaterialsWidget", "Winding (stator)"), AbstractMaterial::WindingKind,
     Piece::StatorMask, "frameStatorWinding", &MaterialsWidget::buttonMaterialStatorWindingToggled},
    {"buttonStatorEndturn", QT_TRANSLATE_NOOP("MaterialsWidget", "End winding (stator)"),
     AbstractMaterial::EndturnKind, Piece::StatorMask, "frameStatorEndturn",
     &MaterialsWidget::buttonMaterialStatorEndturnToggled},
    {"buttonRotorIron", QT_TRANSLATE_NOOP("MaterialsWidget", "Iron (rotor)"), AbstractMaterial::IronKind,
     Piece::RotorMask, "frameRotorIron", &MaterialsWidget::buttonMaterialRotorIronToggled},
    {"buttonRotorConductor", QT_TRANSLATE_NOOP("MaterialsWidget", "Conductor (rotor)"), AbstractMaterial::ConductorKind,
     Piece::RotorMask, "frameRotorConductor", &MaterialsWidget::buttonMaterialRotorConductorToggled},
    {"buttonRotorMagnet", QT_TRANSLATE_NOOP("MaterialsWidget", "Magnet (rotor)"), AbstractMaterial::MagnetKind,
     Piece::RotorMask, "frameRotorMagnet", &MaterialsWidget::buttonMaterialRotorMagnetToggled},
};

const QString buttonStyle = QStringLiteral("QCheckBox {padding-left : 6px;}\n"
                                           "QCheckBox:checked { background-color:  rgb(204, 228, 247); }\n");

// A scope belongs to a body when it is set and lies within that body's mask.
bool within(Piece::Scope scope, Piece::Scope mask)
{
    return scope != Piece::Empty && !(Piece::Scopes(scope) & ~Piece::Scopes(mask));
}

QPixmap legendOf(qint32 kind)
{
    const int size = 20;
    switch (kind) {
    case AbstractMaterial::GeneralKind:
        return pixmapOf(GeneralMaterial(), size);
    case AbstractMaterial::IronKind:
        return pixmapOf(IronMaterial(), size);
    case AbstractMaterial::WindingKind:
        return pixmapOf(WindingMaterial(), size);
    case AbstractMaterial::EndturnKind:
        return pixmapOf(EndturnMaterial(), size);
    case AbstractMaterial::ConductorKind:
        return pixmapOf(ConductorMaterial(), size);
    default:
        return pixmapOf(MagnetParallelMaterial(), size);
    }
}

QLabel *newLabel(QWidget *parent, const char *name, const QString &text)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

} // namespace

MaterialsWidget::MaterialsWidget(QWidget *parent) : QWidget(parent)
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *legend = new QHBoxLayout;
    legend->addWidget(newLabel(this, "labelMaterialsLegend", tr("Materials:")));
    legend->addStretch();
    m_buttonShowAll = new QPushButton(tr("Show all"), this);
    m_buttonShowAll->setObjectName(QStringLiteral("buttonShowAll"));
    m_buttonShowAll->setToolTip(tr("Show all materials"));
    legend->addWidget(m_buttonShowAll);
    outer->addLayout(legend);

    m_scrollArea = new QScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("scrollArea"));
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setWidget(new QWidget(m_scrollArea));
    new QVBoxLayout(m_scrollArea->widget());
    outer->addWidget(m_scrollArea, 1);

    createRows();
    // The rows are narrow enough to stand whole beside the view: no sideways scrolling.
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setMinimumWidth(m_scrollArea->widget()->minimumSizeHint().width() +
                                  m_scrollArea->verticalScrollBar()->sizeHint().width() +
                                  2 * m_scrollArea->frameWidth());
    connect(m_buttonShowAll, &QPushButton::clicked, this, &MaterialsWidget::showAllRows);
    for (int row = 0; row < RowCount; ++row)
        rowToggled(RowId(row), true);
    setPieces({});
    updateEnabled();
}

QFrame *MaterialsWidget::addRow(RowId id, QWidget *widget)
{
    const RowSpec &spec = rowSpecs[id];
    QWidget *content = m_scrollArea->widget();
    Row &row = m_rows[id];
    row.button = new QCheckBox(tr(spec.caption), content);
    row.button->setObjectName(QLatin1String(spec.button));
    row.button->setStyleSheet(buttonStyle);
    row.button->setIcon(QIcon(QStringLiteral(":/sphere.png")));
    row.button->setIconSize(QSize(20, 20));
    row.button->setChecked(true);
    row.frame = new QFrame(content);
    row.frame->setObjectName(QLatin1String(spec.frame));
    auto *frameLayout = new QVBoxLayout(row.frame);
    if (widget) {
        widget->setParent(row.frame);
        frameLayout->addWidget(widget);
    }
    row.widget = widget;
    content->layout()->addWidget(row.button);
    content->layout()->addWidget(row.frame);
    connect(row.button, &QCheckBox::toggled, this, [this, id](bool checked) { rowToggled(id, checked); });
    return row.frame;
}

void MaterialsWidget::createRows()
{
    addRow(General, nullptr);

    m_statorIron = new MaterialIronWidget;
    m_statorIron->setObjectName(QStringLiteral("widgetStatorIron"));
    addRow(StatorIron, m_statorIron);

    m_statorWinding = new MaterialConductorWidget;
    m_statorWinding->setObjectName(QStringLiteral("widgetStatorWinding"));
    QFrame *windingFrame = addRow(StatorWinding, m_statorWinding);
    auto *layerRow = new QHBoxLayout;
    m_labelStatorWindingLayer = newLabel(windingFrame, "labelStatorWindingLayer", tr(" Layout / Slot / Layer:"));
    m_valueStatorWindingLayer = newLabel(windingFrame, "valueStatorWindingLayer", tr("<layout / slot / layer>"));
    layerRow->addWidget(m_labelStatorWindingLayer);
    // The value is short; its placeholder must not widen the panel.
    m_valueStatorWindingLayer->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layerRow->addWidget(m_valueStatorWindingLayer, 1);
    static_cast<QVBoxLayout *>(windingFrame->layout())->addLayout(layerRow);

    auto *endturns = new QWidget;
    endturns->setObjectName(QStringLiteral("widgetStatorEndturn"));
    auto *endturnLayout = new QVBoxLayout(endturns);
    endturnLayout->setContentsMargins(0, 0, 0, 0);
    auto *highlight = new QCheckBox(tr("Highlight winding phases"), endturns);
    highlight->setObjectName(QStringLiteral("checkBoxHightlightWindingPhases"));
    auto *filaments = new QCheckBox(tr("Show filaments only"), endturns);
    filaments->setObjectName(QStringLiteral("checkBoxShowOnlyFilaments"));
    endturnLayout->addWidget(highlight);
    endturnLayout->addWidget(filaments);
    connect(highlight, &QCheckBox::toggled, this, &MaterialsWidget::hightlightWindingPhasesToggled);
    connect(filaments, &QCheckBox::toggled, this, &MaterialsWidget::showOnlyFilamentsToggled);
    addRow(StatorEndturn, endturns);

    m_rotorIron = new MaterialIronWidget;
    m_rotorIron->setObjectName(QStringLiteral("widgetRotorIron"));
    addRow(RotorIron, m_rotorIron);

    m_rotorConductor = new MaterialConductorWidget;
    m_rotorConductor->setObjectName(QStringLiteral("widgetRotorConductor"));
    addRow(RotorConductor, m_rotorConductor);

    m_rotorMagnet = new MaterialMagnetWidget;
    m_rotorMagnet->setObjectName(QStringLiteral("widgetRotorMagnet"));
    QFrame *magnetFrame = addRow(RotorMagnet, m_rotorMagnet);
    m_groupBoxRotorMagnetization = new QGroupBox(QStringLiteral("Мagnetization"), magnetFrame);
    m_groupBoxRotorMagnetization->setObjectName(QStringLiteral("groupBoxRotorMagnetization"));
    auto *form = new QFormLayout(m_groupBoxRotorMagnetization);
    const auto addInfo = [this, form](const char *labelName, const QString &label, const char *valueName,
                                      const QString &value) {
        QLabel *text = newLabel(m_groupBoxRotorMagnetization, labelName, label);
        QLabel *shown = newLabel(m_groupBoxRotorMagnetization, valueName, value);
        form->addRow(text, shown);
        return QList<QWidget *>{text, shown};
    };
    const QList<QWidget *> typeRow =
        addInfo("labelRotorMagnetizationType", tr("Type:"), "valueRotorMagnetizationType", tr("<type>"));
    const QList<QWidget *> directionRow = addInfo("labelRotorMagnetizationDirection", tr("Direction:"),
                                                  "valueRotorMagnetizationDirection", tr("<direction>"));
    m_angleRow = addInfo("labelRotorMagnetizationAngle", tr("Angle:"), "valueRotorMagnetizationAngle", QString());
    const QList<QWidget *> centerRow = addInfo("labelRotorMagnetizationCenter", tr("Center:"),
                                               "valueRotorMagnetizationCenter", QStringLiteral("x: 0, y: 0"));
    m_valueMagnetizationType = static_cast<QLabel *>(typeRow.last());
    m_valueMagnetizationDirection = static_cast<QLabel *>(directionRow.last());
    m_valueMagnetizationAngle = static_cast<QLabel *>(m_angleRow.last());
    m_valueMagnetizationCenter = static_cast<QLabel *>(centerRow.last());
    m_radialRows = directionRow + centerRow;
    magnetFrame->layout()->addWidget(m_groupBoxRotorMagnetization);

    static_cast<QVBoxLayout *>(m_scrollArea->widget()->layout())->addStretch();

    connect(m_statorIron, &MaterialIronWidget::materialChanged, this,
            [this](const QString &name) { setElementProperty(m_document->stator(), "ironMaterial", name); });
    connect(m_statorIron, &MaterialIronWidget::stackingFactorChanged, this,
            [this](double value) { setElementProperty(m_document->stator(), "ironStacking", value); });
    connect(m_statorWinding, &MaterialConductorWidget::materialChanged, this,
            [this](const QString &name) { setElementProperty(m_document->stator(), "windingMaterial", name); });
    connect(m_statorWinding, &MaterialConductorWidget::temperatureChanged, this,
            [this](double value) { setElementProperty(m_document->stator(), "windingTemperature", value); });
    connect(m_rotorIron, &MaterialIronWidget::materialChanged, this,
            [this](const QString &name) { setElementProperty(m_document->rotor(), "ironMaterial", name); });
    connect(m_rotorIron, &MaterialIronWidget::stackingFactorChanged, this,
            [this](double value) { setElementProperty(m_document->rotor(), "ironStacking", value); });
    connect(m_rotorConductor, &MaterialConductorWidget::materialChanged, this,
            [this](const QString &name) { setElementProperty(m_document->rotor(), "conductorMaterial", name); });
    connect(m_rotorConductor, &MaterialConductorWidget::temperatureChanged, this,
            [this](double value) { setElementProperty(m_document->rotor(), "conductorTemperature", value); });
    connect(m_rotorMagnet, &MaterialMagnetWidget::materialChanged, this,
            [this](const QString &name) { setElementProperty(m_document->rotor(), "magnetMaterial", name); });
    connect(m_rotorMagnet, &MaterialMagnetWidget::temperatureChanged, this,
            [this](double value) { setElementProperty(m_document->rotor(), "magnetTemperature", value); });
}

void MaterialsWidget::setDocument(Document *document)
{
    if (m_document) {
        disconnect(m_document, nullptr, this, nullptr);
        disconnect(m_document->rotor(), nullptr, this, nullptr);
    }
    m_document = document;
    if (document) {
        connect(document, &Document::materialsChanged, this, &MaterialsWidget::refresh);
        connect(document->rotor(), &Rotor::magnetSegmentsRadialDirectionChanged, this, &MaterialsWidget::refresh);
        connect(document, &Document::readonlyChanged, this, &MaterialsWidget::updateEnabled);
        connect(document, &Document::dataSimulationChanged, this, &MaterialsWidget::updateEnabled);
    }
    refresh();
    updateEnabled();
}

void MaterialsWidget::setPieces(const PieceList &pieces)
{
    bool needed[RowCount] = {};
    for (const Piece &piece : pieces) {
        const int row = rowOf(piece);
        if (row >= 0)
            needed[row] = true;
    }
    for (int row = 0; row < RowCount; ++row) {
        m_rows[row].button->setVisible(needed[row]);
        m_rows[row].frame->setVisible(needed[row]);
    }
    updateEnabled();
}

void MaterialsWidget::setSelection(const Piece &piece)
{
    m_selectedMaterial = piece.material();
    m_selectedScope = piece.scope();
    m_selectedRow = rowOf(piece);
    showSelection();
    updateFrames();
}

void MaterialsWidget::setRowChecked(RowId row, bool checked)
{
    m_rows[row].button->setChecked(checked);
}

bool MaterialsWidget::isRowChecked(RowId row) const
{
    return m_rows[row].button->isChecked();
}

bool MaterialsWidget::isRowShown(RowId row) const
{
    return !m_rows[row].frame->isHidden();
}

int MaterialsWidget::rowOf(const Piece &piece)
{
    const qint32 kind = piece.kind();
    for (int row = 0; row < RowCount; ++row) {
        const RowSpec &spec = rowSpecs[row];
        if (spec.kind == kind && (spec.scopeMask == Piece::Empty || within(piece.scope(), spec.scopeMask)))
            return row;
    }
    return -1;
}

void MaterialsWidget::rowToggled(RowId id, bool checked)
{
    const RowSpec &spec = rowSpecs[id];
    QCheckBox *button = m_rows[id].button;
    button->setToolTip(tr("Click to %1 '%2'").arg(checked ? tr("hide") : tr("show"), button->text()));
    button->setIcon(QIcon(QIcon(legendOf(spec.kind)).pixmap(20, checked ? QIcon::Normal : QIcon::Disabled)));
    if (id == RotorMagnet && !checked && m_selectedRow == RotorMagnet)
        setSelection(Piece());
    updateEnabled();
    emit(this->*spec.toggled)(checked);
}

void MaterialsWidget::refresh()
{
    const Stator *stator = m_document ? m_document->stator() : nullptr;
    const Rotor *rotor = m_document ? m_document->rotor() : nullptr;
    if (!stator || !rotor)
        return;
    m_statorIron->setMaterial(stator->ironMaterial());
    m_statorIron->setStackingFactor(stator->ironStacking());
    m_statorWinding->setMaterial(stator->windingMaterial());
    m_statorWinding->setTemperature(stator->windingTemperature());
    m_statorWinding->setTemperatureToolTip(tr("Stator winding resistance varies with temperature"));
    m_rotorIron->setMaterial(rotor->ironMaterial());
    m_rotorIron->setStackingFactor(rotor->ironStacking());
    m_rotorConductor->setMaterial(rotor->conductorMaterial());
    m_rotorConductor->setTemperature(rotor->conductorTemperature());
    m_rotorConductor->setTemperatureToolTip(tr("Conductor resistance varies with temperature"));
    m_rotorMagnet->setMaterial(rotor->magnetMaterial());
    m_rotorMagnet->setTemperature(rotor->magnetTemperature());
    m_rotorMagnet->setSegments(rotor->magnetSegmentsRadialDirection());
    showSelection();
}

void MaterialsWidget::showSelection()
{
    const auto *magnet = dynamic_cast<const MagnetMaterial *>(m_selectedMaterial.data());
    if (magnet && m_selectedRow == RotorMagnet) {
        m_valueMagnetizationType->setText(Magnetization::typeText(magnet->type));
        m_valueMagnetizationDirection->setText(Magnetization::directionText(magnet->direction));
        m_valueMagnetizationCenter->setText(
            QStringLiteral("x: %1, y: %2").arg(magnet->center.x(), 0, 'g').arg(magnet->center.y(), 0, 'g'));
        m_valueMagnetizationAngle->setText(QStringLiteral("%1°").arg(magnet->angle, 0, 'g'));
        const bool parallel = magnet->type == Magnetization::Type::Parallel;
        for (QWidget *widget : qAsConst(m_angleRow))
            widget->setVisible(parallel);
        for (QWidget *widget : qAsConst(m_radialRows))
            widget->setVisible(magnet->type == Magnetization::Type::Radial);
    }

    // Iron rows without a selected piece of their own show the neutral filling of every slice.
    const int slices = m_document ? m_document->mesh()->numberSlices() : 1;
    const QVector<double> neutral(std::max(slices, 1), 1.0);
    const auto *iron = dynamic_cast<const IronMaterial *>(m_selectedMaterial.data());
    for (const auto &[row, widget] : {std::pair<RowId, MaterialIronWidget *>{StatorIron, m_statorIron},
                                      std::pair<RowId, MaterialIronWidget *>{RotorIron, m_rotorIron}}) {
        const bool selected = iron && m_selectedRow == row;
        widget->setFillCoefs(selected ? iron->fillCoefs() : neutral);
        widget->setDsomaloy(selected ? iron->dsomaloy() : 0.0);
    }

    const auto *winding = dynamic_cast<const WindingMaterial *>(m_selectedMaterial.data());
    const bool windingSelected = winding && m_selectedRow == StatorWinding;
    m_labelStatorWindingLayer->setVisible(windingSelected);
    m_valueStatorWindingLayer->setVisible(windingSelected);
    if (windingSelected)
        m_valueStatorWindingLayer->setText(
            QStringLiteral("%1 / %2 / %3").arg(winding->layout()).arg(winding->slot()).arg(winding->layerName()));
}

void MaterialsWidget::updateFrames()
{
    for (int row = 0; row < RowCount; ++row) {
        QFrame *frame = m_rows[row].frame;
        const bool current = row == m_selectedRow;
        frame->setStyleSheet(
            current ? QStringLiteral("QFrame#%1 {background-color: rgb(255, 255, 255); border: 1px solid rgb(128, 128, 128)}")
                          .arg(frame->objectName())
                    : QStringLiteral("QFrame#%1 {background-color: rgb(235, 235, 235); border: 1px solid rgb(220, 220, 220)}")
                          .arg(frame->objectName()));
        if (current)
            m_scrollArea->ensureWidgetVisible(frame, 50, 50);
    }
}

void MaterialsWidget::updateEnabled()
{
    const bool editable = m_document && !m_document->isProtectedFile() && !m_document->isReadonly() &&
                          !m_document->isLockedBySimulationData();
    bool allChecked = true;
    for (int row = 0; row < RowCount; ++row) {
        const Row &entry = m_rows[row];
        if (!entry.button)
            return;
        if (entry.widget)
            entry.widget->setEnabled(entry.button->isChecked() && (row == StatorEndturn || editable));
        if (!entry.frame->isHidden() && !entry.button->isChecked())
            allChecked = false;
    }
    m_groupBoxRotorMagnetization->setEnabled(m_rows[RotorMagnet].button->isChecked());
    m_buttonShowAll->setVisible(!allChecked);
}

void MaterialsWidget::showAllRows()
{
    for (const Row &row : m_rows) {
        if (!row.frame->isHidden())
            row.button->setChecked(true);
    }
}

void MaterialsWidget::setElementProperty(QObject *element, const char *name, const QVariant &value)
{
    if (m_document && element)
        m_document->execCommand(new CommandSetPropertyObject(element, name, value));
}
