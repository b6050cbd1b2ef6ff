#include "ui/ModelComboBoxes.h"

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "meshing/Mesh.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "winding/Winding.h"
#include "winding/WireGauge.h"

#include <QMetaProperty>

ModelValueComboBox::ModelValueComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
}

template <typename Enum>
void ModelValueComboBox::setEnumItems(std::initializer_list<Enum> values, QString (*name)(Enum))
{
    QVector<Item> items;
    for (Enum value : values)
        items.append({int(value), name(value)});
    setValueItems(items);
}

QVariant ModelValueComboBox::currentValueFor(const QObject *target, const char *property) const
{
    const QVariant value = currentValue();
    const QMetaObject *meta = target->metaObject();
    const QMetaProperty targetProperty = meta->property(meta->indexOfProperty(property));
    if (!targetProperty.isEnumType())
        return value;
    // An enumeration is stored as its int.
    const int number = value.toInt();
    return QVariant(targetProperty.userType(), &number);
}

void ModelValueComboBox::setCurrentValue(const QVariant &value)
{
    const bool numbered = itemData(0).type() == QVariant::Int;
    selectValue(numbered ? QVariant(value.toInt()) : value);
}

void ModelValueComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(itemData(index));
}

SolverTypeComboBox::SolverTypeComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    using A = MagnetostaticAnalysis;
    setEnumItems({A::Nonlinear, A::Linear}, &A::solverTypeName);
}

AccuracyComboBox::AccuracyComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    using A = MagnetostaticAnalysis;
    setEnumItems({A::SinglePoint, A::TwoPoint, A::FourPoint, A::EightPoint, A::DefinePoint}, &A::accuracyName);
}

TimePeriodModeComboBox::TimePeriodModeComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    using A = MagnetostaticAnalysis;
    setEnumItems({A::OneElecticalPeriod, A::DefinePeriod}, &A::timePeriodModeName);
}

WaveformCurrentComboBox::WaveformCurrentComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    using D = DriveSettings;
    setEnumItems({D::Sinusoidal, D::Trapezoidal}, &D::waveformCurrentName);
}

MethodInputCurrentComboBox::MethodInputCurrentComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    using D = DriveSettings;
    setEnumItems({D::RMSSupplyCurrent, D::PeakSupplyCurrent, D::RMSSupplyDensity, D::RMSPhaseCurrent, D::DCSupplyCurrent},
                 &D::methodInputCurrentName);
}

SwitchDutyCycleComboBox::SwitchDutyCycleComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    using D = DriveSettings;
    setEnumItems({D::Deg120, D::Deg180}, &D::switchDutyCycleName);
}

BoundaryConditionComboBox::BoundaryConditionComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    setValueItems({{int(Document::Antiperiodic), tr("Antiperiodic")},
                   {int(Document::Periodic), tr("Periodic")},
                   {int(Document::None), tr("None")}});
}

AirgapMeshQualityComboBox::AirgapMeshQualityComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    QVector<Item> items;
    for (double quality : {1.0, 1.5, 2.0})
        items.append({quality, Mesh::airgapQualityName(quality)});
    setValueItems(items);
}

CountComboBox::CountComboBox(const QVector<int> &counts, QWidget *parent)
    : ModelValueComboBox(parent)
{
    QVector<Item> items;
    for (int count : counts)
        items.append({count, QString::number(count)});
    setValueItems(items);
}

WireSizeMethodComboBox::WireSizeMethodComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    setValueItems({{int(Winding::WireDiameter), tr("Wire diameter")},
                   {int(Winding::AWG), tr("Wire gauge (AWG)")},
                   {int(Winding::SWG), tr("Wire gauge (SWG)")},
                   {int(Winding::FillFactor), tr("Fill factor")}});
}

WindingCircuitComboBox::WindingCircuitComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    setValueItems({{int(Winding::Star), tr("Star connection")}, {int(Winding::Delta), tr("Delta connection")}});
}

ModeLayoutComboBox::ModeLayoutComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    setEnumItems({Winding::Automatic, Winding::Manual},
                 static_cast<QString (*)(Winding::ModeLayout)>(&Winding::toString));
}

WireGaugeComboBox::WireGaugeComboBox(Table table, QWidget *parent)
    : ModelValueComboBox(parent)
{
    QVector<Item> items;
    for (const Winding::WireGauge &gauge : table == Awg ? Winding::awgTable() : Winding::swgTable())
        items.append({gauge.name, tr("%1 (%2 mm)").arg(gauge.name).arg(gauge.diameter)});
    setValueItems(items);
}

EndturnScriptComboBox::EndturnScriptComboBox(QWidget *parent)
    : ModelValueComboBox(parent)
{
    QVector<Item> items;
    for (const ScriptDescribe &entry : ScriptDescribeList::endturns()) {
        if (!entry.script().isEmpty())
            items.append({entry.script(), entry.name()});
    }
    setValueItems(items);
}
