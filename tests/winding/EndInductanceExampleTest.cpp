#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "support/ConsoleSpies.h"
#include "winding/WindingObject.h"

// The end inductance of the example machine: 12 slots, 10 poles, double-layer tooth coils.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

class EndInductanceExampleTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString copy = folder.filePath(QStringLiteral("new_motor.zva"));
        ASSERT_TRUE(QFile::copy(example, copy));
        document.start();
        ASSERT_TRUE(document.load(copy));
        winding->setAutoCalcEndInductance(true);
    }

    // Runs the event loop until the scheduled calculation has run.
    void waitForCalculation()
    {
        const QDeadlineTimer deadline(60000);
        while (winding->isCalcEndInductancePending() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        ASSERT_FALSE(winding->isCalcEndInductancePending());
    }

    QTemporaryDir folder;
    Document document;
    WindingObject *winding = document.winding();
};

} // namespace

TEST_F(EndInductanceExampleTest, TheExampleHasAPlausibleEndInductanceInMicrohenries)
{
    ConsoleSpies console(winding->console());
    const WindingObject::Inductance result = winding->calcEndInductance();
    QStringList lines;
    for (const QList<QVariant> &signal : console.log)
        lines << signal.at(1).toString();
    EXPECT_TRUE(console.error.isEmpty());
    EXPECT_TRUE(lines.contains(QStringLiteral(" Outer Inductance: %1").arg(result.outer))) << lines.join('\n').toStdString();
    EXPECT_TRUE(lines.contains(QStringLiteral(" Inner Inductance: %1").arg(result.inner)));
    EXPECT_EQ(lines.filter(QStringLiteral(" Outer / Inner Inductance L")).size(), 5);
    EXPECT_EQ(result.methodText, "(By Neumann integrals)");
    std::cout << "end inductance of the example: " << result.total << " H (inner " << result.inner << ", outer "
              << result.outer << "), turns " << winding->numberTurns() << ", paths " << winding->parallelPaths()
              << std::endl;
    // Per turn squared: tenths of a microhenry for coil ends some centimetres long.
    const double perTurn = result.total / Winding::turnsFactor(winding->numberTurns(), winding->parallelPaths());
    EXPECT_GT(perTurn, 1e-8);
    EXPECT_LT(perTurn, 1e-5);
    EXPECT_GT(result.innerSelf, 0.0);
    EXPECT_GT(result.outerSelf, 0.0);
    // The self parts of the coils outweigh their coupling to the other phases.
    EXPECT_LT(result.outerMutual, result.outerSelf);
    EXPECT_LT(result.innerMutual, result.innerSelf);
}

TEST_F(EndInductanceExampleTest, AChangeOfParallelPathsSchedulesTheCalculationAndScalesTheResult)
{
    // Whatever the loading scheduled runs first.
    waitForCalculation();
    const int paths = winding->parallelPaths();
    winding->setParallelPaths(2 * paths);
    EXPECT_TRUE(winding->isCalcEndInductancePending());
    EXPECT_EQ(winding->methodCalcEndInductance(), "Calculation...");
    waitForCalculation();
    EXPECT_EQ(winding->methodCalcEndInductance(), "(By Neumann integrals)");
    const double halved = winding->endInductance();
    ASSERT_GT(halved, 0.0);
    EXPECT_DOUBLE_EQ(winding->endInductanceInner()[0] + winding->endInductanceOuter()[0], halved);

    winding->setParallelPaths(paths);
    waitForCalculation();
    EXPECT_NEAR(winding->endInductance(), 4.0 * halved, 1e-9 * halved);

    // Switching to manual stops a calculation on its way and brings the user's value back.
    winding->setParallelPaths(2 * paths);
    winding->setAutoCalcEndInductance(false);
    EXPECT_FALSE(winding->isCalcEndInductancePending());
    EXPECT_EQ(winding->methodCalcEndInductance(), "Manual");
}

TEST_F(EndInductanceExampleTest, TheDataForAnAnalysisWaitForTheEndInductance)
{
    waitForCalculation();
    winding->setParallelPaths(2 * winding->parallelPaths());
    ASSERT_TRUE(winding->isCalcEndInductancePending());
    document.ensureData();
    EXPECT_FALSE(winding->isCalcEndInductancePending());
    EXPECT_EQ(winding->methodCalcEndInductance(), "(By Neumann integrals)");
}
