#include "ui/DriveSettingsWidget.h"

#include <QGridLayout>
#include <QHash>

#include "analysis/DriveSettings.h"
#include "document/Document.h"
#include "document/RatedData.h"
#include "ui/ModelComboBoxes.h"
#include "ui/PropertyRows.h"

namespace {

// The row of each input method's value.
const QHash<int, const char *> propertyOfMethod = {
    {DriveSettings::RMSSupplyCurrent, "currentSupplyRMS"}, {DriveSettings::PeakSupplyCurrent, "currentSupplyPeak"},
    {DriveSettings::RMSSupplyDensity, "densitySupplyRMS"}, {DriveSettings::RMSPhaseCurrent, "currentPhaseRMS"},
    {DriveSettings::DCSupplyCurrent, "currentSupplyDC"},
};

} // namespace

DriveSettingsWidget::DriveSettingsWidget(DriveSettings *drive, QWidget *parent)
    : QWidget(parent)
    , m_drive(drive)
{
    setObjectName(QStringLiteral("DriveSettingsWidget"));
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    m_rows = new PropertyRows(
        drive, grid, [drive](const QString &name, const QVariant &value) { drive->setPropertyUndoable(name, value); },
        this);
    m_rows->addCombo(tr("Current waveform:"), "waveformCurrent", new WaveformCurrentComboBox(this), QString(),
                     tr("Current source waveform"));
    m_rows->addCombo(tr("Current input method:"), "methodInputCurrent", new MethodInputCurrentComboBox(this),
                     QString(), tr("Method how supply current is specified"));
    const struct {
        const char *property;
        QString label;
        QString unit;
        QString ratedToolTip;
    } currents[] = {
        {"currentSupplyRMS", tr("RMS supply current:"), tr("A"),
         tr("Click to setup 'RMS supply current' to rated supply current")},
        {"currentSupplyPeak", tr("Peak supply current:"), tr("A"),
         tr("Click to setup 'Peak supply current' to rated supply current")},
        {"densitySupplyRMS", tr("RMS supply density:"), tr("A/mm²"),
         tr("Click to setup 'RMS supply density' to rated supply current")},
        {"currentPhaseRMS", tr("RMS phase current:"), tr("A"), QString()},
        {"currentSupplyDC", tr("DC supply current:"), tr("A"),
         tr("Click to setup ''DC supply current'' to rated supply current")},
    };
    for (const auto &current : currents) {
        m_rows->addNumber(current.label, current.property, current.unit, QString());
        if (!current.ratedToolTip.isEmpty())
            // The rated current goes in as it is, whatever the row's unit.
            m_rows->addButton(current.property, tr("<-rated"), current.ratedToolTip, [this, current] {
                m_rows->set(current.property, m_drive->document()->ratedData()->supplyCurrent());
            });
    }
    m_rows->addCombo(tr("Switch duty cycle:"), "switchDutyCycle", new SwitchDutyCycleComboBox(this), tr("el.deg."),
                     QString());

    connect(m_drive, &DriveSettings::changed, this, &DriveSettingsWidget::updateUI);
    updateUI();
}

void DriveSettingsWidget::updateUI()
{
    m_rows->update();
    const int selected = m_drive->methodInputCurrent();
    for (auto it = propertyOfMethod.cbegin(); it != propertyOfMethod.cend(); ++it)
        m_rows->setRowVisible(it.value(), it.key() == selected);
    m_rows->setRowVisible("switchDutyCycle", m_drive->waveformCurrent() == DriveSettings::Trapezoidal);
}
