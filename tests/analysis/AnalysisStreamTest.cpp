#include <QMetaProperty>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "winding/BlockStream.h"

namespace {

// Every stored property of `changed` is away from the default of `fresh`, and `read` has it too.
void expectStoredPropertiesRead(const QObject &changed, const QObject &read, const QObject &fresh,
                                const QStringList &notStored)
{
    const QMetaObject *meta = changed.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const char *name = meta->property(i).name();
        if (notStored.contains(QLatin1String(name)))
            continue;
        SCOPED_TRACE(name);
        EXPECT_NE(changed.property(name), fresh.property(name));
        EXPECT_EQ(read.property(name), changed.property(name));
    }
}

QByteArray driveBlock(qint32 version)
{
    return streamBytes([version](QDataStream &out) {
        out << version << qint32(DriveSettings::Trapezoidal) << qint32(DriveSettings::RMSPhaseCurrent) << 10.0
            << 14.0 << 5.0;
        if (version >= 2)
            out << 7.0 << 9.0;
        out << 48.0 << qint32(DriveSettings::SixStep) << 3e-6 << 20.0 << 2000.0 << qint32(DriveSettings::Deg180)
            << 12.0 << qint32(DriveSettings::LimitedMaximumCurrent) << 30.0 << 25.0 << 90.0 << QString("IRF3205")
            << qint32(2);
    });
}

QVariantMap results()
{
    return {{"Private", QByteArray("opaque")},
            {"Magnetostatic", QVariantMap{{"Results", QByteArray("field")}}}};
}

QByteArray analysisBlock(qint32 version)
{
    return streamBytes([version](QDataStream &out) {
        out << version << qint32(MagnetostaticAnalysis::Linear) << qint32(MagnetostaticAnalysis::DefinePoint)
            << qint32(20) << qint32(7) << qint32(MagnetostaticAnalysis::DefinePeriod) << 0.1 << 0.7 << 1e-4 << 15.0
            << 3000.0 << true << true << QString("/tmp/fields");
        if (version >= 2)
            out << results();
    });
}

class DriveStreamTest : public ::testing::Test
{
protected:
    Document doc{nullptr};
    DriveSettings *drive = doc.driveSettings();
};

class AnalysisStreamTest : public ::testing::Test
{
protected:
    Document doc{nullptr};
    MagnetostaticAnalysis *analysis = doc.analysis();
};

} // namespace

TEST_F(DriveStreamTest, EveryFieldSurvivesSaveAndLoad)
{
    drive->setWaveformCurrent(DriveSettings::Trapezoidal);
    drive->setMethodInputCurrent(DriveSettings::RMSPhaseCurrent);
    drive->setCurrentSupplyRMS(10.0);
    drive->setCurrentSupplyPeak(14.0);
    drive->setDensitySupplyRMS(5.0);
    drive->setCurrentPhaseRMS(7.0);
    drive->setCurrentSupplyDC(9.0);
    drive->setVoltageSupplyDC(48.0);
    drive->setDriverType(DriveSettings::SixStep);
    drive->setSwitchingDeadTime(3e-6);
    drive->setCurrentHysteresis(20.0);
    drive->setFrequencySamplingPWM(2000.0);
    drive->setSwitchDutyCycle(DriveSettings::Deg180);
    drive->setCommutationAdvanceAngle(12.0);
    drive->setSixStepOptions(DriveSettings::LimitedMaximumCurrent);
    drive->setPhaseCurrentLimit(30.0);
    drive->setPhaseCurrentHysteresis(25.0);
    drive->setSixStepVdcUsage(90.0);
    drive->setTransistorName("IRF3205");
    drive->setTransistorInParallel(2);
    const QByteArray bytes = savedBlock(*drive);
    EXPECT_EQ(bytes, driveBlock(2));
    EXPECT_EQ(savedBlock(*drive), bytes);

    Document other(nullptr);
    const LoadResult result = loadBlock(*other.driveSettings(), bytes);
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);
    const Document fresh(nullptr);
    expectStoredPropertiesRead(*drive, *other.driveSettings(), *fresh.driveSettings(), {});
}

TEST_F(DriveStreamTest, LoadingEmitsNoChangeSignals)
{
    QSignalSpy changedSpy(drive, &DriveSettings::changed);
    EXPECT_TRUE(loadBlock(*drive, driveBlock(2)).usedUp);
    EXPECT_EQ(changedSpy.count(), 0);
}

TEST_F(DriveStreamTest, Version1HasNoPhaseAndDirectCurrents)
{
    drive->setCurrentPhaseRMS(3.0);
    drive->setCurrentSupplyDC(4.0);
    const LoadResult result = loadBlock(*drive, driveBlock(1));
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);
    EXPECT_DOUBLE_EQ(drive->currentPhaseRMS(), 3.0);
    EXPECT_DOUBLE_EQ(drive->currentSupplyDC(), 4.0);
    EXPECT_DOUBLE_EQ(drive->densitySupplyRMS(), 5.0);
    EXPECT_DOUBLE_EQ(drive->voltageSupplyDC(), 48.0);
    EXPECT_EQ(drive->transistorInParallel(), 2);
}

TEST_F(DriveStreamTest, NewerVersionIsRefusedWithoutAChange)
{
    EXPECT_FALSE(loadBlock(*drive, driveBlock(3)).accepted);
    EXPECT_EQ(drive->waveformCurrent(), DriveSettings::Sinusoidal);
}

// A block cut short after a damaged choice: the load fails, and the choices the editors
// switch on still lie inside their enumerations.
TEST_F(DriveStreamTest, ADamagedChoiceInACutBlockFallsBackToTheDefault)
{
    QByteArray bytes = driveBlock(2);
    const QByteArray unknown = streamBytes([](QDataStream &out) { out << qint32(77); });
    bytes.replace(4, 4, unknown);
    bytes.replace(60, 4, unknown);
    bytes.truncate(70);
    EXPECT_EQ(loadBlock(*drive, bytes).status, QDataStream::ReadPastEnd);
    EXPECT_EQ(drive->waveformCurrent(), DriveSettings::Sinusoidal);
    EXPECT_EQ(drive->driverType(), DriveSettings::CurrentHysteresisPWM);
}

TEST_F(AnalysisStreamTest, ADamagedChoiceInACutBlockFallsBackToTheDefault)
{
    QByteArray bytes = analysisBlock(2);
    bytes.replace(4, 4, streamBytes([](QDataStream &out) { out << qint32(-5); }));
    bytes.truncate(30);
    EXPECT_EQ(loadBlock(*analysis, bytes).status, QDataStream::ReadPastEnd);
    EXPECT_EQ(analysis->solverType(), MagnetostaticAnalysis::Nonlinear);
}

TEST_F(AnalysisStreamTest, EveryFieldSurvivesSaveAndLoad)
{
    analysis->setSolverType(MagnetostaticAnalysis::Linear);
    analysis->setAccuracy(MagnetostaticAnalysis::DefinePoint);
    analysis->setNumberPoints(20);
    analysis->setTimePeriodMode(MagnetostaticAnalysis::DefinePeriod);
    analysis->setTimePeriod({0.1, 0.7});
    analysis->setConverganceTolerance(1e-4);
    analysis->setAdvanceAngle(15.0);
    analysis->setMechanicalSpeed(3000.0);
    analysis->setComputeCoggingTorque(true);
    analysis->setSaveEachFieldSolution(true);
    analysis->setFolderFieldsSolution("/tmp/fields");
    // Last, as any change of a setting drops the results.
    analysis->setDataSimulation(results());
    const QByteArray bytes = savedBlock(*analysis);
    EXPECT_EQ(savedBlock(*analysis), bytes);

    Document other(nullptr);
    const LoadResult result = loadBlock(*other.analysis(), bytes);
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);
    const Document fresh(nullptr);
    expectStoredPropertiesRead(*analysis, *other.analysis(), *fresh.analysis(), {"clearConsoleOnRun", "running"});
}

TEST_F(AnalysisStreamTest, ReservedFieldIsWrittenBackAsRead)
{
    EXPECT_TRUE(loadBlock(*analysis, analysisBlock(2)).usedUp);
    EXPECT_EQ(savedBlock(*analysis), analysisBlock(2));
}

TEST_F(AnalysisStreamTest, Version1HasNoResults)
{
    const LoadResult result = loadBlock(*analysis, analysisBlock(1));
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);
    EXPECT_EQ(analysis->numberPoints(), 20);
    EXPECT_EQ(analysis->folderFieldsSolution(), "/tmp/fields");
    EXPECT_TRUE(analysis->dataSimulation().isEmpty());
}

TEST_F(AnalysisStreamTest, NewerVersionIsRefusedWithoutAChange)
{
    EXPECT_FALSE(loadBlock(*analysis, analysisBlock(3)).accepted);
    EXPECT_EQ(analysis->solverType(), MagnetostaticAnalysis::Nonlinear);
}

TEST(AnalysisTypes, RegisteredNamesRoundTripInsideAVariant)
{
    registerAnalysisTypes();
    expectVariantRoundTrip("MagnetostaticAnalysis::SolverType", MagnetostaticAnalysis::Linear);
    expectVariantRoundTrip("MagnetostaticAnalysis::Accuracy", MagnetostaticAnalysis::DefinePoint);
    expectVariantRoundTrip("MagnetostaticAnalysis::TimePeriodMode", MagnetostaticAnalysis::DefinePeriod);
    expectVariantRoundTrip("DriveSettings::WaveformCurrent", DriveSettings::Trapezoidal);
    expectVariantRoundTrip("DriveSettings::MethodInputCurrent", DriveSettings::DCSupplyCurrent);
    expectVariantRoundTrip("DriveSettings::DriveType", DriveSettings::SpaceVectorPWM);
    expectVariantRoundTrip("DriveSettings::SwitchDutyCycle", DriveSettings::Deg180);
    expectVariantRoundTrip("DriveSettings::SixStepOptions", DriveSettings::VariabledDCVoltage);

    QByteArray bytes;
    variantRoundTrip(QVariant::fromValue(DriveSettings::Deg180), &bytes);
    EXPECT_EQ(bytes.right(4).toHex(), "000000b4");
}
