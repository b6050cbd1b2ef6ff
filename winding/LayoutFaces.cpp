#include "winding/LayoutFaces.h"

#include <QDebug>
#include <utility>

namespace Winding {

int countLayouts(Machine::Type type, bool onePerBody)
{
    switch (type) {
    case Machine::SRS:
        return 2;
    case Machine::SRSRS:
        return onePerBody ? 3 : 4;
    case Machine::RSR:
        return onePerBody ? 1 : 2;
    case Machine::RSRSR:
        return onePerBody ? 2 : 4;
    case Machine::SR:
    case Machine::UnknownType:
        break;
    }
    return 1;
}

int statorItemOfLayout(Machine::Type type, bool onePerBody, int index)
{
    QVector<int> items{1};
    switch (type) {
    case Machine::SRS:
        items = {1, 2};
        break;
    case Machine::SRSRS:
        items = onePerBody ? QVector<int>{1, 2, 3} : QVector<int>{1, 2, 2, 3};
        break;
    case Machine::RSRSR:
        items = onePerBody ? QVector<int>{1, 2} : QVector<int>{1, 1, 2, 2};
        break;
    case Machine::SR:
    case Machine::RSR:
        // Every face of these machines belongs to the one stator body.
        return 1;
    case Machine::UnknownType:
        break;
    }
    if (index < 0 || index >= items.size()) {
        qWarning() << "No stator body for winding layout" << index << "of machine type" << Machine::typeText(type);
        return 0;
    }
    return items.at(index);
}

int reverseKeyOfLayout(Machine::Type type, int countLayouts, int index)
{
    QVector<int> keys;
    if ((type == Machine::SRSRS || type == Machine::RSRSR) && countLayouts == 4)
        keys = {0, 2, 3, 4};
    else if (type == Machine::SRSRS && countLayouts == 3)
        keys = {0, 3, 4};
    else if ((type == Machine::SRS || type == Machine::RSR) && countLayouts == 2)
        keys = {0, 2};
    else if (type == Machine::RSRSR && countLayouts == 2)
        keys = {2, 4};
    return keys.value(index, 0);
}

void reverseLayout(Layout &layout)
{
    for (CoilList &list : layout) {
        for (Coil &coil : list) {
            std::swap(coil.slotFrom, coil.slotTo);
            std::swap(coil.layerFrom, coil.layerTo);
            coil.orientation = Coil::Orientation(-coil.orientation);
        }
    }
}

void swapLayers(Layout &layout)
{
    for (CoilList &list : layout) {
        for (Coil &coil : list)
            std::swap(coil.layerFrom, coil.layerTo);
    }
}

QVector<Layout> faceLayouts(const Layout &base, const FaceSettings &settings)
{
    QVector<Layout> layouts(4);
    for (int index = 0; index < qMin(settings.countLayouts, layouts.size()); ++index) {
        Layout &layout = layouts[index];
        layout = base;
        const int key = reverseKeyOfLayout(settings.machineType, settings.countLayouts, index);
        if (key != 0 && settings.reverseFlag && settings.reverseFlag(key))
            reverseLayout(layout);
        if (settings.layersSwappable && settings.reverseLayers.value(index))
            swapLayers(layout);
    }
    return layouts;
}

} // namespace Winding
