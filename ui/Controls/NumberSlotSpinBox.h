#pragma once

#include "ui/Controls/CountSpinBox.h"

// The number of stator slots: a multiple of three, one slot per phase and tooth group.
class NumberSlotSpinBox : public CountSpinBox
{
    Q_OBJECT
public:
    explicit NumberSlotSpinBox(QWidget *parent = nullptr);

protected:
    // The nearest multiple of three, a remainder of one going down and of two going up.
    int legalCount(int count) const override;
};
