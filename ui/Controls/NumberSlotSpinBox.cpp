#include "ui/Controls/NumberSlotSpinBox.h"

#include "base/Machine.h"

namespace {

constexpr int phases = 3;

} // namespace

NumberSlotSpinBox::NumberSlotSpinBox(QWidget *parent)
    : CountSpinBox(parent)
{
    setSingleStep(phases);
    setRange(Machine::fewestSlots, Machine::mostSlots);
}

int NumberSlotSpinBox::legalCount(int count) const
{
    const int remainder = ((count % phases) + phases) % phases;
    return count - remainder + (remainder == 2 ? phases : 0);
}
