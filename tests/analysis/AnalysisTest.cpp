#include <QSignalSpy>
#include <gtest/gtest.h>

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

namespace {

class DriveSettingsTest : public ::testing::Test
{
protected:
    Document doc{nullptr};
    DriveSettings *drive = doc.driveSettings();
};

class MagnetostaticAnalysisTest : public ::testing::Test
{
protected:
    void storeResults()
    {
        analysis->setDataSimulation({{"Private", QByteArray("opaque")}});
        ASSERT_FALSE(analysis->dataSimulation().isEmpty());
    }

    Document doc{nullptr};
    MagnetostaticAnalysis *analysis = doc.analysis();
};

} // namespace

TEST_F(DriveSettingsTest, CurrentValueIsTheOneOfTheSelectedMethod)
{
    drive->setCurrentSupplyRMS(10.0);
    drive->setCurrentSupplyPeak(14.0);
    drive->setDensitySupplyRMS(5.0);
    drive->setCurrentPhaseRMS(6.0);
    drive->setCurrentSupplyDC(7.0);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 10.0);
    drive->setMethodInputCurrent(DriveSettings::PeakSupplyCurrent);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 14.0);
    drive->setMethodInputCurrent(DriveSettings::RMSSupplyDensity);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 5.0);
    drive->setMethodInputCurrent(DriveSettings::RMSPhaseCurrent);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 6.0);
    drive->setMethodInputCurrent(DriveSettings::DCSupplyCurrent);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 7.0);
    drive->setMethodInputCurrent(DriveSettings::UnknowMethodInputCurrent);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 0.0);
}

TEST_F(DriveSettingsTest, SetterEmitsItsSignalThenChangedAndNothingOnEqualValue)
{
    QStringList order;
    QObject::connect(drive, &DriveSettings::switchingDeadTimeChanged, [&order] { order << "switchingDeadTimeChanged"; });
    QObject::connect(drive, &DriveSettings::changed, [&order] { order << "changed"; });

    drive->setSwitchingDeadTime(3e-6);
    EXPECT_EQ(order, QStringList({"switchingDeadTimeChanged", "changed"}));
    order.clear();
    drive->setSwitchingDeadTime(3e-6 * (1 + 1e-14));
    drive->setTransistorInParallel(1);
    drive->setSwitchDutyCycle(DriveSettings::Deg120);
    EXPECT_TRUE(order.isEmpty());

    QSignalSpy changedSpy(drive, &DriveSettings::changed);
    EXPECT_TRUE(drive->setProperty("transistorName", "IRF540"));
    EXPECT_EQ(drive->transistorName(), "IRF540");
    EXPECT_EQ(changedSpy.count(), 1);
}

// The names are the program's own texts, stored and shown as they stand; a value
// outside its enumeration gets the Unknown text of its kind.
TEST(AnalysisNames, KnownAndUnknownValuesKeepTheirTexts)
{
    const QPair<QString, QString> names[] = {
        {DriveSettings::waveformCurrentName(DriveSettings::Trapezoidal), "Trapezoidal"},
        {DriveSettings::waveformCurrentName(DriveSettings::WaveformCurrent(9)), "UnknowWaveformCurrent"},
        {DriveSettings::methodInputCurrentName(DriveSettings::RMSSupplyDensity), "RMS current density"},
        {DriveSettings::methodInputCurrentName(DriveSettings::UnknowMethodInputCurrent), "UnknowMethodInputCurrent"},
        {DriveSettings::driveTypeName(DriveSettings::SixStep), "Six-step"},
        {DriveSettings::driveTypeName(DriveSettings::DriveType(0)), "UnknownDriverType"},
        {DriveSettings::switchDutyCycleName(DriveSettings::Deg180), "180"},
        {DriveSettings::switchDutyCycleName(DriveSettings::SwitchDutyCycle(90)), "UnknownSwitchDutyCycle"},
        {DriveSettings::sixStepOptionsName(DriveSettings::VariabledDCVoltage), "Six-step with variable DC voltage"},
        {DriveSettings::sixStepOptionsName(DriveSettings::SixStepOptions(0)), "UnknownSixStepOptions"},
        {MagnetostaticAnalysis::solverTypeName(MagnetostaticAnalysis::Linear), "Linear"},
        {MagnetostaticAnalysis::solverTypeName(MagnetostaticAnalysis::SolverType(0)), "UnknownSolverType"},
        {MagnetostaticAnalysis::accuracyName(MagnetostaticAnalysis::FourPoint),
         "4 points per cogging - medium accuracy"},
        {MagnetostaticAnalysis::accuracyName(MagnetostaticAnalysis::Accuracy(3)), "UnknownAccuracy"},
        {MagnetostaticAnalysis::timePeriodModeName(MagnetostaticAnalysis::DefinePeriod), "Define time period"},
        {MagnetostaticAnalysis::timePeriodModeName(MagnetostaticAnalysis::TimePeriodMode(0)),
         "UnknownTimePeriodMode"},
    };
    for (const auto &name : names)
        EXPECT_EQ(name.first, name.second);
}

TEST_F(MagnetostaticAnalysisTest, AccuracyFixesThePointsAndKeepsTheUsersCount)
{
    doc.stator()->setNumberSlots(12);
    analysis->setAccuracy(MagnetostaticAnalysis::FourPoint);
    EXPECT_EQ(analysis->numberPoints(), 4);
    EXPECT_EQ(analysis->solverNumberPoints(), 48);

    analysis->setNumberPoints(20);
    EXPECT_EQ(analysis->numberPoints(), 4);

    analysis->setAccuracy(MagnetostaticAnalysis::DefinePoint);
    EXPECT_EQ(analysis->numberPoints(), 1);
    analysis->setNumberPoints(20);
    EXPECT_EQ(analysis->solverNumberPoints(), 20);
    analysis->setAccuracy(MagnetostaticAnalysis::TwoPoint);
    EXPECT_EQ(analysis->numberPoints(), 2);
    analysis->setAccuracy(MagnetostaticAnalysis::DefinePoint);
    EXPECT_EQ(analysis->numberPoints(), 20);

    QSignalSpy pointsSpy(analysis, &MagnetostaticAnalysis::numberPointsChanged);
    analysis->setAccuracy(MagnetostaticAnalysis::SinglePoint);
    EXPECT_EQ(analysis->solverNumberPoints(), 1);
    EXPECT_EQ(pointsSpy.count(), 1);
}

TEST_F(MagnetostaticAnalysisTest, TimePeriodIsAPropertyComparedFuzzily)
{
    QSignalSpy periodSpy(analysis, &MagnetostaticAnalysis::timePeriodChanged);
    EXPECT_TRUE(analysis->setProperty("timePeriod", QVariant::fromValue(MagnetostaticAnalysis::TimePeriod(0.5, 2.0))));
    EXPECT_EQ(analysis->property("timePeriod").value<MagnetostaticAnalysis::TimePeriod>(),
              MagnetostaticAnalysis::TimePeriod(0.5, 2.0));
    analysis->setTimePeriod({0.5 * (1 + 1e-14), 2.0});
    EXPECT_EQ(periodSpy.count(), 1);
}

TEST_F(MagnetostaticAnalysisTest, ResultsAreDroppedByAnyChangeOfTheDesign)
{
    QSignalSpy resultsSpy(analysis, &MagnetostaticAnalysis::resultsChanged);
    storeResults();
    EXPECT_EQ(resultsSpy.count(), 1);
    analysis->setMechanicalSpeed(1500.0);
    EXPECT_TRUE(analysis->dataSimulation().isEmpty());

    storeResults();
    doc.winding()->setNumberTurns(7);
    EXPECT_TRUE(analysis->dataSimulation().isEmpty());

    storeResults();
    doc.mesh()->setNumberSlices(4);
    EXPECT_TRUE(analysis->dataSimulation().isEmpty());

    storeResults();
    doc.airgap(Airgap::ID1)->setThickness(2.0);
    EXPECT_TRUE(analysis->dataSimulation().isEmpty());

    storeResults();
    doc.stator()->setNumberSlots(18);
    EXPECT_TRUE(analysis->dataSimulation().isEmpty());
}

TEST_F(MagnetostaticAnalysisTest, EqualResultsChangeNothing)
{
    storeResults();
    QSignalSpy resultsSpy(analysis, &MagnetostaticAnalysis::resultsChanged);
    QSignalSpy changedSpy(analysis, &MagnetostaticAnalysis::changed);
    storeResults();
    analysis->setConverganceTolerance(0.001);
    EXPECT_EQ(resultsSpy.count(), 0);
    EXPECT_EQ(changedSpy.count(), 0);
}
