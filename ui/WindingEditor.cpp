#include "ui/WindingEditor.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>
#include <numeric>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/CommandSetPropertyObject.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/FileDialog.h"
#include "ui/HarmonicFactorView.h"
#include "ui/LayoutCoilsModel.h"
#include "ui/MaterialsWidget.h"
#include "ui/MessageBox.h"
#include "ui/MmfSpectrumView.h"
#include "ui/ModelComboBoxes.h"
#include "ui/PropertyRows.h"
#include "winding/WindingObject.h"

namespace {

const QString markStyle = QStringLiteral("QLabel { color: rgb(200, 0, 0); font-weight: bold; }");

} // namespace

WindingEditor::WindingEditor(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_winding(document->winding())
{
    setObjectName(QStringLiteral("WindingWidget"));
    createForm();

    for (auto signal : {&WindingObject::windingChanged, &WindingObject::layoutsChanged,
                        &WindingObject::countLayoutsChanged, &WindingObject::windingErrorsChanged,
                        &WindingObject::modeLayoutChanged, &WindingObject::endturnsChanged,
                        &WindingObject::phaseResistanceChanged, &WindingObject::endInductanceChanged,
                        &WindingObject::wireLengthChanged})
        connect(m_winding, signal, this, &WindingEditor::updateUI);
    connect(m_winding, &WindingObject::endInductanceInnerOrOuterChanged, this,
            &WindingEditor::updateEndInductanceToolTip);
    connect(m_document->stator(), &Stator::numberSlotsChanged, this, &WindingEditor::updateUI);
    connect(m_document->rotor(), &Rotor::numberPolePairsChanged, this, &WindingEditor::updateUI);
    connect(m_document, &Document::machineTypeChanged, this, &WindingEditor::updateUI);
    connect(m_document, &Document::readonlyChanged, this, &WindingEditor::updateUI);
    connect(m_document, &Document::documentLoaded, this, &WindingEditor::updateUI);
    connect(m_document, &Document::dataSimulationChanged, this, &WindingEditor::updateUI);
    connect(m_document->analysis(), &MagnetostaticAnalysis::runningChanged, this, &WindingEditor::updateUI);
    updateUI();
}

QString WindingEditor::endInductanceText()
{
    return tr("Leakage inductance of the stator winding end turns per phase");
}

void WindingEditor::updateEndInductanceToolTip()
{
    QString text = endInductanceText();
    // The value is that of the coils of the first stator face.
    if (m_winding->countLayouts() > 1)
        text += tr(" for one layout");
    if (m_winding->autoCalcEndInductance()) {
        const WindingObject::InductanceParts inner = m_winding->endInductanceInner();
        const WindingObject::InductanceParts outer = m_winding->endInductanceOuter();
        auto total = [](const QString &label, double value) {
            return QStringLiteral("<tr><td><b>%1</b></td><td><b>%2</b></td></tr>").arg(label).arg(value);
        };
        auto part = [](const QString &label, double value) {
            return QStringLiteral("<tr><td>%1</td><td>%2</td></tr>").arg(label).arg(value);
        };
        text += QStringLiteral("<hr><table border='0' cellspacing='0' cellpadding='3'>")
                + total(tr("Inner inductance:"), inner[0]) + part(tr("self:"), inner[1])
                + part(tr("mutual:"), inner[2]) + total(tr("Outer inductance:"), outer[0])
                + part(tr("self:"), outer[1]) + part(tr("mutual:"), outer[2]) + QStringLiteral("</table>");
    }
    for (QWidget *widget : m_rows->row("endInductance"))
        widget->setToolTip(text);
}

void WindingEditor::createForm()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    auto *form = new QWidget(this);
    auto *grid = new QGridLayout(form);
    grid->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(form);
    const auto undoable = [this](QObject *target) {
        return [this, target](const QString &name, const QVariant &value) {
            m_document->setPropertyUndoable(target, name, value);
        };
    };
    m_rows = new PropertyRows(
        m_winding, grid,
        [this](const QString &name, const QVariant &value) {
            if (name == QLatin1String("coilSpan"))
                setCoilSpan(value.toInt());
            else
                m_document->setPropertyUndoable(m_winding, name, value);
        },
        this);
    m_statorRows = new PropertyRows(m_document->stator(), grid, undoable(m_document->stator()), this);
    m_rotorRows = new PropertyRows(m_document->rotor(), grid, undoable(m_document->rotor()), this);

    grid->addWidget(new QLabel(tr("Machine type:"), form), 0, 0);
    m_machineType = new QLabel(form);
    m_machineType->setObjectName(QStringLiteral("labelMachineType"));
    grid->addWidget(m_machineType, 0, 1);

    m_rotorRows->addCount(tr("Number of pole pairs:"), "numberPolePairs", QString())
        ->setObjectName(QStringLiteral("spinBoxRotorPolePairs"));
    m_markPolePairs = addMark(m_rotorRows, "numberPolePairs", "exclamationRotorPolePairs");
    m_statorRows->addCount(tr("Number of stator slots:"), "numberSlots", QString())
        ->setObjectName(QStringLiteral("spinBoxStatorSlots"));
    m_markSlots = addMark(m_statorRows, "numberSlots", "exclamationStatorSlots");

    m_rows->addCombo(tr("Wire size method:"), "wireSizeMethod", new WireSizeMethodComboBox(form), QString(),
                     QString());
    m_rows->addNumber(tr("Strand diameter (mm):"), "wireDiameter", QString(),
                      tr("Specifies the diameter of one strand"))
        ->setObjectName(QStringLiteral("editWireDiameter"));
    // Both gauge rows edit the one wire size; the method shows one of them.
    auto *awg = new WireGaugeComboBox(WireGaugeComboBox::Awg, form);
    m_rows->addCombo(tr("Wire gauge number:"), "wireSize", awg, QString(), tr("Specifies the diameter of one strand"));
    awg->setObjectName(QStringLiteral("comboBoxWireAWG"));
    auto *swgRows = new PropertyRows(m_winding, grid, undoable(m_winding), this);
    auto *swg = new WireGaugeComboBox(WireGaugeComboBox::Swg, form);
    swgRows->addCombo(tr("Wire gauge number:"), "wireSize", swg, QString(), tr("Specifies the diameter of one strand"));
    swg->setObjectName(QStringLiteral("comboBoxWireSWG"));
    m_swgRows = swgRows;
    m_rows->addCount(tr("Number of strands in hand:"), "strandsConductor",
                     tr("Number of smaller wires (strands) bundled together\nto form a larger conductor to reduce "
                        "skin-effect"))
        ->setObjectName(QStringLiteral("spinBoxStrandsConductor"));
    m_rows->addNumber(tr("Phase resistance (Ohm):"), "phaseResistance", QString(),
                      tr("Active DC resistance of the stator winding per phase"))
        ->setObjectName(QStringLiteral("editPhaseResistance"));
    m_rows->addCheck(tr("/ Auto"), "autoCalcPhaseResistance")
        ->setToolTip(tr("Calculate phase resistance automatically"));
    m_rows->addCombo(tr("Winding circuit:"), "circuit", new WindingCircuitComboBox(form), QString(), QString());
    m_rows->addCount(tr("Number of parallel paths:"), "parallelPaths",
                     tr("Number of groups of coils per phase connected in parallel"))
        ->setObjectName(QStringLiteral("spinBoxParallelPaths"));
    m_markParallelPaths = addMark(m_rows, "parallelPaths", "exclamationParallelPaths");
    m_rows->addCount(tr("Number of turns:"), "numberTurns", tr("Number of turns per one coil"))
        ->setObjectName(QStringLiteral("spinBoxNumberTurns"));
    m_rows->addCount(tr("Coil span:"), "coilSpan",
                     tr("Distance between two sides of a coil measured in number of slots"))
        ->setObjectName(QStringLiteral("spinBoxCoilSpan"));
    m_rows->addCheck(tr("/ Auto"), "autoCalcCoilSpan")->setToolTip(tr("Calculate coil span automatically"));
    m_unlockCoilSpan = m_rows->addButton("coilSpan", tr("Unlock"),
                                     tr("To unlock <b>Coil span</b> change <b>Winding layers orientation</b> to "
                                        "<b>Upper / Lower</b>"),
                                     [this] { unlockCoilSpan(); });
    m_unlockCoilSpan->setObjectName(QStringLiteral("buttonUnlockCoilSpan"));

    int row = grid->rowCount();
    grid->addWidget(new QLabel(tr("Fundamental winding factor:"), form), row, 0);
    m_windingFactor = new QLabel(form);
    m_windingFactor->setObjectName(QStringLiteral("labelWindingFactor"));
    m_windingFactor->setToolTip(
        tr("Fundamental winding factor is ratio of flux linked\nby the winding compared to flux linked by a "
           "single-layer\nfull-pitch non-skewed integer-slot winding with the same number\nof turns and one single "
           "slot per pole per phase.\nFundamental winding factor should be as high\nas possible (close to 1) to "
           "maximize torque."));
    grid->addWidget(m_windingFactor, row, 1);
    auto *factors = new QToolButton(form);
    factors->setObjectName(QStringLiteral("buttonShowHarmonicWindingFactors"));
    factors->setText(QStringLiteral("..."));
    factors->setToolTip(tr("Show harmonic winding factors"));
    grid->addWidget(factors, row, 2);
    auto *spectrum = new QToolButton(form);
    spectrum->setObjectName(QStringLiteral("buttonShowMmfSpectrum"));
    spectrum->setText(tr("MMF"));
    spectrum->setToolTip(tr("Show the spectrum of the winding's magnetomotive force"));
    grid->addWidget(spectrum, row, 3);
    connect(factors, &QToolButton::clicked, this, &WindingEditor::showHarmonicFactors);
    connect(spectrum, &QToolButton::clicked, this, &WindingEditor::showMmfSpectrum);

    row = grid->rowCount();
    grid->addWidget(new QLabel(tr("LCM of slot number and pole number:"), form), row, 0);
    m_lcm = new QLabel(form);
    m_lcm->setObjectName(QStringLiteral("labelLCM"));
    m_lcm->setToolTip(tr("Least common multiple (LCM) between the number of slots\nand number of poles is equal to "
                         "the number of periods\nof cogging torque waveform per rotor revolution.\nLCM should be as "
                         "high as possible to minimize cogging torque."));
    grid->addWidget(m_lcm, row, 1);
    row = grid->rowCount();
    grid->addWidget(new QLabel(tr("GCD of slot number and pole number:"), form), row, 0);
    m_gcd = new QLabel(form);
    m_gcd->setObjectName(QStringLiteral("labelGCD"));
    m_gcd->setToolTip(tr("Greatest common divisor (GCD) between the number of slots\nand number of poles should be "
                         "an even number and as high\nas possible to ensure better balance of radial forces\nwith "
                         "reduced noise and motor vibrations."));
    grid->addWidget(m_gcd, row, 1);

    createLayoutRows(grid);
    m_rows->addNumber(tr("End winding inductance (H):"), "endInductance", QString(), endInductanceText())
        ->setObjectName(QStringLiteral("editEndInductance"));
    m_rows->addCheck(tr("/ Auto"), "autoCalcEndInductance")
        ->setToolTip(tr("Calculate end winding inductance automatically"));
    m_rows->addNumber(tr("Coil fill factor:"), "coilFillFactor", QString(),
                      tr("Ratio of the area of all conductors (i.e. pure copper or aluminum)\nof a slot to the slot "
                         "area occupied by conductors not including\nslot isolation"))
        ->setObjectName(QStringLiteral("editCoilFillFactor"));
    m_rows->addNumber(tr("Slot fill factor:"), "slotFillFactor", QString(),
                      tr("Ratio of the area of all conductors (i.e. pure copper or aluminum)\nof a slot to the total "
                         "slot area (including slot isolation)"))
        ->setObjectName(QStringLiteral("editSlotFillFactor"));
    createEndWindingRows();
    layout->addStretch();
}

void WindingEditor::createLayoutRows(QGridLayout *grid)
{
    QWidget *form = grid->parentWidget();
    m_rows->addCombo(tr("Winding  layout method:"), "modeLayout", new ModeLayoutComboBox(form), QString(), QString());
    const int row = grid->rowCount();
    grid->addWidget(new QLabel(tr("Winding layout:"), form), row, 0);
    m_layouts = new QComboBox(form);
    m_layouts->setObjectName(QStringLiteral("comboBoxLayout"));
    grid->addWidget(m_layouts, row, 1);
    auto *layoutsButton = new QToolButton(form);
    layoutsButton->setObjectName(QStringLiteral("buttonWindingLayouts"));
    layoutsButton->setText(QStringLiteral("..."));
    layoutsButton->setPopupMode(QToolButton::InstantPopup);
    layoutsButton->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { width: 0px; }"));
    auto *menu = new QMenu(layoutsButton);
    menu->addAction(QIcon(QStringLiteral(":/page_copy.png")), tr("Copy winding layout to clipboard"), this,
                    [this] { QApplication::clipboard()->setText(m_winding->layoutsToText()); });
    menu->addAction(QIcon(QStringLiteral(":/disk.png")), tr("Save winding layout to file..."), this,
                    &WindingEditor::saveLayouts);
    layoutsButton->setMenu(menu);
    grid->addWidget(layoutsButton, row, 2);
    m_coilsView = new LayoutCoilsView(m_document, form);
    m_coilsView->setMinimumHeight(220);
    grid->addWidget(m_coilsView, row + 1, 0, 1, 4);
    connect(m_layouts, qOverload<int>(&QComboBox::currentIndexChanged), this, [this](int index) {
        if (index >= 0)
            m_coilsView->coilsModel()->setLayoutIndex(index);
    });
    m_reverseLayers = new QCheckBox(tr("Reverse layers top to bottom"), form);
    m_reverseLayers->setObjectName(QStringLiteral("checkBoxReverseLayers"));
    grid->addWidget(m_reverseLayers, row + 2, 0, 1, 4);
    connect(m_reverseLayers, &QCheckBox::toggled, this, [this](bool checked) {
        QVector<bool> layers = m_winding->reverseLayersLayouts();
        const int index = qMax(0, m_layouts->currentIndex());
        if (index >= layers.size())
            layers.resize(index + 1);
        layers[index] = checked;
        m_document->setPropertyUndoable(m_winding, QStringLiteral("reverseLayersLayouts"), QVariant::fromValue(layers));
    });
}

void WindingEditor::createEndWindingRows()
{
    auto *group = new QGroupBox(tr("End winding"), this);
    group->setObjectName(QStringLiteral("groupBox"));
    layout()->addWidget(group);
    auto *grid = new QGridLayout(group);
    auto *rows = new PropertyRows(
        m_winding, grid,
        [this](const QString &name, const QVariant &value) { m_document->setPropertyUndoable(m_winding, name, value); },
        this);
    rows->addCombo(tr("End winding geometry script:"), "endturnsScript", new EndturnScriptComboBox(group), QString(),
                   QString());
    rows->addButton("endturnsScript", tr("Re-read"), tr("Re-read geometry script"),
                    [this] { m_winding->reReadEndturnScript(); })
        ->setObjectName(QStringLiteral("buttonRereadEndturnsScript"));
    rows->addNumber(tr("Outer end turns radial overhang (mm):"), "radialOverhangOuterEndturn", QString(), QString())
        ->setObjectName(QStringLiteral("editRadialOverhangOuterEndturn"));
    rows->addNumber(tr("Inner end turns  radial overhang (mm):"), "radialOverhangInnerEndturn", QString(), QString())
        ->setObjectName(QStringLiteral("editRadialOverhangInnerEndturn"));
    rows->addCheck(tr("/ Auto"), "autoCalcOverhangEndturns")
        ->setToolTip(tr("Calculate end winding radial overhangs automatically"));
    rows->addNumber(tr("Outer end turns height (mm):"), "heightOuterEndturn", QString(), QString())
        ->setObjectName(QStringLiteral("editHeightOuterEndturn"));
    rows->addNumber(tr("Inner end turns height (mm):"), "heightInnerEndturn", QString(), QString())
        ->setObjectName(QStringLiteral("editHeightInnerEndturn"));
    m_endRows = rows;

    auto *materials = new MaterialsWidget(group);
    materials->setObjectName(QStringLiteral("widgetMaterials"));
    materials->setDocument(m_document);
    grid->addWidget(materials, grid->rowCount(), 0, 1, grid->columnCount());
    // The winding's own materials: coil sides and end turns of the stator. Pieces are
    // taken once built, never built here.
    const auto showWindingPieces = [this, materials] {
        PieceList winding;
        if (m_document->hasPieces()) {
            for (const Piece &piece : m_document->pieces()) {
                const bool stator = Piece::Scopes(piece.scope()) & Piece::StatorMask;
                if (stator && (piece.kind() == AbstractMaterial::WindingKind || piece.kind() == AbstractMaterial::EndturnKind))
                    winding.append(piece);
            }
        }
        materials->setPieces(winding);
    };
    connect(m_document, &Document::piecesReady, materials, showWindingPieces);
    showWindingPieces();
}

QLabel *WindingEditor::addMark(const PropertyRows *rows, const char *property, const char *name)
{
    QWidget *editor = rows->row(property).value(1);
    auto *mark = new QLabel(QStringLiteral("!"), editor->parentWidget());
    mark->setObjectName(QLatin1String(name));
    mark->setStyleSheet(markStyle);
    auto *grid = qobject_cast<QGridLayout *>(editor->parentWidget()->layout());
    int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
    grid->getItemPosition(grid->indexOf(editor), &row, &column, &rowSpan, &columnSpan);
    grid->addWidget(mark, row, 2);
    mark->hide();
    return mark;
}

bool WindingEditor::isEditable() const
{
    const MagnetostaticAnalysis *analysis = m_document->analysis();
    return !m_document->isProtectedFile() && !m_document->isReadonly() && !m_document->isLockedBySimulationData()
           && analysis->dataSimulation().isEmpty() && !analysis->isRunning();
}

void WindingEditor::updateUI()
{
    for (PropertyRows *rows : {m_rows, m_swgRows, m_statorRows, m_rotorRows, m_endRows})
        rows->update();
    const bool editable = isEditable();
    for (QWidget *child : findChildren<QWidget *>()) {
        if (qobject_cast<QLabel *>(child) == nullptr && child != m_coilsView && child != m_layouts)
            child->setEnabled(editable);
    }

    const Winding::WireSizeMethod method = m_winding->wireSizeMethod();
    m_rows->setRowVisible("wireSize", method == Winding::AWG);
    m_swgRows->setRowVisible("wireSize", method == Winding::SWG);
    m_rows->setRowEnabled("wireDiameter", editable && method == Winding::WireDiameter);
    const bool fillFactor = method == Winding::FillFactor;
    m_rows->setRowEnabled("coilFillFactor", editable && fillFactor);
    m_rows->setRowEnabled("slotFillFactor", editable && fillFactor);
    const bool upperLowerDouble = m_winding->isDoubleLayer() && m_winding->isOrientationUpperLower();
    m_rows->setRowEnabled("coilSpan", editable && upperLowerDouble && !m_winding->autoCalcCoilSpan());
    m_unlockCoilSpan->setEnabled(editable);
    m_unlockCoilSpan->setVisible(m_winding->isDoubleLayer() && m_winding->isOrientationLeftRight() && m_winding->coilSpan() == 1);
    m_rows->setRowEnabled("autoCalcCoilSpan", editable && upperLowerDouble);
    m_rows->setRowEnabled("phaseResistance", editable && !m_winding->autoCalcPhaseResistance());
    m_rows->setRowEnabled("endInductance", editable && !m_winding->autoCalcEndInductance());
    updateEndInductanceToolTip();
    m_endRows->setRowEnabled("radialOverhangOuterEndturn", editable && !m_winding->autoCalcOverhangEndturns());
    m_endRows->setRowEnabled("radialOverhangInnerEndturn", editable && !m_winding->autoCalcOverhangEndturns());
    const bool heights = m_winding->isSingleLayer() && m_winding->coilSpan() > 1 && m_winding->isPlanar();
    m_endRows->setRowVisible("heightOuterEndturn", heights);
    m_endRows->setRowVisible("heightInnerEndturn", heights);
    for (const char *property : {"coilFillFactor", "slotFillFactor"}) {
        const double value = m_winding->property(property).toDouble();
        for (QWidget *widget : m_rows->row(property)) {
            if (qobject_cast<NumberEdit *>(widget))
                widget->setStyleSheet(value < 0.0 || value > 1.0 ? QStringLiteral("QLineEdit {border: 1px solid red;}")
                                                                 : QString());
        }
    }

    const int count = m_winding->countLayouts();
    {
        const QSignalBlocker blocker(m_layouts);
        const int current = m_layouts->currentIndex();
        m_layouts->clear();
        for (int i = 1; i <= count; ++i)
            m_layouts->addItem(QStringLiteral("#%1").arg(i));
        m_layouts->setCurrentIndex(qBound(0, current, count - 1));
        m_layouts->setVisible(count >= 2);
        m_coilsView->coilsModel()->setLayoutIndex(qMax(0, m_layouts->currentIndex()));
    }
    m_reverseLayers->setVisible(upperLowerDouble);
    {
        const QSignalBlocker blocker(m_reverseLayers);
        m_reverseLayers->setChecked(m_winding->reverseLayersLayouts().value(qMax(0, m_layouts->currentIndex())));
    }
    m_coilsView->setEnabled(m_winding->isFeasible());
    updateFacts();
    updateMarks();
}

void WindingEditor::updateFacts()
{
    m_machineType->setText(Machine::typeText(m_document->machineType()));
    const int slotCount = m_document->stator()->numberSlots();
    const int poles = 2 * m_document->rotor()->numberPolePairs();
    const int gcd = std::gcd(slotCount, poles);
    m_gcd->setText(QString::number(gcd));
    m_lcm->setText(QString::number(slotCount == 0 || poles == 0 ? 0 : slotCount / gcd * poles));
    m_windingFactor->setText(QString::number(m_winding->calcWindingFactor(1), 'g', 6));
}

void WindingEditor::updateMarks()
{
    const bool feasible = m_winding->isFeasible();
    const bool oddSingle = m_winding->isSingleLayer() && m_document->stator()->numberSlots() % 2 != 0;
    m_markPolePairs->setVisible(!feasible);
    m_markSlots->setVisible(!feasible || oddSingle);
    m_markSlots->setToolTip(oddSingle ? tr("Number of slots must be even for single layer winding") : QString());
    m_markParallelPaths->setVisible(!m_winding->isParallelPathsValid());
    m_markParallelPaths->setToolTip(tr("Incorrect number of winding parallel paths"));
}

void WindingEditor::setCoilSpan(int span)
{
    const bool needsLeftRight =
        span == 1 && m_winding->isOrientationUpperLower() && m_winding->numberLayers() > 1;
    if (!needsLeftRight) {
        m_document->setPropertyUndoable(m_winding, QStringLiteral("coilSpan"), span);
        return;
    }
    const auto answer = MessageBox::question(
        this, QCoreApplication::applicationName(),
        tr("<b>Winding layers orientation</b> will be changed to <b>Left/Right</b> in order to set up "
           "<b>Coil span = 1</b>"),
        QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer != QMessageBox::Ok) {
        updateUI();
        return;
    }
    // One step of Undo: a span of one needs the sides side by side.
    auto *unlock = new UndoCommand(tr("Unlock Coil span"));
    new CommandSetPropertyObject(m_winding, "layersOrientation", QVariant::fromValue(Winding::LeftRight), unlock);
    new CommandSetPropertyObject(m_winding, "coilSpan", 1, unlock);
    new CommandSetPropertyObject(m_winding, "autoCalcCoilSpan", false, unlock);
    m_document->execCommand(unlock);
}

void WindingEditor::unlockCoilSpan()
{
    const auto answer = MessageBox::question(
        this, QCoreApplication::applicationName(),
        tr("<b>Winding layers orientation</b> will be changed to <b>Upper/Lower</b> in order to unlock "
           "<b>Coil span</b>"),
        QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer == QMessageBox::Ok)
        m_document->setPropertyUndoable(m_winding, QStringLiteral("layersOrientation"),
                                        QVariant::fromValue(Winding::UpperLower));
}

void WindingEditor::saveLayouts()
{
    const QString key = QStringLiteral("Settings/PathLayoutFile");
    QString folder = QSettings().value(key).toString();
    if (folder.isEmpty()) {
        const QString root = FileDialog::rootPath();
        folder = (root.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) : root)
                 + QStringLiteral("/LayoutFiles");
    }
    QDir().mkpath(folder);
    const QString proposal =
        folder + QStringLiteral("/%1_winding_layout").arg(QFileInfo(m_document->filePath()).completeBaseName());
    const QString path =
        FileDialog::getSaveFileName(this, tr("Save winding layouts"), proposal, tr("Text file (*.txt)"));
    if (path.isEmpty())
        return;
    QSettings().setValue(key, QFileInfo(path).absolutePath());
    if (!m_winding->saveLayoutsToFile(path)) {
        MessageBox::critical(this, QCoreApplication::applicationName(), tr("Failed to save file %1").arg(path));
        return;
    }
    if (!MessageBox::isHeadless())
        QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void WindingEditor::showHarmonicFactors()
{
    auto *view = new HarmonicFactorView(m_winding->layoutSettings(), m_winding->layout().at(Winding::A), this);
    view->setWindowFlag(Qt::Window);
    view->show();
}

void WindingEditor::showMmfSpectrum()
{
    auto *view = new MmfSpectrumView;
    view->setAttribute(Qt::WA_DeleteOnClose);
    view->setParent(this, Qt::Window);
    view->setWindowTitle(tr("MMF spectrum"));
    view->setWinding(m_winding->layoutSettings(), m_winding->layout(), m_winding->numberTurns(), 1.0);
    view->resize(700, 400);
    view->show();
}
