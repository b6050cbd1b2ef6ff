#include "winding/LayoutSignature.h"

#include <QDebug>
#include <algorithm>

namespace Winding {

QString layoutSignature(const Layout &base, const LayoutSettings &settings)
{
    const int slotCount = settings.numberSlots;
    const int layers = settings.effectiveNumberLayers();
    if (!settings.isFeasible() || !settings.isParallelPathsValid() || (layers == 1 && slotCount % 2 != 0)
        || (settings.type == Toroidal && !isToroidalLayoutValid(base)))
        return QString();
    if (layers != 1 && layers != 2) {
        qCritical() << "Unsupported number layers" << layers;
        return QString();
    }

    const int positions = layers * slotCount;
    QString signature(positions * 2, QLatin1Char('.'));
    auto inside = [positions](int position) { return position >= 0 && position < positions; };
    auto write = [&signature](int position, QChar sign, QChar letter) {
        signature[2 * position] = sign;
        signature[2 * position + 1] = letter;
    };
    // Upper and lower layers of a planar winding are counted from the other face.
    const bool flipLayers = settings.type == Planar && settings.layersOrientation == UpperLower;
    auto positionOf = [flipLayers](int slot, int layer) { return 2 * slot + (flipLayers ? 1 - layer : layer); };

    for (int phase = A; phase < Count; ++phase) {
        const QChar letter = toString(Phase(phase)).at(0);
        for (const Coil &coil : base.at(phase)) {
            if (layers == 1) {
                if (inside(coil.slotFrom))
                    write(coil.slotFrom, QLatin1Char('+'), letter);
                if (inside(coil.slotTo))
                    write(coil.slotTo, QLatin1Char('-'), letter);
                continue;
            }
            const int from = positionOf(coil.slotFrom, coil.layerFrom);
            const int to = positionOf(coil.slotTo, coil.layerTo);
            if (!inside(from) || !inside(to))
                continue;
            write(from, QLatin1Char('+'), letter);
            write(to, QLatin1Char('-'), letter);
        }
    }
    return signature;
}

bool isToroidalLayoutValid(const Layout &layout)
{
    CoilList coils;
    for (const CoilList &list : layout)
        coils << list;
    return std::all_of(coils.cbegin(), coils.cend(), [&coils](const Coil &coil) {
        const auto sharing = std::count_if(coils.cbegin(), coils.cend(), [&coil](const Coil &other) {
            return other.slotFrom == coil.slotFrom || other.slotTo == coil.slotTo;
        });
        return sharing < 2;
    });
}

} // namespace Winding
