#include "ui/MagnetostaticControlWidget.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "ui/MagnetostaticTimePlotWidget.h"

namespace {

QPushButton *fieldPlotButton(QWidget *parent)
{
    auto *button = new QPushButton(QObject::tr("Plot"), parent);
    button->setEnabled(false);
    button->setToolTip(QObject::tr("Field plots need the field solutions, which the analysis doesn't keep"));
    return button;
}

} // namespace

MagnetostaticControlWidget::MagnetostaticControlWidget(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
{
    setObjectName(QStringLiteral("MagnetostaticControlWidget"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(createAirgapPanel());
    layout->addWidget(createTimePanel());
    layout->addWidget(createCrossSectionPanel());
    m_clearConsole = new QCheckBox(tr("Clear console before run analysis"), this);
    m_clearConsole->setObjectName(QStringLiteral("checkClearConsole"));
    layout->addWidget(m_clearConsole);
    layout->addStretch();

    MagnetostaticAnalysis *analysis = m_document->analysis();
    connect(m_clearConsole, &QCheckBox::toggled, analysis, &MagnetostaticAnalysis::setClearConsoleOnRun);
    connect(analysis, &MagnetostaticAnalysis::clearConsoleOnRunChanged, this, &MagnetostaticControlWidget::updateUI);
    connect(analysis, &MagnetostaticAnalysis::resultsChanged, this, &MagnetostaticControlWidget::updateUI);
    connect(m_plotTime, &QPushButton::clicked, this, &MagnetostaticControlWidget::timePlotRequested);
    updateUI();
}

QWidget *MagnetostaticControlWidget::createAirgapPanel()
{
    auto *panel = new QGroupBox(tr("Air gap distribution plot"), this);
    auto *row = new QHBoxLayout(panel);
    row->addStretch();
    row->addWidget(fieldPlotButton(panel));
    return panel;
}

QWidget *MagnetostaticControlWidget::createTimePanel()
{
    auto *panel = new QGroupBox(tr("Time plot"), this);
    auto *grid = new QGridLayout(panel);
    m_timePlot = new MagnetostaticTimePlotWidget(m_document, panel);
    grid->addWidget(m_timePlot, 0, 0, 1, 3);
    m_legend = new QCheckBox(tr("Show graph legend"), panel);
    m_legend->setChecked(true);
    grid->addWidget(m_legend, 1, 0, 1, 3);
    m_synchronize = new QCheckBox(tr("Synchonize subplot time-axis limits"), panel);
    grid->addWidget(m_synchronize, 2, 0, 1, 3);
    grid->addWidget(new QLabel(tr("Smoothed waveform averaging interval:"), panel), 3, 0);
    m_averaging = new QDoubleSpinBox(panel);
    m_averaging->setObjectName(QStringLiteral("averagingInterval"));
    m_averaging->setDecimals(6);
    m_averaging->setRange(0.0, 1e6);
    grid->addWidget(m_averaging, 3, 1);
    m_plotTime = new QPushButton(tr("Plot"), panel);
    m_plotTime->setObjectName(QStringLiteral("buttonPlotTime"));
    grid->addWidget(m_plotTime, 3, 2);
    return panel;
}

QWidget *MagnetostaticControlWidget::createCrossSectionPanel()
{
    auto *panel = new QGroupBox(tr("Cross-section distribution plot"), this);
    auto *grid = new QGridLayout(panel);
    grid->addWidget(new QCheckBox(tr("Full cross-section view"), panel), 0, 0, 1, 2);
    grid->addWidget(new QLabel(tr("Number of flux line levels:"), panel), 1, 0);
    auto *levels = new QSpinBox(panel);
    levels->setRange(1, 200);
    levels->setValue(20);
    grid->addWidget(levels, 1, 1);
    grid->addWidget(new QCheckBox(tr("Animate plot"), panel), 2, 0);
    grid->addWidget(fieldPlotButton(panel), 2, 1);
    return panel;
}

TimePlotOptions MagnetostaticControlWidget::timePlotOptions() const
{
    return {m_legend->isChecked(), m_synchronize->isChecked(), m_averaging->value()};
}

void MagnetostaticControlWidget::updateUI()
{
    const MagnetostaticAnalysis *analysis = m_document->analysis();
    const QSignalBlocker blocker(m_clearConsole);
    m_clearConsole->setChecked(analysis->clearConsoleOnRun());
    m_plotTime->setEnabled(!analysis->solverOutput(QStringLiteral("Timesteppingdata")).isEmpty());
}
