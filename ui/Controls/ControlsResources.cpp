#include "ui/Controls/ControlsResources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE may not stand inside a namespace; this function is its one home.
void initControlsResources()
{
    Q_INIT_RESOURCE(controls);
}
