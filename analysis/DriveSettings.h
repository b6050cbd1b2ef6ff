#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

class Document;
class QDataStream;

// How the machine is supplied in an analysis. One input value per method is kept
// side by side; the selected method decides which one the solver gets.
class DriveSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(WaveformCurrent waveformCurrent READ waveformCurrent WRITE setWaveformCurrent NOTIFY waveformCurrentChanged)
    Q_PROPERTY(MethodInputCurrent methodInputCurrent READ methodInputCurrent WRITE setMethodInputCurrent NOTIFY methodInputCurrentChanged)
    Q_PROPERTY(double currentSupplyRMS READ currentSupplyRMS WRITE setCurrentSupplyRMS NOTIFY currentSupplyRMSChanged)
    Q_PROPERTY(double currentSupplyPeak READ currentSupplyPeak WRITE setCurrentSupplyPeak NOTIFY currentSupplyPeakChanged)
    Q_PROPERTY(double densitySupplyRMS READ densitySupplyRMS WRITE setDensitySupplyRMS NOTIFY densitySupplyRMSChanged)
    Q_PROPERTY(double currentPhaseRMS READ currentPhaseRMS WRITE setCurrentPhaseRMS NOTIFY currentPhaseRMSChanged)
    Q_PROPERTY(double currentSupplyDC READ currentSupplyDC WRITE setCurrentSupplyDC NOTIFY currentSupplyDCChanged)
    Q_PROPERTY(double voltageSupplyDC READ voltageSupplyDC WRITE setVoltageSupplyDC NOTIFY voltageSupplyDCChanged)
    Q_PROPERTY(DriveType driverType READ driverType WRITE setDriverType NOTIFY driverTypeChanged)
    Q_PROPERTY(double switchingDeadTime READ switchingDeadTime WRITE setSwitchingDeadTime NOTIFY switchingDeadTimeChanged)
    Q_PROPERTY(double currentHysteresis READ currentHysteresis WRITE setCurrentHysteresis NOTIFY currentHysteresisChanged)
    Q_PROPERTY(double frequencySamplingPWM READ frequencySamplingPWM WRITE setFrequencySamplingPWM NOTIFY frequencySamplingPWMChanged)
    Q_PROPERTY(SwitchDutyCycle switchDutyCycle READ switchDutyCycle WRITE setSwitchDutyCycle NOTIFY switchDutyCycleChanged)
    Q_PROPERTY(double commutationAdvanceAngle READ commutationAdvanceAngle WRITE setCommutationAdvanceAngle NOTIFY commutationAdvanceAngleChanged)
    Q_PROPERTY(SixStepOptions sixStepOptions READ sixStepOptions WRITE setSixStepOptions NOTIFY sixStepOptionsChanged)
    Q_PROPERTY(double phaseCurrentLimit READ phaseCurrentLimit WRITE setPhaseCurrentLimit NOTIFY phaseCurrentLimitChanged)
    Q_PROPERTY(double phaseCurrentHysteresis READ phaseCurrentHysteresis WRITE setPhaseCurrentHysteresis NOTIFY phaseCurrentHysteresisChanged)
    Q_PROPERTY(double sixStepVdcUsage READ sixStepVdcUsage WRITE setSixStepVdcUsage NOTIFY sixStepVdcUsageChanged)
    Q_PROPERTY(QString transistorName READ transistorName WRITE setTransistorName NOTIFY transistorNameChanged)
    Q_PROPERTY(int transistorInParallel READ transistorInParallel WRITE setTransistorInParallel NOTIFY transistorInParallelChanged)

public:
    enum WaveformCurrent : int {
        Sinusoidal = 0,
        Trapezoidal = 1,
    };
    Q_ENUM(WaveformCurrent)

    enum MethodInputCurrent : int {
        UnknowMethodInputCurrent = 0,
        RMSSupplyCurrent = 1,
        PeakSupplyCurrent = 2,
        RMSSupplyDensity = 3,
        RMSPhaseCurrent = 4,
        DCSupplyCurrent = 5,
    };
    Q_ENUM(MethodInputCurrent)

    enum DriveType : int {
        CurrentHysteresisPWM = 1,
        SpaceVectorPWM = 2,
        SixStep = 3,
    };
    Q_ENUM(DriveType)

    enum SwitchDutyCycle : int {
        Deg120 = 120,
        Deg180 = 180,
    };
    Q_ENUM(SwitchDutyCycle)

    enum SixStepOptions : int {
        General = 1,
        LimitedMaximumCurrent = 2,
        VariabledDCVoltage = 3,
    };
    Q_ENUM(SixStepOptions)

    explicit DriveSettings(Document *document);

    Document *document() const { return m_document; }

    // The texts by which the solver and the editors know the values.
    static QString waveformCurrentName(WaveformCurrent waveform);
    static QString methodInputCurrentName(MethodInputCurrent method);
    static QString driveTypeName(DriveType type);
    static QString switchDutyCycleName(SwitchDutyCycle dutyCycle);
    static QString sixStepOptionsName(SixStepOptions options);

    // The input value of the selected method; 0 for an unknown method.
    double currentValue() const;

    // An editor's change, made undoable by the document.
    void setPropertyUndoable(const QString &name, const QVariant &value);

    WaveformCurrent waveformCurrent() const { return m_waveformCurrent; }
    void setWaveformCurrent(WaveformCurrent waveform);
    MethodInputCurrent methodInputCurrent() const { return m_methodInputCurrent; }
    void setMethodInputCurrent(MethodInputCurrent method);
    double currentSupplyRMS() const { return m_currentSupplyRMS; }
    void setCurrentSupplyRMS(double current);
    double currentSupplyPeak() const { return m_currentSupplyPeak; }
    void setCurrentSupplyPeak(double current);
    double densitySupplyRMS() const { return m_densitySupplyRMS; }
    void setDensitySupplyRMS(double density);
    double currentPhaseRMS() const { return m_currentPhaseRMS; }
    void setCurrentPhaseRMS(double current);
    double currentSupplyDC() const { return m_currentSupplyDC; }
    void setCurrentSupplyDC(double current);
    double voltageSupplyDC() const { return m_voltageSupplyDC; }
    void setVoltageSupplyDC(double voltage);
    DriveType driverType() const { return m_driverType; }
    void setDriverType(DriveType type);
    double switchingDeadTime() const { return m_switchingDeadTime; }
    void setSwitchingDeadTime(double time);
    double currentHysteresis() const { return m_currentHysteresis; }
    void setCurrentHysteresis(double hysteresis);
    double frequencySamplingPWM() const { return m_frequencySamplingPWM; }
    void setFrequencySamplingPWM(double frequency);
    SwitchDutyCycle switchDutyCycle() const { return m_switchDutyCycle; }
    void setSwitchDutyCycle(SwitchDutyCycle dutyCycle);
    double commutationAdvanceAngle() const { return m_commutationAdvanceAngle; }
    void setCommutationAdvanceAngle(double angle);
    SixStepOptions sixStepOptions() const { return m_sixStepOptions; }
    void setSixStepOptions(SixStepOptions options);
    double phaseCurrentLimit() const { return m_phaseCurrentLimit; }
    void setPhaseCurrentLimit(double current);
    double phaseCurrentHysteresis() const { return m_phaseCurrentHysteresis; }
    void setPhaseCurrentHysteresis(double hysteresis);
    double sixStepVdcUsage() const { return m_sixStepVdcUsage; }
    void setSixStepVdcUsage(double usage);
    QString transistorName() const { return m_transistorName; }
    void setTransistorName(const QString &name);
    int transistorInParallel() const { return m_transistorInParallel; }
    void setTransistorInParallel(int count);

    // The drive's block of a document file. load returns false, having changed
    // nothing, for a version newer than this program, and emits no change signals.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

signals:
    void waveformCurrentChanged();
    void methodInputCurrentChanged();
    void currentSupplyRMSChanged();
    void currentSupplyPeakChanged();
    void densitySupplyRMSChanged();
    void currentPhaseRMSChanged();
    void currentSupplyDCChanged();
    void voltageSupplyDCChanged();
    void driverTypeChanged();
    void switchingDeadTimeChanged();
    void currentHysteresisChanged();
    void frequencySamplingPWMChanged();
    void switchDutyCycleChanged();
    void commutationAdvanceAngleChanged();
    void sixStepOptionsChanged();
    void phaseCurrentLimitChanged();
    void phaseCurrentHysteresisChanged();
    void sixStepVdcUsageChanged();
    void transistorNameChanged();
    void transistorInParallelChanged();
    void changed();

private:
    template <typename T, typename Signal>
    void assign(T &field, const T &value, Signal signal);

    Document *m_document;
    WaveformCurrent m_waveformCurrent = Sinusoidal;
    MethodInputCurrent m_methodInputCurrent = RMSSupplyCurrent;
    double m_currentSupplyRMS = 0.0;
    double m_currentSupplyPeak = 0.0;
    double m_densitySupplyRMS = 0.0;
    double m_currentPhaseRMS = 0.0;
    double m_currentSupplyDC = 0.0;
    double m_voltageSupplyDC = 1.0;
    DriveType m_driverType = CurrentHysteresisPWM;
    double m_switchingDeadTime = 2e-6;
    double m_currentHysteresis = 15.0;
    double m_frequencySamplingPWM = 1000.0;
    SwitchDutyCycle m_switchDutyCycle = Deg120;
    double m_commutationAdvanceAngle = 0.0;
    SixStepOptions m_sixStepOptions = General;
    double m_phaseCurrentLimit = 1.0;
    double m_phaseCurrentHysteresis = 15.0;
    double m_sixStepVdcUsage = 100.0;
    QString m_transistorName;
    int m_transistorInParallel = 1;
};
