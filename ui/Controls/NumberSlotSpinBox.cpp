#include "ui/Controls/NumberSlotSpinBox.h"

namespace {

constexpr int phases = 3;
constexpr int fewestSlots = 6;
constexpr int mostSlots = 501;

} // namespace

NumberSlotSpinBox::NumberSlotSpinBox(QWidget *parent)
    : CountSpinBox(parent)
{
    setSingleStep(phases);
    setRange(fewestSlots, mostSlots);
}

int NumberSlotSpinBox::legalCount(int count) const
{
    const int remainder = ((count % phases) + phases) % phases;
    return count - remainder + (remainder == 2 ? phases : 0);
}
