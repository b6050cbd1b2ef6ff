#include "ui/MagnetostaticEditor.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "document/RatedData.h"
#include "ui/ModelComboBoxes.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/DriveSettingsWidget.h"
#include "ui/FileDialog.h"
#include "ui/PropertyRows.h"

MagnetostaticEditor::MagnetostaticEditor(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_analysis(document->analysis())
{
    setObjectName(QStringLiteral("MagnetostaticEditor"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    auto *settings = new QWidget(this);
    m_grid = new QGridLayout(settings);
    m_grid->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(settings);
    m_rows = new PropertyRows(
        m_analysis, m_grid,
        [this](const QString &name, const QVariant &value) { m_document->setPropertyUndoable(m_analysis, name, value); },
        this);

    m_rows->addCombo(tr("Solver type:"), "solverType", new SolverTypeComboBox(settings), QString(),
                     tr("Finite element solver type"));
    m_rows->addNumber(tr("Mechanical speed:"), "mechanicalSpeed", tr("RPM"), tr("Mechanical speed of the rotor"));
    m_rows->addButton("mechanicalSpeed", tr("<-rated"), tr("Click to setup 'Mechanical speed' to rated speed"),
                      [this] { m_rows->set("mechanicalSpeed", m_document->ratedData()->speed()); });
    m_rows->addNumber(tr("Advance angle:"), "advanceAngle", tr("El.deg."),
                      tr("Advance angle of current phasor relative to q-axis in the range \nbetween 0 and 360 ..."));
    m_rows->addCombo(tr("Simulation setup:"), "accuracy", new AccuracyComboBox(settings), QString(),
                     tr("Specifies the accuary of FEA solutions"));
    m_rows->addCount(tr("Number of points:"), "numberPoints", QString());
    m_rows->addCombo(tr("Simulation time:"), "timePeriodMode", new TimePeriodModeComboBox(settings), QString(),
                     tr("Time interval the simulation is run for"));
    createTimePeriodRow();
    m_rows->addNumber(tr("Convergance tolerance:"), "converganceTolerance", QString(), QString());
    m_rows->addCheck(tr("Compute cogging torque"), "computeCoggingTorque");
    m_rows->addCheck(tr("Save each field solution in folder"), "saveEachFieldSolution");
    createFolderRow();

    auto *drive = new QGroupBox(tr("Drive Settings"), this);
    drive->setObjectName(QStringLiteral("groupDriveSettings"));
    (new QVBoxLayout(drive))->addWidget(new DriveSettingsWidget(document->driveSettings(), drive));
    layout->addWidget(drive);
    layout->addStretch();

    connect(m_analysis, &MagnetostaticAnalysis::changed, this, &MagnetostaticEditor::updateUI);
    connect(m_analysis, &MagnetostaticAnalysis::runningChanged, this, &MagnetostaticEditor::updateUI);
    connect(m_document, &Document::readonlyChanged, this, &MagnetostaticEditor::updateUI);
    connect(m_document, &Document::documentLoaded, this, &MagnetostaticEditor::updateUI);
    updateUI();
}

void MagnetostaticEditor::createTimePeriodRow()
{
    QGridLayout *grid = m_grid;
    const int row = grid->rowCount();
    QWidget *parent = grid->parentWidget();
    grid->addWidget(new QLabel(tr("Time period:"), parent), row, 0);
    auto *fields = new QHBoxLayout;
    fields->addWidget(new QLabel(tr("from:"), parent));
    m_timeFrom = new NumberEdit(parent);
    m_timeFrom->setObjectName(QStringLiteral("timeFrom"));
    m_timeFrom->setToolTip(tr("Simulation start time"));
    m_timeFrom->setRange(-1e6, 1e6, 6);
    fields->addWidget(m_timeFrom);
    fields->addWidget(new QLabel(tr("to:"), parent));
    m_timeTo = new NumberEdit(parent);
    m_timeTo->setObjectName(QStringLiteral("timeTo"));
    m_timeTo->setToolTip(tr("Simulation stop time"));
    m_timeTo->setRange(-1e6, 1e6, 6);
    fields->addWidget(m_timeTo);
    grid->addLayout(fields, row, 1, 1, 2);
    connect(m_timeFrom, &NumberEdit::valueEditingFinished, this,
            [this](double from) { setTimePeriodUndoable(from, m_analysis->timePeriod().second); });
    connect(m_timeTo, &NumberEdit::valueEditingFinished, this,
            [this](double to) { setTimePeriodUndoable(m_analysis->timePeriod().first, to); });
}

void MagnetostaticEditor::createFolderRow()
{
    const int row = m_grid->rowCount();
    QWidget *parent = m_grid->parentWidget();
    m_folder = new QLineEdit(parent);
    m_folder->setObjectName(QStringLiteral("folderFieldsSolution"));
    m_grid->addWidget(m_folder, row, 0, 1, 3);
    m_buttonFolder = new QToolButton(parent);
    m_buttonFolder->setObjectName(QStringLiteral("buttonFolderFieldsSolution"));
    m_buttonFolder->setText(QStringLiteral("..."));
    m_grid->addWidget(m_buttonFolder, row, 3);
    connect(m_folder, &QLineEdit::editingFinished, this, [this] {
        m_document->setPropertyUndoable(m_analysis, QStringLiteral("folderFieldsSolution"), m_folder->text());
    });
    connect(m_buttonFolder, &QToolButton::clicked, this, &MagnetostaticEditor::chooseFolder);
}

void MagnetostaticEditor::setTimePeriodUndoable(double from, double to)
{
    m_document->setPropertyUndoable(m_analysis, QStringLiteral("timePeriod"),
                                    QVariant::fromValue(MagnetostaticAnalysis::TimePeriod(from, to)));
}

void MagnetostaticEditor::chooseFolder()
{
    const QString folder =
        FileDialog::getExistingDirectory(this, tr("Select a new folder"), m_analysis->folderFieldsSolution());
    if (!folder.isEmpty())
        m_document->setPropertyUndoable(m_analysis, QStringLiteral("folderFieldsSolution"), folder);
}

void MagnetostaticEditor::updateUI()
{
    m_rows->update();
    {
        const QSignalBlocker blockFrom(m_timeFrom);
        const QSignalBlocker blockTo(m_timeTo);
        const QSignalBlocker blockFolder(m_folder);
        m_timeFrom->setValue(m_analysis->timePeriod().first);
        m_timeTo->setValue(m_analysis->timePeriod().second);
        m_folder->setText(m_analysis->folderFieldsSolution());
    }
    const bool editable = !m_analysis->isRunning() && !m_document->isReadonly();
    setEnabled(editable);
    m_rows->setRowEnabled("numberPoints", m_analysis->accuracy() == MagnetostaticAnalysis::DefinePoint);
    const bool definedPeriod = m_analysis->timePeriodMode() == MagnetostaticAnalysis::DefinePeriod;
    m_timeFrom->setEnabled(definedPeriod);
    m_timeTo->setEnabled(definedPeriod);
    m_rows->setRowEnabled("converganceTolerance", m_analysis->solverType() == MagnetostaticAnalysis::Nonlinear);
    const bool saveFields = m_analysis->saveEachFieldSolution();
    m_folder->setEnabled(saveFields);
    m_buttonFolder->setEnabled(saveFields);
}
