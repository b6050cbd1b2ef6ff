#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "support/LogCatcher.h"
#include "winding/CoilHelpers.h"
#include "winding/LayoutGenerator.h"
#include "winding/LayoutSettingsOf.h"
#include "winding/MmfSpectrum.h"
#include "winding/WindingFactor.h"

using Winding::CoilList;
using Winding::Layout;
using Winding::LayoutSettings;
using Winding::MmfHarmonic;
using Winding::MmfSpectrum;

namespace {

Layout generate(const LayoutSettings &given)
{
    const std::optional<Winding::SpannedLayout> generated = Winding::LayoutGenerator(given).baseLayout();
    return generated ? generated->layout : Layout();
}

// The fundamental of a full-pitch distributed winding of N series turns a phase.
double classicAmplitude(double seriesTurns, double current, double factor, int polePairs)
{
    return 1.5 * 4.0 / M_PI * seriesTurns * current * factor / (2.0 * polePairs);
}

double seriesTurns(const LayoutSettings &given, const Layout &layout, int turnsPerCoil)
{
    return double(layout.at(Winding::A).size()) * turnsPerCoil / given.parallelPaths;
}

const LayoutSettings leftRight12x5 = settings(12, 5, 2, Winding::LeftRight);
// cos^2 15 deg and sin^2 15 deg: pitch and distribution factors are alike there.
const double strongFactor12x5 = (2.0 + std::sqrt(3.0)) / 4.0;
const double weakFactor12x5 = (2.0 - std::sqrt(3.0)) / 4.0;

} // namespace

TEST(MmfSpectrum, OnePlanarCoilIsARectangularWaveOfItsSpan)
{
    const int turns = 7;
    const double current = 3.0;
    for (int span : {1, 2, 5, 6}) {
        const CoilList coils{coil(span, 0)};
        const double coilPitch = 2.0 * M_PI * span / 12;
        for (int order = 1; order <= 36; ++order) {
            const double expected = 2.0 / (order * M_PI) * turns * current * std::abs(std::sin(order * coilPitch / 2));
            EXPECT_NEAR(MmfSpectrum(settings(12, 5), turns).phaseAmplitude(coils, current, order), expected, 1e-9)
                << "span " << span << ", order " << order;
        }
    }
}

TEST(MmfSpectrum, ParallelPathsShareThePhaseCurrent)
{
    LayoutSettings twoPaths = settings(12, 5);
    twoPaths.parallelPaths = 2;
    const CoilList coils{coil(1, 0)};
    EXPECT_NEAR(MmfSpectrum(twoPaths, 4).phaseAmplitude(coils, 1.0, 5),
                MmfSpectrum(settings(12, 5), 4).phaseAmplitude(coils, 1.0, 5) / 2, 1e-12);
}

TEST(MmfSpectrum, AToroidalCoilIsOneStepAndDrivesTheGapAsThePlanarCoilsItCameFrom)
{
    LayoutSettings toroidal = settings(12, 5);
    toroidal.type = Winding::Toroidal;
    Winding::Coil side = coil(3, 3, 0, 1);
    side.orientation = Winding::Coil::CW;
    for (int order = 1; order <= 24; ++order)
        EXPECT_NEAR(MmfSpectrum(toroidal, 5).phaseAmplitude({side}, 2.0, order), 5 * 2.0 / (M_PI * order), 1e-9);

    const LayoutSettings planar = settings(12, 5);
    const QVector<MmfHarmonic> fromPlanar = MmfSpectrum(planar, 5).spectrum(generate(planar), 2.0, 36);
    const QVector<MmfHarmonic> fromToroidal = MmfSpectrum(toroidal, 5).spectrum(generate(toroidal), 2.0, 36);
    ASSERT_EQ(fromToroidal.size(), 36);
    for (int i = 0; i < fromPlanar.size(); ++i) {
        EXPECT_NEAR(fromToroidal.at(i).forward, fromPlanar.at(i).forward, 1e-9) << "order " << i + 1;
        EXPECT_NEAR(fromToroidal.at(i).backward, fromPlanar.at(i).backward, 1e-9) << "order " << i + 1;
    }
}

TEST(MmfSpectrum, TwelveSlotsTenPolesHasTheSubharmonicAndTheSeventhInTheTextbookRatios)
{
    const int turns = 10;
    const double current = 2.0;
    const Layout layout = generate(leftRight12x5);
    const QVector<MmfHarmonic> spectrum = MmfSpectrum(leftRight12x5, turns).spectrum(layout, current, 48);
    ASSERT_EQ(spectrum.size(), 48);
    const auto amplitude = [&](int order) { return spectrum.at(order - 1).amplitude(); };

    EXPECT_NEAR(amplitude(5), classicAmplitude(seriesTurns(leftRight12x5, layout, turns), current, strongFactor12x5, 5),
                1e-9);
    // Relative to the working order each order has kw_v / v.
    const auto relative = [](double factor, int order) { return factor / order / (strongFactor12x5 / 5); };
    EXPECT_NEAR(amplitude(1) / amplitude(5), relative(weakFactor12x5, 1), 1e-9);
    EXPECT_NEAR(amplitude(7) / amplitude(5), relative(strongFactor12x5, 7), 1e-9);
    EXPECT_NEAR(amplitude(11) / amplitude(5), relative(weakFactor12x5, 11), 1e-9);
    EXPECT_NEAR(amplitude(17) / amplitude(5), relative(strongFactor12x5, 17), 1e-9);

    QVector<MmfHarmonic> byAmplitude = spectrum;
    std::sort(byAmplitude.begin(), byAmplitude.end(),
              [](const MmfHarmonic &a, const MmfHarmonic &b) { return a.amplitude() > b.amplitude(); });
    EXPECT_EQ(byAmplitude.at(0).order, 5);
    EXPECT_EQ(byAmplitude.at(1).order, 7);
    EXPECT_EQ(byAmplitude.at(2).order, 1);

    for (const MmfHarmonic &h : spectrum) {
        if (h.order % 2 == 0 || h.order % 3 == 0)
            EXPECT_NEAR(h.amplitude(), 0.0, 1e-9) << "order " << h.order;
    }
    // Every order is a single wave; those of 6k + 1 run against the working wave.
    for (int order : {1, 5, 7, 11, 13}) {
        const MmfHarmonic &h = spectrum.at(order - 1);
        EXPECT_NEAR(std::min(h.forward, h.backward), 0.0, 1e-9) << "order " << order;
    }
    const MmfHarmonic &working = spectrum.at(4);
    const bool workingForward = working.forward > working.backward;
    for (int order : {1, 7, 13})
        EXPECT_NE(spectrum.at(order - 1).forward > spectrum.at(order - 1).backward, workingForward) << order;
    EXPECT_EQ(spectrum.at(10).forward > spectrum.at(10).backward, workingForward);
}

TEST(MmfSpectrum, HalfWaveSymmetricWindingsHaveNoEvenOrders)
{
    // Odd pole pairs: half a turn on, every phase meets its coils reversed.
    for (const LayoutSettings &given : {leftRight12x5, settings(36, 3, 2), settings(24, 1), settings(18, 7, 2)}) {
        const Layout layout = generate(given);
        ASSERT_FALSE(layout.at(Winding::A).isEmpty());
        const QVector<MmfHarmonic> spectrum = MmfSpectrum(given, 1).spectrum(layout, 1.0, 4 * given.numberSlots);
        const double working = spectrum.at(given.polePairs - 1).amplitude();
        ASSERT_GT(working, 0.1);
        for (const MmfHarmonic &h : spectrum) {
            if (h.order % 2 == 0)
                EXPECT_LT(h.amplitude(), 1e-9 * working) << given.numberSlots << "/" << given.polePairs << " order "
                                                          << h.order;
        }
    }
    // Without that symmetry even orders appear: nine slots and eight poles have the second.
    const LayoutSettings nineByFour = settings(9, 4, 2, Winding::LeftRight);
    EXPECT_GT(MmfSpectrum(nineByFour, 1).harmonic(generate(nineByFour), 1.0, 2).amplitude(), 0.01);
}

TEST(MmfSpectrum, TheWorkingAndOddMultipleOrdersHaveTheClassicAmplitudeOfTheWindingFactor)
{
    const int turns = 3;
    const double current = 1.5;
    // Combinations that no span fills are logged as they are skipped.
    const LogCatcher skipped;
    int checked = 0;
    for (int slotCount = 6; slotCount <= 48; slotCount += 3) {
        for (int polePairs = 1; polePairs <= 16; ++polePairs) {
            for (const LayoutSettings &given : {settings(slotCount, polePairs), settings(slotCount, polePairs, 2),
                                                settings(slotCount, polePairs, 2, Winding::LeftRight)}) {
                if (!given.isFeasible())
                    continue;
                const Layout layout = generate(given);
                if (!Winding::LayoutGenerator(given).isBalanced(layout))
                    continue;
                SCOPED_TRACE(testing::Message() << slotCount << " slots " << polePairs << " pole pairs "
                                                << given.numberLayers << " layers");
                const MmfSpectrum spectrum(given, turns);
                const double series = seriesTurns(given, layout, turns);
                for (int harmonic : {1, 3, 5, 7}) {
                    // Triplen orders cancel between the phases.
                    const double factor =
                        harmonic % 3 == 0 ? 0.0 : Winding::windingFactor(given, layout.at(Winding::A), harmonic);
                    const double expected = classicAmplitude(series, current, factor, polePairs) / harmonic;
                    EXPECT_NEAR(spectrum.harmonic(layout, current, harmonic * polePairs).amplitude(), expected,
                                1e-9 * (1.0 + expected))
                        << "harmonic " << harmonic;
                }
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 100);
}
