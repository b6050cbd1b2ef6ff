#pragma once

#include "ui/Controls/CountSpinBox.h"

// The number of poles or pole pairs: any count within the range.
class NumberPoleSpinBox : public CountSpinBox
{
    Q_OBJECT
public:
    explicit NumberPoleSpinBox(QWidget *parent = nullptr);
};
