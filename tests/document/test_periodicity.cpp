#include <gtest/gtest.h>

#include "document/Document.h"

namespace {

using P = Document::Periodicity;

QString repeated(const QString &unit, int times)
{
    return unit.repeated(times);
}

// Flips the sign characters (even positions) of a layout signature.
QString flipped(QString text)
{
    for (int i = 0; i < text.size(); i += 2)
        text[i] = text.at(i) == '+' ? '-' : '+';
    return text;
}

// 12 slots, two layers: a unit of 3 slots (12 characters) repeating four times.
const QString periodicEvery3Slots = repeated("+A-B+B-C+C-A", 4);
// 12 slots, two layers: 2 slots and their opposite, so the winding is antiperiodic every 2 slots.
const QString antiperiodicEvery2Slots = repeated("+A-A+B-B" + flipped("+A-A+B-B"), 3);

} // namespace

TEST(Periodicity, GeometryAndWindingAgree)
{
    // 12 slots aren't divisible by 8: four periodic sectors.
    EXPECT_EQ(Document::computePeriodicity(12, 4, 2, periodicEvery3Slots), P(4, Document::Periodic));
    // 12 slots and 3 pole pairs: six antiperiodic sectors.
    EXPECT_EQ(Document::computePeriodicity(12, 3, 2, antiperiodicEvery2Slots), P(6, Document::Antiperiodic));
}

TEST(Periodicity, WindingThatRepeatsDifferentlyFromThePolesGivesNone)
{
    EXPECT_EQ(Document::computePeriodicity(12, 3, 2, periodicEvery3Slots), P(1, Document::None));
}

TEST(Periodicity, AntiperiodicWindingFallsBackToPeriodicWhenPolesAskForIt)
{
    // The winding is antiperiodic over 6 sectors, the poles (4 pairs) periodic over 4:
    // 2P/d = 8/6 isn't whole.
    EXPECT_EQ(Document::computePeriodicity(12, 4, 2, antiperiodicEvery2Slots), P(1, Document::None));
    // With 6 pole pairs 2P/d = 2 is even: the six antiperiodic sectors become three periodic ones.
    EXPECT_EQ(Document::computePeriodicity(12, 6, 2, antiperiodicEvery2Slots), P(3, Document::Periodic));
}

TEST(Periodicity, UnknownOrInvalidDesignGivesOneSector)
{
    EXPECT_EQ(Document::computePeriodicity(12, 4, 2, QString()), P(1, Document::None));
    QString withDot = periodicEvery3Slots;
    withDot[5] = '.';
    EXPECT_EQ(Document::computePeriodicity(12, 4, 2, withDot), P(1, Document::None));
    EXPECT_EQ(Document::computePeriodicity(2, 1, 2, "+A-A+B-B"), P(1, Document::None));
    EXPECT_EQ(Document::computePeriodicity(12, 0, 2, periodicEvery3Slots), P(1, Document::None));
}

TEST(Periodicity, SingleSectorIsNeverPeriodic)
{
    // A signature that repeats nowhere: d = 1, and one sector has no condition.
    QString irregular = periodicEvery3Slots;
    irregular[0] = '-';
    EXPECT_EQ(Document::computePeriodicity(12, 4, 2, irregular), P(1, Document::None));
}

TEST(BoundaryRequest, CannotForceMoreThanTheMachineAllows)
{
    EXPECT_EQ(Document::restrictedPeriodicity(P(6, Document::Periodic), Document::Antiperiodic),
              P(6, Document::Periodic));
    EXPECT_EQ(Document::restrictedPeriodicity(P(6, Document::Antiperiodic), Document::Periodic),
              P(3, Document::Periodic));
    EXPECT_EQ(Document::restrictedPeriodicity(P(6, Document::Antiperiodic), Document::None), P(1, Document::None));
    EXPECT_EQ(Document::restrictedPeriodicity(P(6, Document::Antiperiodic), Document::Antiperiodic),
              P(6, Document::Antiperiodic));
}

TEST(BoundaryRequest, ManualChoiceOnlyWeakens)
{
    const P anti6(6, Document::Antiperiodic);
    EXPECT_EQ(Document::wantedBoundaryCondition(Document::Automatic, Document::None, anti6, 3), Document::Antiperiodic);
    EXPECT_EQ(Document::wantedBoundaryCondition(Document::Manual, Document::Periodic, anti6, 3), Document::Periodic);
    // A periodic choice makes no sense with one pole pair or with two antiperiodic sectors.
    EXPECT_EQ(Document::wantedBoundaryCondition(Document::Manual, Document::Periodic, anti6, 1), Document::None);
    EXPECT_EQ(Document::wantedBoundaryCondition(Document::Manual, Document::Periodic, P(2, Document::Antiperiodic), 2),
              Document::None);
    EXPECT_EQ(Document::wantedBoundaryCondition(Document::Manual, Document::Antiperiodic, P(4, Document::Periodic), 4),
              Document::Periodic);
}
