#include "ui/Controls/ValueComboBox.h"

#include <QSignalBlocker>

ValueComboBox::ValueComboBox(QWidget *parent)
    : QComboBox(parent)
{
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { announceCurrentValue(index); });
}

void ValueComboBox::setValueItems(const QVector<Item> &items)
{
    const QSignalBlocker blocker(this);
    const QVariant current = currentData();
    clear();
    for (const Item &item : items)
        addItem(item.text, item.value);
    const int index = findData(current);
    setCurrentIndex(index >= 0 ? index : 0);
}

void ValueComboBox::selectValue(const QVariant &value)
{
    const int index = findData(value);
    if (index >= 0)
        setCurrentIndex(index);
}
