#include <cmath>
#include <gtest/gtest.h>

#include "solver/MCRCtrl/Harmonics.h"

// The derivative of a periodic waveform from its samples: the back-EMF of a run over one
// electrical period.

TEST(PeriodicDerivative, IsExactForEveryHarmonicTheSamplesHold)
{
    const double period = 0.012;
    const double omega = 2.0 * M_PI / period;
    for (const std::size_t count : {std::size_t(3), std::size_t(6), std::size_t(7), std::size_t(24)}) {
        // A mean, a fundamental and, where the samples can hold it, a third harmonic.
        const bool third = 2 * 3 < count;
        std::vector<double> samples(count);
        for (std::size_t k = 0; k < count; ++k) {
            const double t = period * double(k) / double(count);
            samples[k] = 0.4 + 1.5 * std::cos(omega * t + 0.7) + (third ? 0.2 * std::sin(3.0 * omega * t - 0.3) : 0.0);
        }
        const std::vector<double> rate = mcrctrl::periodicDerivative(samples, period);
        ASSERT_EQ(rate.size(), count);
        for (std::size_t k = 0; k < count; ++k) {
            const double t = period * double(k) / double(count);
            const double exact = -1.5 * omega * std::sin(omega * t + 0.7)
                                 + (third ? 0.6 * omega * std::cos(3.0 * omega * t - 0.3) : 0.0);
            EXPECT_NEAR(rate[k], exact, 1e-9 * 1.5 * omega) << count << " samples, sample " << k;
        }
    }
}

TEST(PeriodicDerivative, LeavesOutTheHarmonicAnEvenCountCannotPlace)
{
    // cos(pi k) at every sample of six: its slope there is 0, and sin(pi k) vanishes there.
    std::vector<double> alternating{1.0, -1.0, 1.0, -1.0, 1.0, -1.0};
    for (const double rate : mcrctrl::periodicDerivative(alternating, 1.0))
        EXPECT_NEAR(rate, 0.0, 1e-12);
    EXPECT_TRUE(mcrctrl::periodicDerivative({}, 1.0).empty());
}
