#pragma once

#include <QComboBox>
#include <QVariant>
#include <QVector>

// The common part of the combo boxes that show a value of an enumeration or a list:
// each item carries its value as data, and the current item stands for the current
// value. Subclasses give the value its type, its property and its signal.
class ValueComboBox : public QComboBox
{
    Q_OBJECT
public:
    struct Item
    {
        QVariant value;
        QString text;
    };

protected:
    explicit ValueComboBox(QWidget *parent = nullptr);

    // Replaces the items without announcing it; the current value stays if it is
    // among the new ones.
    void setValueItems(const QVector<Item> &items);
    // The item of the value becomes current; a value without an item changes nothing.
    void selectValue(const QVariant &value);
    // Raised for every change of the current item, with its index (-1 for none). Not
    // pure: while a box is torn down its items may still go, with the subclass gone.
    virtual void announceCurrentValue(int) {}
};
