#include "ui/Controls/NumberPoleSpinBox.h"

NumberPoleSpinBox::NumberPoleSpinBox(QWidget *parent)
    : CountSpinBox(parent)
{
}
