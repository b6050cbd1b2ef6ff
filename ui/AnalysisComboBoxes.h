#pragma once

#include "ui/Controls/ValueComboBox.h"

#include <initializer_list>

// A combo box of one of the analysis's or the drive's enumerations: the value is the
// enumerator as a number, so that it goes to the property through the undo stack as is.
class AnalysisEnumComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(int currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged USER true)
public:
    int currentValue() const { return value(currentIndex()); }
    int value(int index) const;
    // The current value in the type of the target's enum property, so that the undo
    // stack stores and compares it as the property does.
    QVariant currentValueFor(const QObject *target, const char *property) const;

public slots:
    void setCurrentValue(int value);

signals:
    void currentValueChanged(int value);

protected:
    explicit AnalysisEnumComboBox(QWidget *parent);
    template <typename Enum>
    void setEnumItems(std::initializer_list<Enum> values, QString (*name)(Enum));
    void announceCurrentValue(int index) override;
};

class SolverTypeComboBox : public AnalysisEnumComboBox
{
public:
    explicit SolverTypeComboBox(QWidget *parent = nullptr);
};

class AccuracyComboBox : public AnalysisEnumComboBox
{
public:
    explicit AccuracyComboBox(QWidget *parent = nullptr);
};

class TimePeriodModeComboBox : public AnalysisEnumComboBox
{
public:
    explicit TimePeriodModeComboBox(QWidget *parent = nullptr);
};

class WaveformCurrentComboBox : public AnalysisEnumComboBox
{
public:
    explicit WaveformCurrentComboBox(QWidget *parent = nullptr);
};

class MethodInputCurrentComboBox : public AnalysisEnumComboBox
{
public:
    explicit MethodInputCurrentComboBox(QWidget *parent = nullptr);
};

class SwitchDutyCycleComboBox : public AnalysisEnumComboBox
{
public:
    explicit SwitchDutyCycleComboBox(QWidget *parent = nullptr);
};
