#include "ui/Controls/EnumComboBoxes.h"

#include <QMetaEnum>

namespace {

// Enumerations travel as int in the items, so that findData compares them as numbers.
template <typename Enum>
Enum enumAt(const QComboBox *box, int index, Enum unknown)
{
    const QVariant data = box->itemData(index);
    return data.isValid() ? Enum(data.toInt()) : unknown;
}

} // namespace

WindingLayersComboBox::WindingLayersComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
    setValueItems({{1, Winding::numberLayersString(1)}, {2, Winding::numberLayersString(2)}});
}

int WindingLayersComboBox::value(int index) const
{
    return enumAt(this, index, 0);
}

void WindingLayersComboBox::setCurrentValue(int numberLayers)
{
    selectValue(numberLayers);
}

void WindingLayersComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

WindingLayersOrientationComboBox::WindingLayersOrientationComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
    setValueItems({{int(Winding::UpperLower), Winding::toString(Winding::UpperLower)},
                   {int(Winding::LeftRight), Winding::toString(Winding::LeftRight)}});
}

Winding::LayersOrientation WindingLayersOrientationComboBox::value(int index) const
{
    return enumAt(this, index, Winding::LayersOrientation(0));
}

void WindingLayersOrientationComboBox::setCurrentValue(Winding::LayersOrientation orientation)
{
    selectValue(int(orientation));
}

void WindingLayersOrientationComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

WindingTypeComboBox::WindingTypeComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
    setValueItems({{int(Winding::Planar), Winding::toString(Winding::Planar)},
                   {int(Winding::Toroidal), Winding::toString(Winding::Toroidal)}});
}

Winding::Type WindingTypeComboBox::value(int index) const
{
    return enumAt(this, index, Winding::Type(0));
}

void WindingTypeComboBox::setCurrentValue(Winding::Type type)
{
    selectValue(int(type));
}

void WindingTypeComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

MiddleTypeComboBox::MiddleTypeComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
    const QMetaEnum names = QMetaEnum::fromType<ElementTypes::MiddleType>();
    QVector<Item> items;
    for (ElementTypes::MiddleType type : {ElementTypes::Yoke, ElementTypes::Yokeless})
        items.append({int(type), QString::fromLatin1(names.valueToKey(type))});
    setValueItems(items);
}

ElementTypes::MiddleType MiddleTypeComboBox::value(int index) const
{
    return enumAt(this, index, ElementTypes::UnknownType);
}

void MiddleTypeComboBox::setCurrentValue(ElementTypes::MiddleType type)
{
    selectValue(int(type));
}

void MiddleTypeComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

PoleArrangementComboBox::PoleArrangementComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
    setItems({PoleArrangement::NN, PoleArrangement::NS, PoleArrangement::NSNS, PoleArrangement::NSSN,
              PoleArrangement::NNSS, PoleArrangement::NNNN});
}

PoleArrangement::Type PoleArrangementComboBox::value(int index) const
{
    return enumAt(this, index, PoleArrangement::Unknown);
}

void PoleArrangementComboBox::setItems(const QVariantList &items)
{
    QVector<Item> arrangements;
    for (const QVariant &item : items) {
        bool isNumber = false;
        const auto type = PoleArrangement::Type(item.toInt(&isNumber));
        if (!isNumber)
            continue;
        const QString text = PoleArrangement::text(type);
        arrangements.append({int(type), text.isEmpty() ? tr("Unknown pole arrangement") : text});
    }
    setValueItems(arrangements);
}

void PoleArrangementComboBox::setCurrentValue(PoleArrangement::Type type)
{
    selectValue(int(type));
}

void PoleArrangementComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

WindingConnectionComboBox::WindingConnectionComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
}

QString WindingConnectionComboBox::value(int index) const
{
    return itemData(index).toString();
}

void WindingConnectionComboBox::setItems(const QStringList &items)
{
    QVector<Item> connections;
    for (const QString &item : items)
        connections.append({item, item});
    setValueItems(connections);
}

void WindingConnectionComboBox::setCurrentValue(const QString &connection)
{
    selectValue(connection);
}

void WindingConnectionComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}

TimePlotTypeComboBox::TimePlotTypeComboBox(QWidget *parent)
    : ValueComboBox(parent)
{
    QVector<Item> items;
    for (const char *type : {"waveform", "smoothed waveform", "spectrum"})
        items.append({QString::fromLatin1(type), tr(type)});
    setValueItems(items);
}

QString TimePlotTypeComboBox::value(int index) const
{
    return itemData(index).toString();
}

void TimePlotTypeComboBox::setCurrentValue(const QString &type)
{
    selectValue(type);
}

void TimePlotTypeComboBox::announceCurrentValue(int index)
{
    emit currentValueChanged(value(index));
}
