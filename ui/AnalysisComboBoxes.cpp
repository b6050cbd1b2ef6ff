#include "ui/AnalysisComboBoxes.h"

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"

#include <QMetaProperty>

AnalysisEnumComboBox::AnalysisEnumComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
}

template <typename Enum>
void AnalysisEnumComboBox::setEnumItems(std::initializer_list<Enum> values, QString (*name)(Enum))
{
    QVector<Item> items;
    for (Enum value : values)
        items.append({int(value), name(value)});
    setValueItems(items);
}

int AnalysisEnumComboBox::value(int index) const
{
    const QVariant data = itemData(index);
    return data.isValid() ? data.toInt() : 0;
}

QVariant AnalysisEnumComboBox::currentValueFor(const QObject *target, const char *property) const
{
    const int number = currentValue();
    const QMetaObject *meta = target->metaObject();
    const QMetaProperty enumProperty = meta->property(meta->indexOfProperty(property));
    // An enumeration is stored as its int.
    return enumProperty.isEnumType() ? QVariant(enumProperty.userType(), &number) : QVariant(number);
}

void AnalysisEnumComboBox::setCurrentValue(int value)
{
    selectValue(value);
}

void AnalysisEnumComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

SolverTypeComboBox::SolverTypeComboBox(QWidget *parent)
    : AnalysisEnumComboBox(parent)
{
    using A = MagnetostaticAnalysis;
    setEnumItems({A::Nonlinear, A::Linear}, &A::solverTypeName);
}

AccuracyComboBox::AccuracyComboBox(QWidget *parent)
    : AnalysisEnumComboBox(parent)
{
    using A = MagnetostaticAnalysis;
    setEnumItems({A::SinglePoint, A::TwoPoint, A::FourPoint, A::EightPoint, A::DefinePoint}, &A::accuracyName);
}

TimePeriodModeComboBox::TimePeriodModeComboBox(QWidget *parent)
    : AnalysisEnumComboBox(parent)
{
    using A = MagnetostaticAnalysis;
    setEnumItems({A::OneElecticalPeriod, A::DefinePeriod}, &A::timePeriodModeName);
}

WaveformCurrentComboBox::WaveformCurrentComboBox(QWidget *parent)
    : AnalysisEnumComboBox(parent)
{
    using D = DriveSettings;
    setEnumItems({D::Sinusoidal, D::Trapezoidal}, &D::waveformCurrentName);
}

MethodInputCurrentComboBox::MethodInputCurrentComboBox(QWidget *parent)
    : AnalysisEnumComboBox(parent)
{
    using D = DriveSettings;
    setEnumItems({D::RMSSupplyCurrent, D::PeakSupplyCurrent, D::RMSSupplyDensity, D::RMSPhaseCurrent, D::DCSupplyCurrent},
                 &D::methodInputCurrentName);
}

SwitchDutyCycleComboBox::SwitchDutyCycleComboBox(QWidget *parent)
    : AnalysisEnumComboBox(parent)
{
    using D = DriveSettings;
    setEnumItems({D::Deg120, D::Deg180}, &D::switchDutyCycleName);
}
