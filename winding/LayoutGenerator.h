#pragma once

#include <optional>

#include "winding/LayoutSettings.h"
#include "winding/Winding.h"

namespace Winding {

// A star of slots together with the coil span it was drawn with.
struct SpannedLayout
{
    Layout layout;
    int span = 0;
};

// Works out which coil lies where in a three-phase winding: the star of slots, the
// search for a span that fills every slot, then layers, senses and parallel paths.
class LayoutGenerator
{
public:
    explicit LayoutGenerator(const LayoutSettings &settings);

    // The span the star of slots starts from: the pole pitch in slots when automatic,
    // else the chosen span, as the layers allow and at most half the slots.
    int initialSpan() const;
    // One coil of the given span for every slot (every other slot for a single layer),
    // its phase and sense taken from the slot's electrical angle. Layers stay 0.
    Layout starOfSlots(int span) const;
    // Every slot holds a coil side, and none more sides than it has layers.
    bool isBalanced(const Layout &layout) const;
    // The star of slots of the chosen span or, when the span is automatic, of the
    // widest span from the pole pitch down that fills every slot. None when even a
    // span of one leaves slots empty.
    std::optional<SpannedLayout> balancedLayout() const;
    // The base layout of an automatic winding with the span it is made with: the
    // balanced star of slots given layers, senses, toroidal coils and parallel paths.
    // None for an infeasible slot and pole combination or when no span fits.
    std::optional<SpannedLayout> baseLayout() const;
    // A user's layout brought to the number of coils that a phase needs: extra coils
    // are cut from the end, missing ones are taken from the star of slots. The senses
    // are worked out again.
    Layout fittedManualLayout(const Layout &manual) const;

    void assignLayers(Layout &layout) const;
    void assignOrientations(Layout &layout, int coilSpan) const;

private:
    Coil::Orientation orientationOf(const Coil &coil, int coilSpan) const;
    void numberParallelPaths(Layout &layout) const;

    LayoutSettings m_settings;
};

} // namespace Winding
