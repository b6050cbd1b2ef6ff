#include <QtMath>
#include <gtest/gtest.h>

#include "winding/EndturnChecks.h"

namespace {

// Filaments of 10 mm along the x axis, then one turned by `bend` degrees in the xy plane.
QVector<Winding::Filament> bentChain(double bend)
{
    const Winding::Point3 a{0.0, 0.0, 0.0};
    const Winding::Point3 b{10.0, 0.0, 0.0};
    const Winding::Point3 c{20.0, 0.0, 0.0};
    const double radians = qDegreesToRadians(bend);
    const Winding::Point3 d{c.x + 10.0 * std::cos(radians), 10.0 * std::sin(radians), 0.0};
    return {{a, b}, {b, c}, {c, d}};
}

Winding::EndturnEnds outerEnds()
{
    Winding::EndturnEnds ends;
    ends.kind = Winding::EndturnKind::Outer;
    ends.beginSlot = 0;
    ends.beginLayer = 1;
    ends.endSlot = 4;
    ends.endLayer = 0;
    ends.dir = Winding::Coil::CCW;
    return ends;
}

} // namespace

TEST(EndturnTexts, DescriptionCountsFromOne)
{
    const Winding::EndturnEnds ends = outerEnds();
    EXPECT_EQ(Winding::endturnDescription(ends), "outer S1.L2-S5.L1 CCW");
    EXPECT_EQ(Winding::endturnHeading(Winding::B, ends), "phase B, outer S1.L2-S5.L1 CCW");
    EXPECT_EQ(Winding::toString(Winding::EndturnKind::Inner), "inner");
    EXPECT_EQ(Winding::toString(Winding::EndturnKind::Unknown), "unknown");
}

TEST(EndturnChecks, PathEndsMustMeetTheCentreWithinATenthOfAMicron)
{
    const Winding::Point3 center{120.0, -35.5, 4.25};
    EXPECT_TRUE(Winding::isAtCenter({120.0 + 0.9e-7, -35.5, 4.25}, center));
    EXPECT_FALSE(Winding::isAtCenter({120.0, -35.5 + 2e-7, 4.25}, center));
    EXPECT_FALSE(Winding::isAtCenter({120.0, -35.5, 4.25 - 2e-7}, center));
}

TEST(EndturnChecks, BendsSharperThanARightAngleFail)
{
    const double radius = 5.0;
    // A turn by 90 degrees leaves 90 between the filaments: it passes at the outer radius.
    EXPECT_TRUE(Winding::filamentFaults(bentChain(90.0), Winding::EndturnKind::Outer, radius, "h").isEmpty());
    // 90.5 degrees of turn leave 89.5: too sharp outside, still allowed inside.
    const QStringList outer = Winding::filamentFaults(bentChain(90.5), Winding::EndturnKind::Outer, radius, "h");
    ASSERT_EQ(outer.size(), 1);
    EXPECT_EQ(outer.first(), "h, between filaments 2-3 the angle 89.5");
    EXPECT_TRUE(Winding::filamentFaults(bentChain(90.5), Winding::EndturnKind::Inner, radius, "h").isEmpty());
    EXPECT_EQ(Winding::filamentFaults(bentChain(91.5), Winding::EndturnKind::Inner, radius, "h").size(), 1);
    // A smooth arc sampled in 10 degree steps is fine everywhere.
    QVector<Winding::Filament> arc;
    for (int step = 0; step < 18; ++step) {
        const double a0 = qDegreesToRadians(10.0 * step);
        const double a1 = qDegreesToRadians(10.0 * (step + 1));
        arc.append(Winding::Filament{{50.0 * std::cos(a0), 50.0 * std::sin(a0), 0.0}, {50.0 * std::cos(a1), 50.0 * std::sin(a1), 0.0}});
    }
    EXPECT_TRUE(Winding::filamentFaults(arc, Winding::EndturnKind::Inner, radius, "h").isEmpty());
}

TEST(EndturnChecks, FilamentsShorterThanATenthOfTheCoilRadiusAreReported)
{
    // A coil radius of 50 mm asks for filaments of at least 5 mm.
    QVector<Winding::Filament> chain{{{0, 0, 0}, {4.9, 0, 0}}, {{4.9, 0, 0}, {20, 0, 0}}, {{20, 0, 0}, {24, 0, 0}}};
    const QStringList faults = Winding::filamentFaults(chain, Winding::EndturnKind::Outer, 50.0, "phase A, x");
    EXPECT_EQ(faults, QStringList({"phase A, x, filament 1 is very short", "phase A, x, filament 3 is very short"}));

    EXPECT_TRUE(Winding::filamentFaults(chain.mid(0, 1), Winding::EndturnKind::Outer, 50.0, "h").isEmpty())
        << "a single filament has nothing to be checked against";
}
