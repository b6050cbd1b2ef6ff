#include <QtMath>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "support/ConsoleSpies.h"
#include "winding/WindingObject.h"

namespace {

std::string joined(const QSignalSpy &spy)
{
    QStringList texts;
    for (const QList<QVariant> &signal : spy)
        texts << signal.at(1).toString();
    return texts.join('\n').toStdString();
}

double distance(const Winding::Point3 &a, const Winding::Point3 &b)
{
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) + (a.z - b.z) * (a.z - b.z));
}

struct WindingCase
{
    const char *name;
    int numberSlots;
    int polePairs;
    int layers;
    Winding::LayersOrientation orientation;
};

// Tooth coils and distributed coils, in one layer and in two.
const WindingCase windingCases[] = {
    {"tooth coils, two layers", 12, 5, 2, Winding::LeftRight},
    {"tooth coils, one layer", 12, 5, 1, Winding::UpperLower},
    {"distributed, one layer", 24, 2, 1, Winding::UpperLower},
    {"distributed, two layers", 24, 2, 2, Winding::UpperLower},
};

struct StatorCase
{
    const char *script;
    Machine::Type machine;
    MotorElement::MiddleType type;
};

const StatorCase statorCases[] = {
    {"SlottedStator.js", Machine::SR, MotorElement::Yoke},
    {"SlottedStatorToothTips.js", Machine::SR, MotorElement::Yoke},
};

// A ready design of the shipped configuration, with bodies of the given kind.
class EndturnsTest : public ::testing::Test
{
protected:
    EndturnsTest()
    {
        doc.start();
        doc.markAsMade();
    }

    void makeMachine(const StatorCase &stator, const WindingCase &windingCase)
    {
        doc.setMachineType(stator.machine);
        for (MotorElement *element : {static_cast<MotorElement *>(doc.stator()), static_cast<MotorElement *>(doc.rotor())}) {
            element->setInnerDiameter(100.0);
            element->setOuterDiameter(300.0);
        }
        doc.stator()->setTypeMiddleItem(stator.type);
        doc.stator()->setNumberSlots(windingCase.numberSlots);
        doc.rotor()->setNumberPolePairs(windingCase.polePairs);
        for (StatorItem *item : doc.stator()->items())
            item->setHeight(40.0);
        winding->setNumberLayers(windingCase.layers);
        winding->setLayersOrientation(windingCase.orientation);
        doc.stator()->setScript(QString::fromLatin1(stator.script));
    }

    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    ConsoleSpies console{winding->console()};
};

} // namespace

TEST_F(EndturnsTest, ShippedScriptsGivePathsForEveryShippedStatorAndWinding)
{
    // The pieces stay while the end-turn script changes: each machine is built once.
    for (const StatorCase &stator : statorCases) {
        for (const WindingCase &windingCase : windingCases) {
            makeMachine(stator, windingCase);
            for (const char *script : {"WindingEndturns.js", "StackedEndturns.js"}) {
                SCOPED_TRACE(QStringLiteral("%1 on %2 (%3), %4")
                                 .arg(script, stator.script)
                                 .arg(stator.machine)
                                 .arg(windingCase.name)
                                 .toStdString());
                winding->setEndturnsScript(QString::fromLatin1(script));
                winding->dropEndturns();
                console.error.clear();
                winding->updateEndturns();
                ASSERT_TRUE(winding->hasEndturns());
                const QVector<QVector<Winding::Endturns>> layouts = winding->endturns();
                ASSERT_EQ(layouts.size(), winding->countLayouts());
                for (const QVector<Winding::Endturns> &coils : layouts) {
                    // Every coil of the layout has its two ends.
                    EXPECT_EQ(coils.size(), windingCase.numberSlots * windingCase.layers / 2);
                    for (const Winding::Endturns &coil : coils) {
                        EXPECT_FALSE(coil.outer.path.is_null());
                        EXPECT_FALSE(coil.inner.path.is_null());
                        EXPECT_GE(coil.outer.filaments.size(), 1);
                    }
                }
                EXPECT_TRUE(console.error.isEmpty()) << joined(console.error);
                EXPECT_FALSE(winding->windingErrors()
                             & (CoreMotorElement::InnerFilaments | CoreMotorElement::OuterFilaments
                                | CoreMotorElement::EndWindingFailed));
            }
        }
    }
}

TEST_F(EndturnsTest, PhaseResistanceIsRhoLengthOverAreaOfTheMeanTurn)
{
    makeMachine(statorCases[0], windingCases[0]);
    winding->setEndturnsScript(QStringLiteral("WindingEndturns.js"));
    winding->setWireSize(QStringLiteral("20 AWG"));
    winding->setNumberTurns(30);
    winding->setStrandsConductor(2);
    winding->setParallelPaths(2);
    doc.stator()->setWindingTemperature(20.0);
    doc.stator()->setWindingMaterial(QStringLiteral("Copper annealed"));
    ASSERT_TRUE(winding->hasEndturns());

    // The mean turn of phase A, by hand from the paths and the slot centres.
    double turns = 0.0;
    double coilsOfA = 0;
    const QVector<QVector<Winding::Endturns>> endturns = winding->endturns();
    for (const Winding::Endturns &coil : endturns.first()) {
        if (coil.phase != Winding::A)
            continue;
        turns += coil.outer.path.length() + coil.inner.path.length()
                 + 2.0 * distance(coil.outer.begin.center, coil.inner.end.center);
        ++coilsOfA;
    }
    ASSERT_EQ(coilsOfA, 4);
    const double meanTurn = turns / coilsOfA / 1000.0; // m
    // The 100 mm of active length less the coil's inner and outer clearance, and two end turns.
    EXPECT_GT(meanTurn, 0.15);
    const double length = 30 * coilsOfA * meanTurn;
    // Two strands of 0.812 mm in each of two paths of half the length, in parallel.
    const double strandArea = M_PI * 0.406e-3 * 0.406e-3;
    const double path = 1.7241e-8 * (length / 2) / (2 * strandArea);
    const double atTwenty = path / 2;
    EXPECT_NEAR(winding->phaseResistance(), atTwenty, 1e-9 * atTwenty);

    doc.stator()->setWindingTemperature(120.0);
    EXPECT_NEAR(winding->phaseResistance(), atTwenty * (1 + 100 * 0.00393), 1e-9 * atTwenty);
    EXPECT_FALSE(winding->windingErrors().testFlag(CoreMotorElement::Unbalanced));
}
