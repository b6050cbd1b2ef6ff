#include <QSet>
#include <complex>
#include <gtest/gtest.h>

#include "winding/CoilHelpers.h"
#include "winding/LayoutGenerator.h"
#include "winding/LayoutSettingsOf.h"
#include "winding/WindingFactor.h"

using Winding::Coil;
using Winding::CoilList;
using Winding::Layout;
using Winding::LayoutGenerator;
using Winding::LayoutSettings;

namespace {

LayoutSettings withSpan(LayoutSettings result, int span)
{
    result.autoCalcCoilSpan = false;
    result.coilSpan = span;
    return result;
}

Winding::SpannedLayout generate(const LayoutSettings &given)
{
    const std::optional<Winding::SpannedLayout> generated = LayoutGenerator(given).baseLayout();
    return generated.value_or(Winding::SpannedLayout());
}

double fundamental(const LayoutSettings &given)
{
    return Winding::windingFactor(given, generate(given).layout.at(Winding::A), 1);
}

// The EMF phasor of a planar phase at the fundamental, worked out independently of the factor.
std::complex<double> phasor(const LayoutSettings &given, const CoilList &coils)
{
    const double step = 2.0 * M_PI * given.polePairs / given.numberSlots;
    std::complex<double> sum;
    for (const Coil &c : coils)
        sum += std::polar(1.0, (c.slotFrom + 1) * step) - std::polar(1.0, (c.slotTo + 1) * step);
    return sum;
}

struct Combination
{
    const char *name;
    LayoutSettings settings;
    int span;
    double factor;
    CoilList firstCoilsOfA;
};

void PrintTo(const Combination &combination, std::ostream *os)
{
    *os << combination.name;
}

const LayoutSettings leftRight12x5 = settings(12, 5, 2, Winding::LeftRight);

// All settings of the star of slots for slots and pole pairs up to the given numbers:
// single layer, stacked layers with the automatic and every chosen span, side by side.
QVector<LayoutSettings> sweep(int maxSlots, int maxPolePairs)
{
    QVector<LayoutSettings> result;
    for (int slotCount = 3; slotCount <= maxSlots; ++slotCount) {
        for (int polePairs = 1; polePairs <= maxPolePairs; ++polePairs) {
            result << settings(slotCount, polePairs) << settings(slotCount, polePairs, 2, Winding::LeftRight)
                   << settings(slotCount, polePairs, 2);
            for (int span = 2; span <= slotCount / 2; ++span)
                result << withSpan(settings(slotCount, polePairs, 2), span);
        }
    }
    return result;
}

class KnownCombination : public ::testing::TestWithParam<Combination>
{
};

} // namespace

TEST_P(KnownCombination, SpanFirstCoilsAndFundamentalFactor)
{
    const Combination &expected = GetParam();
    const Winding::SpannedLayout generated = generate(expected.settings);
    EXPECT_EQ(generated.span, expected.span);
    EXPECT_NEAR(Winding::windingFactor(expected.settings, generated.layout.at(Winding::A), 1), expected.factor, 5e-7);
    if (expected.firstCoilsOfA.isEmpty())
        return;
    CoilList first;
    for (const Coil &c : generated.layout.at(Winding::A).mid(0, expected.firstCoilsOfA.size()))
        first << coil(c.slotFrom, c.slotTo);
    EXPECT_EQ(first, expected.firstCoilsOfA);
}

INSTANTIATE_TEST_SUITE_P(
    StarOfSlots, KnownCombination,
    ::testing::Values(
        Combination{"12 slots 10 poles, concentrated double layer", leftRight12x5, 1, 0.933013,
                    {coil(1, 0), coil(6, 5), coil(6, 7), coil(11, 0)}},
        Combination{"12 slots 10 poles, single layer", settings(12, 5), 1, 0.965926, {coil(1, 0), coil(6, 7)}},
        Combination{"9 slots 8 poles, concentrated double layer", settings(9, 4, 2, Winding::LeftRight), 1, 0.945214,
                    {coil(1, 0), coil(1, 2), coil(8, 0)}},
        Combination{"24 slots 8 poles, single layer full pitch", settings(24, 4), 3, 1.0,
                    {coil(3, 0), coil(9, 6), coil(15, 12), coil(21, 18)}},
        Combination{"24 slots 4 poles, double layer full pitch", settings(24, 2, 2), 6, 0.965926,
                    {coil(6, 0), coil(7, 1), coil(6, 12), coil(7, 13)}},
        Combination{"12 slots 8 poles, concentrated double layer", settings(12, 4, 2, Winding::LeftRight), 1, 0.866025,
                    {}},
        Combination{"12 slots 14 poles, concentrated double layer", settings(12, 7, 2, Winding::LeftRight), 1, 0.933013,
                    {}},
        Combination{"18 slots 16 poles, concentrated double layer", settings(18, 8, 2, Winding::LeftRight), 1,
                    0.945214, {}},
        Combination{"6 slots 4 poles, concentrated double layer", settings(6, 2, 2, Winding::LeftRight), 1, 0.866025,
                    {}},
        // Every other slot starts a coil: a span of one pole pitch would leave the odd slots empty.
        Combination{"24 slots 4 poles, single layer", settings(24, 2), 5, 0.965926, {coil(5, 0), coil(6, 11)}},
        Combination{"36 slots 4 poles, double layer full pitch", settings(36, 2, 2), 9, 0.959795, {}},
        Combination{"24 slots 4 poles, double layer pitch 5/6", withSpan(settings(24, 2, 2), 5), 5, 0.933013, {}}));

TEST(WindingFactor, ShortPitchDampsTheFifthAndSeventhHarmonics)
{
    const LayoutSettings fullPitch = settings(24, 2, 2);
    const LayoutSettings shortPitch = withSpan(fullPitch, 5);
    const CoilList full = generate(fullPitch).layout.at(Winding::A);
    const CoilList chorded = generate(shortPitch).layout.at(Winding::A);

    EXPECT_NEAR(Winding::windingFactor(fullPitch, full, 5), 0.258819, 5e-7);
    EXPECT_NEAR(Winding::windingFactor(fullPitch, full, 7), 0.258819, 5e-7);
    EXPECT_NEAR(Winding::windingFactor(shortPitch, chorded, 5), 0.066987, 5e-7);
    EXPECT_NEAR(Winding::windingFactor(shortPitch, chorded, 7), 0.066987, 5e-7);
}

TEST(WindingFactor, GcdAndLcmOfSlotsAndPoles)
{
    EXPECT_EQ(Winding::slotPoleGcd(12, 5), 2);
    EXPECT_EQ(Winding::slotPoleLcm(12, 5), 60);
    EXPECT_EQ(Winding::slotPoleGcd(24, 2), 4);
    EXPECT_EQ(Winding::slotPoleLcm(24, 2), 24);
    EXPECT_EQ(Winding::slotPoleLcm(0, 2), 0);
    EXPECT_EQ(Winding::slotPoleLcm(12, 0), 0);
}

TEST(StarOfSlots, EveryFeasibleCombinationGivesABalancedWinding)
{
    for (const LayoutSettings &given : sweep(48, 24)) {
        SCOPED_TRACE(testing::Message() << given.numberSlots << " slots " << given.polePairs << " pole pairs "
                                        << given.numberLayers << " layers, span " << given.coilSpan);
        const std::optional<Winding::SpannedLayout> generated = LayoutGenerator(given).baseLayout();
        const bool buildable = given.isFeasible() && (given.isDoubleLayer() || given.numberSlots % 2 == 0);
        ASSERT_EQ(generated.has_value(), buildable);
        if (!generated)
            continue;
        const Layout &layout = generated->layout;
        EXPECT_TRUE(LayoutGenerator(given).isBalanced(layout));

        // Each slot position, two a slot for stacked or side-by-side layers, holds one coil side.
        QSet<int> positions;
        for (const CoilList &list : layout) {
            for (const Coil &c : list)
                positions << given.numberLayers * c.slotFrom + c.layerFrom << given.numberLayers * c.slotTo + c.layerTo;
        }
        EXPECT_EQ(positions.size(), given.numberLayers * given.numberSlots);

        EXPECT_EQ(layout.at(Winding::B).size(), layout.at(Winding::A).size());
        EXPECT_EQ(layout.at(Winding::C).size(), layout.at(Winding::A).size());
        const std::complex<double> a = phasor(given, layout.at(Winding::A));
        // A chosen span of a whole number of pole pairs links nothing, and has no phase to compare.
        if (std::abs(a) < 1e-9)
            continue;
        const std::complex<double> b = phasor(given, layout.at(Winding::B));
        const std::complex<double> c = phasor(given, layout.at(Winding::C));
        ASSERT_NEAR(std::abs(b), std::abs(a), 1e-9);
        ASSERT_NEAR(std::abs(c), std::abs(a), 1e-9);
        ASSERT_NEAR(std::abs(std::arg(b / a)), 2 * M_PI / 3, 1e-9);
        ASSERT_NEAR(std::arg(c / a), -std::arg(b / a), 1e-9);
    }
}

TEST(StarOfSlots, OrientationFollowsTheShortWayRound)
{
    const CoilList a = generate(leftRight12x5).layout.at(Winding::A);
    EXPECT_EQ(a.at(0).orientation, Coil::CW);
    EXPECT_EQ(a.at(2).orientation, Coil::CCW);
    // From 11 to 0 is one slot forward, not eleven back.
    EXPECT_EQ(a.at(3).orientation, Coil::CCW);

    // A single-layer full-pitch coil has no short way: all of them are clockwise.
    for (const CoilList &list : generate(settings(6, 1)).layout) {
        for (const Coil &c : list)
            EXPECT_EQ(c.orientation, Coil::CW);
    }
}

TEST(StarOfSlots, ParallelPathsTakeTurnsWithinAPhase)
{
    LayoutSettings given = settings(24, 2, 2);
    given.parallelPaths = 2;
    ASSERT_TRUE(given.isParallelPathsValid());
    for (const CoilList &list : generate(given).layout) {
        for (int i = 0; i < list.size(); ++i)
            EXPECT_EQ(list.at(i).parallelPath, i % 2 + 1);
    }
    given.parallelPaths = 5;
    EXPECT_FALSE(given.isParallelPathsValid());
}

TEST(StarOfSlots, FeasibleCombinations)
{
    EXPECT_FALSE(settings(10, 4).isFeasible());
    EXPECT_FALSE(settings(12, 0).isFeasible());
    EXPECT_FALSE(settings(0, 2).isFeasible());
    EXPECT_TRUE(settings(12, 5).isFeasible());
    EXPECT_TRUE(settings(9, 4).isFeasible());
}

TEST(StarOfSlots, ChosenSpanIsKeptEvenWhenSlotsStayEmpty)
{
    // Span 6 from the even slots only reaches even slots again.
    const std::optional<Winding::SpannedLayout> star = LayoutGenerator(withSpan(settings(24, 2), 6)).balancedLayout();
    ASSERT_TRUE(star.has_value());
    EXPECT_EQ(star->span, 6);
    EXPECT_FALSE(LayoutGenerator(settings(24, 2)).isBalanced(star->layout));
}

TEST(StarOfSlots, SpanStaysWithinHalfTheSlots)
{
    EXPECT_EQ(LayoutGenerator(settings(9, 1, 2)).initialSpan(), 4);
    EXPECT_EQ(settings(9, 1, 2).clippedCoilSpan(7), 4);
    EXPECT_EQ(settings(12, 1, 2).clippedCoilSpan(1), 2);
    EXPECT_EQ(settings(12, 1, 2, Winding::LeftRight).clippedCoilSpan(5), 1);
    EXPECT_EQ(settings(12, 1).clippedCoilSpan(1), 1);
    // A chosen span of 0 still makes coils.
    EXPECT_EQ(LayoutGenerator(withSpan(settings(12, 5), 0)).initialSpan(), 1);
}

TEST(Occupancy, EverySlotHoldsASideAndNoneMoreThanItsLayers)
{
    const LayoutGenerator single(settings(6, 1));
    Layout layout;
    EXPECT_TRUE(single.isBalanced(layout));

    layout[Winding::A] << coil(0, 1);
    layout[Winding::B] << coil(2, 3);
    layout[Winding::C] << coil(4, 5);
    EXPECT_TRUE(single.isBalanced(layout));

    layout[Winding::C] = {coil(4, 4)};
    EXPECT_FALSE(single.isBalanced(layout));
    layout[Winding::C] = {coil(5, 5)};
    EXPECT_FALSE(single.isBalanced(layout));
    layout[Winding::C].clear();
    EXPECT_FALSE(single.isBalanced(layout));

    const LayoutGenerator twoLayers(settings(3, 1, 2));
    Layout doubled;
    doubled[Winding::A] << coil(0, 1) << coil(1, 0);
    doubled[Winding::B] << coil(2, 2);
    EXPECT_TRUE(twoLayers.isBalanced(doubled));
}

TEST(Toroidal, EverySlotSideBecomesACoilRoundTheYoke)
{
    LayoutSettings planar = settings(12, 5);
    LayoutSettings toroidal = planar;
    toroidal.type = Winding::Toroidal;
    const Layout star = generate(planar).layout;
    const Layout layout = generate(toroidal).layout;

    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        const CoilList &list = layout.at(phase);
        const int half = star.at(phase).size();
        ASSERT_EQ(list.size(), 2 * half);
        for (int i = 0; i < half; ++i) {
            const Coil &first = list.at(i);
            const Coil &second = list.at(half + i);
            EXPECT_EQ(first.slotFrom, first.slotTo);
            EXPECT_EQ(second.slotFrom, second.slotTo);
            EXPECT_EQ(first.slotFrom, star.at(phase).at(i).slotFrom);
            EXPECT_EQ(second.slotFrom, star.at(phase).at(i).slotTo);
            EXPECT_EQ(first.layerFrom, 0);
            EXPECT_EQ(first.layerTo, 1);
            EXPECT_EQ(second.layerFrom, 1);
            EXPECT_EQ(second.layerTo, 0);
            EXPECT_EQ(second.orientation, -first.orientation);
            EXPECT_NE(first.orientation, Coil::Zero);
        }
    }
    // Coils round the yoke link the flux as the planar coils they came from.
    EXPECT_NEAR(fundamental(toroidal), fundamental(planar), 1e-12);
}

TEST(ManualLayout, ExtraCoilsAreCutFromTheEnd)
{
    Layout manual;
    manual[Winding::A] << coil(0, 1) << coil(2, 3) << coil(4, 5);
    manual[Winding::B] << coil(6, 7);
    manual[Winding::C] << coil(8, 9) << coil(10, 11) << coil(1, 2);

    const Layout fitted = withoutOrientations(LayoutGenerator(settings(12, 5)).fittedManualLayout(manual));
    EXPECT_EQ(fitted.at(Winding::A), CoilList({coil(0, 1), coil(2, 3)}));
    EXPECT_EQ(fitted.at(Winding::B), CoilList({coil(6, 7)}));
    EXPECT_EQ(fitted.at(Winding::C), CoilList({coil(8, 9), coil(10, 11)}));
}

TEST(ManualLayout, MissingCoilsComeFromTheStarOfSlots)
{
    Layout manual;
    manual[Winding::A] << coil(3, 4, 0, 0, 1);
    manual[Winding::C] << coil(8, 9) << coil(10, 11) << coil(1, 2);

    const Layout fitted = LayoutGenerator(settings(12, 5)).fittedManualLayout(manual);
    const Layout places = withoutOrientations(fitted);
    const Layout star = LayoutGenerator(settings(12, 5)).starOfSlots(1);
    EXPECT_EQ(places.at(Winding::A), CoilList({coil(3, 4), star.at(Winding::A).at(1)}));
    EXPECT_EQ(places.at(Winding::B), star.at(Winding::B));
    EXPECT_EQ(places.at(Winding::C), manual.at(Winding::C));
    EXPECT_EQ(fitted.at(Winding::A).first().orientation, Coil::CCW);
}
