#include "analysis/DriveSettings.h"

#include <QDataStream>

#include "base/Assign.h"
#include "base/StreamChecks.h"
#include "document/Document.h"

namespace {

// Version of the drive's block in a document file.
const qint32 streamVersion = 2;

} // namespace

DriveSettings::DriveSettings(Document *document)
    : QObject(document)
    , m_document(document)
{
    setObjectName(QStringLiteral("DriveSettings"));
}

QString DriveSettings::waveformCurrentName(WaveformCurrent waveform)
{
    switch (waveform) {
    case Sinusoidal:
        return QStringLiteral("Sinusoidal");
    case Trapezoidal:
        return QStringLiteral("Trapezoidal");
    }
    return QStringLiteral("UnknowWaveformCurrent");
}

QString DriveSettings::methodInputCurrentName(MethodInputCurrent method)
{
    switch (method) {
    case RMSSupplyCurrent:
        return QStringLiteral("RMS supply current");
    case PeakSupplyCurrent:
        return QStringLiteral("Peak supply current");
    case RMSSupplyDensity:
        return QStringLiteral("RMS current density");
    case RMSPhaseCurrent:
        return QStringLiteral("RMS phase current");
    case DCSupplyCurrent:
        return QStringLiteral("DC supply current");
    case UnknowMethodInputCurrent:
        break;
    }
    return QStringLiteral("UnknowMethodInputCurrent");
}

QString DriveSettings::driveTypeName(DriveType type)
{
    switch (type) {
    case CurrentHysteresisPWM:
        return QStringLiteral("Current hysteresis PWM");
    case SpaceVectorPWM:
        return QStringLiteral("Space vector PWM");
    case SixStep:
        return QStringLiteral("Six-step");
    }
    return QStringLiteral("UnknownDriverType");
}

QString DriveSettings::switchDutyCycleName(SwitchDutyCycle dutyCycle)
{
    switch (dutyCycle) {
    case Deg120:
        return QStringLiteral("120");
    case Deg180:
        return QStringLiteral("180");
    }
    return QStringLiteral("UnknownSwitchDutyCycle");
}

QString DriveSettings::sixStepOptionsName(SixStepOptions options)
{
    switch (options) {
    case General:
        return QStringLiteral("General");
    case LimitedMaximumCurrent:
        return QStringLiteral("Six-step with limited maximum current");
    case VariabledDCVoltage:
        return QStringLiteral("Six-step with variable DC voltage");
    }
    return QStringLiteral("UnknownSixStepOptions");
}

double DriveSettings::currentValue() const
{
    switch (m_methodInputCurrent) {
    case RMSSupplyCurrent:
        return m_currentSupplyRMS;
    case PeakSupplyCurrent:
        return m_currentSupplyPeak;
    case RMSSupplyDensity:
        return m_densitySupplyRMS;
    case RMSPhaseCurrent:
        return m_currentPhaseRMS;
    case DCSupplyCurrent:
        return m_currentSupplyDC;
    case UnknowMethodInputCurrent:
        break;
    }
    return 0.0;
}

void DriveSettings::setPropertyUndoable(const QString &name, const QVariant &value)
{
    m_document->setPropertyUndoable(this, name, value);
}

template <typename T, typename Signal>
void DriveSettings::assign(T &field, const T &value, Signal signal)
{
    if (!assignChanged(field, value))
        return;
    emit(this->*signal)();
    emit changed();
}

void DriveSettings::setWaveformCurrent(WaveformCurrent waveform)
{
    assign(m_waveformCurrent, waveform, &DriveSettings::waveformCurrentChanged);
}

void DriveSettings::setMethodInputCurrent(MethodInputCurrent method)
{
    assign(m_methodInputCurrent, method, &DriveSettings::methodInputCurrentChanged);
}

void DriveSettings::setCurrentSupplyRMS(double current)
{
    assign(m_currentSupplyRMS, current, &DriveSettings::currentSupplyRMSChanged);
}

void DriveSettings::setCurrentSupplyPeak(double current)
{
    assign(m_currentSupplyPeak, current, &DriveSettings::currentSupplyPeakChanged);
}

void DriveSettings::setDensitySupplyRMS(double density)
{
    assign(m_densitySupplyRMS, density, &DriveSettings::densitySupplyRMSChanged);
}

void DriveSettings::setCurrentPhaseRMS(double current)
{
    assign(m_currentPhaseRMS, current, &DriveSettings::currentPhaseRMSChanged);
}

void DriveSettings::setCurrentSupplyDC(double current)
{
    assign(m_currentSupplyDC, current, &DriveSettings::currentSupplyDCChanged);
}

void DriveSettings::setVoltageSupplyDC(double voltage)
{
    assign(m_voltageSupplyDC, voltage, &DriveSettings::voltageSupplyDCChanged);
}

void DriveSettings::setDriverType(DriveType type)
{
    assign(m_driverType, type, &DriveSettings::driverTypeChanged);
}

void DriveSettings::setSwitchingDeadTime(double time)
{
    assign(m_switchingDeadTime, time, &DriveSettings::switchingDeadTimeChanged);
}

void DriveSettings::setCurrentHysteresis(double hysteresis)
{
    assign(m_currentHysteresis, hysteresis, &DriveSettings::currentHysteresisChanged);
}

void DriveSettings::setFrequencySamplingPWM(double frequency)
{
    assign(m_frequencySamplingPWM, frequency, &DriveSettings::frequencySamplingPWMChanged);
}

void DriveSettings::setSwitchDutyCycle(SwitchDutyCycle dutyCycle)
{
    assign(m_switchDutyCycle, dutyCycle, &DriveSettings::switchDutyCycleChanged);
}

void DriveSettings::setCommutationAdvanceAngle(double angle)
{
    assign(m_commutationAdvanceAngle, angle, &DriveSettings::commutationAdvanceAngleChanged);
}

void DriveSettings::setSixStepOptions(SixStepOptions options)
{
    assign(m_sixStepOptions, options, &DriveSettings::sixStepOptionsChanged);
}

void DriveSettings::setPhaseCurrentLimit(double current)
{
    assign(m_phaseCurrentLimit, current, &DriveSettings::phaseCurrentLimitChanged);
}

void DriveSettings::setPhaseCurrentHysteresis(double hysteresis)
{
    assign(m_phaseCurrentHysteresis, hysteresis, &DriveSettings::phaseCurrentHysteresisChanged);
}

void DriveSettings::setSixStepVdcUsage(double usage)
{
    assign(m_sixStepVdcUsage, usage, &DriveSettings::sixStepVdcUsageChanged);
}

void DriveSettings::setTransistorName(const QString &name)
{
    assign(m_transistorName, name, &DriveSettings::transistorNameChanged);
}

void DriveSettings::setTransistorInParallel(int count)
{
    assign(m_transistorInParallel, count, &DriveSettings::transistorInParallelChanged);
}

// Enumerations travel as their 32-bit value.
void DriveSettings::save(QDataStream &out) const
{
    out << streamVersion << m_waveformCurrent << m_methodInputCurrent << m_currentSupplyRMS << m_currentSupplyPeak
        << m_densitySupplyRMS << m_currentPhaseRMS << m_currentSupplyDC << m_voltageSupplyDC << m_driverType
        << m_switchingDeadTime << m_currentHysteresis << m_frequencySamplingPWM << m_switchDutyCycle
        << m_commutationAdvanceAngle << m_sixStepOptions << m_phaseCurrentLimit << m_phaseCurrentHysteresis
        << m_sixStepVdcUsage << m_transistorName << m_transistorInParallel;
}

bool DriveSettings::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > streamVersion)
        return false;
    in >> m_waveformCurrent >> m_methodInputCurrent >> m_currentSupplyRMS >> m_currentSupplyPeak
        >> m_densitySupplyRMS;
    if (version >= 2)
        in >> m_currentPhaseRMS >> m_currentSupplyDC;
    in >> m_voltageSupplyDC >> m_driverType >> m_switchingDeadTime >> m_currentHysteresis >> m_frequencySamplingPWM
        >> m_switchDutyCycle >> m_commutationAdvanceAngle >> m_sixStepOptions >> m_phaseCurrentLimit
        >> m_phaseCurrentHysteresis >> m_sixStepVdcUsage >> m_transistorName >> m_transistorInParallel;
    // The editors and the solver's texts switch on these: damage must not reach them,
    // not even in an object whose load failed further on.
    using StreamChecks::checkEnumerator;
    checkEnumerator(in, m_waveformCurrent, Sinusoidal, QStringLiteral("the current waveform"));
    checkEnumerator(in, m_methodInputCurrent, RMSSupplyCurrent, QStringLiteral("the current input method"));
    checkEnumerator(in, m_driverType, CurrentHysteresisPWM, QStringLiteral("the drive type"));
    checkEnumerator(in, m_switchDutyCycle, Deg120, QStringLiteral("the switch duty cycle"));
    checkEnumerator(in, m_sixStepOptions, General, QStringLiteral("the six-step option"));
    return true;
}
