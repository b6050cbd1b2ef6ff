#include "winding/LayoutGenerator.h"

#include <QDebug>
#include <QVector>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/Numeric.h"

namespace Winding {

namespace {

// One of the six phase belts of the star of slots, by its upper bound in electrical degrees.
struct Belt
{
    double upper;
    Phase phase;
    int sense;
};

// A bound belongs to the belt that ends there; qFuzzyCompare is the relative test with 1e-12.
const Belt &beltOf(double angle)
{
    static const Belt belts[] = {
        {30.0, A, 1}, {90.0, B, -1}, {150.0, C, 1}, {210.0, A, -1}, {270.0, B, 1}, {330.0, C, -1}, {360.0, A, 1},
    };
    for (const Belt &belt : belts) {
        if (angle < belt.upper || qFuzzyCompare(angle, belt.upper))
            return belt;
    }
    return belts[6];
}

int nextParallelPath(const CoilList &list, int parallelPaths)
{
    if (list.isEmpty() || list.last().parallelPath >= parallelPaths)
        return 1;
    return list.last().parallelPath + 1;
}

// A toroidal coil goes round the yoke: each side of a planar coil becomes a coil of
// its own, from one face of the body to the other, the second one wound the other way.
void splitToroidal(Layout &layout)
{
    for (CoilList &list : layout) {
        CoilList first = list;
        CoilList second = list;
        for (Coil &coil : first) {
            coil.slotTo = coil.slotFrom;
            coil.layerFrom = 0;
            coil.layerTo = 1;
        }
        for (Coil &coil : second) {
            coil.slotFrom = coil.slotTo;
            coil.layerFrom = 1;
            coil.layerTo = 0;
            coil.orientation = Coil::Orientation(-coil.orientation);
        }
        list = first;
        list.append(second);
    }
}

} // namespace

LayoutGenerator::LayoutGenerator(const LayoutSettings &settings)
    : m_settings(settings)
{
}

int LayoutGenerator::initialSpan() const
{
    const int slotCount = m_settings.numberSlots;
    int span = m_settings.coilSpan;
    if (m_settings.autoCalcCoilSpan && m_settings.polePairs > 0)
        span = int(std::floor(double(slotCount) / (2.0 * m_settings.polePairs) + 0.5));
    if (span == 0)
        span = 1;
    if (m_settings.isDoubleLayer())
        span = m_settings.layersOrientation == LeftRight ? 1 : qMax(2, span);
    return qMin(slotCount / 2, span);
}

Layout LayoutGenerator::starOfSlots(int span) const
{
    Layout layout;
    const int slotCount = m_settings.numberSlots;
    const int divisor = std::gcd(slotCount, m_settings.polePairs);
    if (slotCount <= 0 || divisor == 0)
        return layout;
    const double slotAngle = 360.0 / (slotCount / divisor);
    const double electricalStep = (m_settings.polePairs / divisor) * slotAngle;
    // With twelve slots in the base period, slot 0 sits in the middle of phase A's belt.
    double angle = qFuzzyCompare(slotAngle, 30.0) ? Numeric::normalizeAngle(-slotAngle / 2) : 0.0;

    for (int slot = 0; slot < slotCount; ++slot) {
        if (m_settings.isDoubleLayer() || slot % 2 == 0) {
            const Belt &belt = beltOf(angle);
            const int other = slot + span >= slotCount ? slot + span - slotCount : slot + span;
            CoilList &list = layout[belt.phase];
            Coil coil;
            coil.slotFrom = belt.sense > 0 ? other : slot;
            coil.slotTo = belt.sense > 0 ? slot : other;
            coil.parallelPath = nextParallelPath(list, m_settings.parallelPaths);
            list.append(coil);
        }
        angle = Numeric::normalizeAngle(angle + electricalStep);
    }
    return layout;
}

bool LayoutGenerator::isBalanced(const Layout &layout) const
{
    QVector<int> sides;
    for (const CoilList &list : layout) {
        for (const Coil &coil : list)
            sides << coil.slotFrom << coil.slotTo;
    }
    if (sides.isEmpty())
        return true;
    const int layers = m_settings.numberLayers;
    if (sides.size() != m_settings.numberSlots * layers)
        return false;
    std::sort(sides.begin(), sides.end());
    int repeats = 1;
    for (int i = 1; i < sides.size(); ++i) {
        if (sides.at(i) - sides.at(i - 1) > 1)
            return false;
        repeats = sides.at(i) == sides.at(i - 1) ? repeats + 1 : 1;
        if (repeats > layers)
            return false;
    }
    return true;
}

std::optional<SpannedLayout> LayoutGenerator::balancedLayout() const
{
    for (int span = initialSpan();; --span) {
        Layout star = starOfSlots(span);
        if (!m_settings.autoCalcCoilSpan || isBalanced(star))
            return SpannedLayout{star, span};
        if (span <= 1) {
            qCritical() << "Critical: Not supported winding configuration";
            return std::nullopt;
        }
    }
}

std::optional<SpannedLayout> LayoutGenerator::baseLayout() const
{
    if (!m_settings.isFeasible())
        return std::nullopt;
    std::optional<SpannedLayout> result = balancedLayout();
    if (!result)
        return std::nullopt;
    // The span is stored within what the layers allow, and the senses follow the stored span.
    result->span = m_settings.clippedCoilSpan(result->span);
    Layout &layout = result->layout;
    assignLayers(layout);
    assignOrientations(layout, result->span);
    if (m_settings.type == Toroidal)
        splitToroidal(layout);
    numberParallelPaths(layout);
    return result;
}

Layout LayoutGenerator::fittedManualLayout(const Layout &manual) const
{
    const int needed = m_settings.effectiveNumberLayers() * m_settings.numberSlots / 6;
    const int count = manual.at(A).size();
    Layout fitted = manual;
    if (count > needed) {
        for (CoilList &list : fitted) {
            if (list.size() > needed)
                list.erase(list.begin() + needed, list.end());
        }
    } else if (count < needed) {
        // The user's coils stay where they are; the star of slots fills in the rest.
        fitted = starOfSlots(initialSpan());
        for (int phase = A; phase < Count; ++phase) {
            const CoilList &own = manual.at(phase);
            CoilList &list = fitted[phase];
            for (int i = 0; i < own.size(); ++i) {
                if (i < list.size())
                    list[i] = own.at(i);
                else
                    list.append(own.at(i));
            }
        }
    }
    // The senses follow the span and the layers, which may have changed since.
    assignOrientations(fitted, m_settings.coilSpan);
    return fitted;
}

void LayoutGenerator::assignLayers(Layout &layout) const
{
    if (!m_settings.isDoubleLayer()) {
        for (CoilList &list : layout) {
            for (Coil &coil : list) {
                coil.layerFrom = 0;
                coil.layerTo = 0;
            }
        }
        return;
    }
    // Two positions a slot, 2 slot and 2 slot + 1; a coil takes the free one on each side.
    const int slotCount = m_settings.numberSlots;
    const bool upperLower = m_settings.layersOrientation == UpperLower;
    QVector<bool> taken(2 * slotCount, false);
    for (CoilList &list : layout) {
        for (Coil &coil : list) {
            int from = 2 * coil.slotFrom;
            int to = 2 * coil.slotTo;
            const bool forward = (from < to && to - from < slotCount) || from - to > slotCount;
            if (forward) {
                if (!taken.at(from) && !taken.at(to + 1))
                    ++to;
                else
                    ++from;
            } else if (taken.at(from + 1) || taken.at(to)) {
                ++to;
            } else {
                ++from;
            }
            coil.layerFrom = upperLower ? 1 - from % 2 : from % 2;
            coil.layerTo = upperLower ? 1 - to % 2 : to % 2;
            taken[from] = true;
            taken[to] = true;
        }
    }
}

void LayoutGenerator::assignOrientations(Layout &layout, int coilSpan) const
{
    for (CoilList &list : layout) {
        for (Coil &coil : list)
            coil.orientation = orientationOf(coil, coilSpan);
    }
}

Coil::Orientation LayoutGenerator::orientationOf(const Coil &coil, int coilSpan) const
{
    const int half = m_settings.numberSlots / 2;
    if (coilSpan == half) {
        if (!m_settings.isDoubleLayer())
            return Coil::CW;
        return coil.layerFrom == 1 ? Coil::CW : Coil::CCW;
    }
    if (m_settings.type == Toroidal)
        return coil.layerFrom == 1 ? Coil::CW : Coil::CCW;
    // A coil that reaches over more than half the slots runs the other way round.
    if (coil.slotFrom < coil.slotTo)
        return coil.slotTo - coil.slotFrom > half ? Coil::CW : Coil::CCW;
    return coil.slotFrom - coil.slotTo > half ? Coil::CCW : Coil::CW;
}

void LayoutGenerator::numberParallelPaths(Layout &layout) const
{
    const int paths = qMax(1, m_settings.parallelPaths);
    for (CoilList &list : layout) {
        for (int i = 0; i < list.size(); ++i)
            list[i].parallelPath = i % paths + 1;
    }
}

} // namespace Winding
