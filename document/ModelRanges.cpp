#include "document/ModelRanges.h"

#include <QHash>
#include <cmath>

#include "base/ElementTypes.h"
#include "base/Machine.h"
#include "geometry/PoleArrangement.h"
#include "winding/Winding.h"

namespace ModelRanges {

namespace {

struct Range {
    double lowest;
    double highest;
    // Counts and enumerators are whole numbers.
    bool whole;
};

// Up to a kilometre: beyond any machine, and far inside what lengths are rounded with.
const Range length{0.0, 1e6, false};

// The names are those of the configuration and those of the elements' properties.
const QHash<QString, Range> &ranges()
{
    static const QHash<QString, Range> table = [] {
        const Range slotCounts{Machine::fewestSlots, Machine::mostSlots, true};
        const Range polePairs{1, Machine::mostPolePairs, true};
        const Range middleType{ElementTypes::Yokeless, ElementTypes::Yoke, true};
        QHash<QString, Range> entries{
            {QStringLiteral("statorNumberSlots"), slotCounts},
            {QStringLiteral("numberSlots"), slotCounts},
            {QStringLiteral("rotorNumberPolePairs"), polePairs},
            {QStringLiteral("numberPolePairs"), polePairs},
            {QStringLiteral("windingLayers"), {1, 2, true}},
            {QStringLiteral("windingType"), {Winding::Planar, Winding::Toroidal, true}},
            {QStringLiteral("windingLayersOrientation"), {Winding::UpperLower, Winding::LeftRight, true}},
            {QStringLiteral("statorType"), middleType},
            {QStringLiteral("rotorType"), middleType},
            {QStringLiteral("typeMiddleItem"), middleType},
            {QStringLiteral("poleArrangement"), {PoleArrangement::Unknown, PoleArrangement::NNNN, true}},
            {QStringLiteral("statorOuterDiameter"), length},
            {QStringLiteral("statorInnerDiameter"), length},
            {QStringLiteral("rotorOuterDiameter"), length},
            {QStringLiteral("rotorInnerDiameter"), length},
            {QStringLiteral("outerDiameter"), length},
            {QStringLiteral("innerDiameter"), length},
            {QStringLiteral("height"), length},
            {QStringLiteral("thickness"), length},
        };
        for (int id = 1; id <= 3; ++id) {
            entries.insert(QStringLiteral("statorHeight%1").arg(id), length);
            entries.insert(QStringLiteral("rotorHeight%1").arg(id), length);
        }
        return entries;
    }();
    return table;
}

} // namespace

QString check(const QString &name, const QVariant &value)
{
    const auto range = ranges().constFind(name);
    if (range == ranges().constEnd())
        return QString();
    // The pole arrangement may also be given by its text, which names one or none.
    if (name == QLatin1String("poleArrangement") && value.type() == QVariant::String)
        return QString();
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    const bool fits = isNumber && std::isfinite(number) && number >= range->lowest && number <= range->highest
                   && (!range->whole || number == std::floor(number));
    if (fits)
        return QString();
    return QStringLiteral("%1 = %2 is outside %3 to %4")
        .arg(name, value.toString())
        .arg(range->lowest)
        .arg(range->highest);
}

QString check(const QVariantMap &values)
{
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        const QString fault = check(it.key(), it.value());
        if (!fault.isEmpty())
            return fault;
    }
    return QString();
}

} // namespace ModelRanges
