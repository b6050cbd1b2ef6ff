#pragma once

#include "ui/Controls/ValueComboBox.h"

#include <initializer_list>

// A combo box of a value of the design's model: an enumerator, held as its number, or
// a plain value such as a quality factor. The value goes to the property through the
// undo stack in the property's own type.
class ModelValueComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(QVariant currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged USER true)
public:
    QVariant currentValue() const { return itemData(currentIndex()); }
    // The current value in the type of the target's property, so that the undo stack
    // stores and compares it as the property does.
    QVariant currentValueFor(const QObject *target, const char *property) const;

public slots:
    // An enumerator of any type selects the item of its number.
    void setCurrentValue(const QVariant &value);

signals:
    void currentValueChanged(const QVariant &value);

protected:
    explicit ModelValueComboBox(QWidget *parent);
    template <typename Enum>
    void setEnumItems(std::initializer_list<Enum> values, QString (*name)(Enum));
    void announceCurrentValue(int index) override;
};

class SolverTypeComboBox : public ModelValueComboBox
{
public:
    explicit SolverTypeComboBox(QWidget *parent = nullptr);
};

class AccuracyComboBox : public ModelValueComboBox
{
public:
    explicit AccuracyComboBox(QWidget *parent = nullptr);
};

class TimePeriodModeComboBox : public ModelValueComboBox
{
public:
    explicit TimePeriodModeComboBox(QWidget *parent = nullptr);
};

class WaveformCurrentComboBox : public ModelValueComboBox
{
public:
    explicit WaveformCurrentComboBox(QWidget *parent = nullptr);
};

class MethodInputCurrentComboBox : public ModelValueComboBox
{
public:
    explicit MethodInputCurrentComboBox(QWidget *parent = nullptr);
};

class SwitchDutyCycleComboBox : public ModelValueComboBox
{
public:
    explicit SwitchDutyCycleComboBox(QWidget *parent = nullptr);
};

class BoundaryConditionComboBox : public ModelValueComboBox
{
public:
    explicit BoundaryConditionComboBox(QWidget *parent = nullptr);
};

// The row length of the air-gap meshes, in units of the layer height.
class AirgapMeshQualityComboBox : public ModelValueComboBox
{
public:
    explicit AirgapMeshQualityComboBox(QWidget *parent = nullptr);
};

// A count chosen from a short list, such as the slices of the mesh.
class CountComboBox : public ModelValueComboBox
{
public:
    CountComboBox(const QVector<int> &counts, QWidget *parent = nullptr);
};

class WireSizeMethodComboBox : public ModelValueComboBox
{
public:
    explicit WireSizeMethodComboBox(QWidget *parent = nullptr);
};

class WindingCircuitComboBox : public ModelValueComboBox
{
public:
    explicit WindingCircuitComboBox(QWidget *parent = nullptr);
};

class ModeLayoutComboBox : public ModelValueComboBox
{
public:
    explicit ModeLayoutComboBox(QWidget *parent = nullptr);
};

// The names of one wire gauge table, with their diameters.
class WireGaugeComboBox : public ModelValueComboBox
{
public:
    enum Table { Awg, Swg };
    explicit WireGaugeComboBox(Table table, QWidget *parent = nullptr);
};

// The end-turn scripts of the catalogue by their names; the value is the script file.
class EndturnScriptComboBox : public ModelValueComboBox
{
public:
    explicit EndturnScriptComboBox(QWidget *parent = nullptr);
};
