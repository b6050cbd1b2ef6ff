#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <iostream>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "support/ConsoleSpies.h"
#include "winding/WindingObject.h"

// What the shipped end-turn scripts say of their own end turns: on the example's tooth
// coils and on a distributed double-layer winding.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

struct Verdict
{
    bool outer;
    bool inner;
    QStringList distances;
};

class ShippedEndturnsOverlapTest : public ::testing::Test
{
protected:
    ShippedEndturnsOverlapTest() { doc.start(); }

    // 24 slots, 4 poles, two layers one above the other: coils of span 5 whose end turns cross.
    void makeDistributedMachine()
    {
        doc.markAsMade();
        doc.setMachineType(Machine::SR);
        for (MotorElement *element : {static_cast<MotorElement *>(doc.stator()), static_cast<MotorElement *>(doc.rotor())}) {
            element->setInnerDiameter(100.0);
            element->setOuterDiameter(300.0);
        }
        doc.stator()->setTypeMiddleItem(MotorElement::Yoke);
        doc.stator()->setNumberSlots(24);
        doc.rotor()->setNumberPolePairs(2);
        for (StatorItem *item : doc.stator()->items())
            item->setHeight(40.0);
        winding->setNumberLayers(2);
        winding->setLayersOrientation(Winding::UpperLower);
        doc.stator()->setScript(QStringLiteral("SlottedStator.js"));
    }

    Verdict verdictOf(const char *script)
    {
        winding->setEndturnsScript(QString::fromLatin1(script));
        winding->dropEndturns();
        console.log.clear();
        console.error.clear();
        winding->updateEndturns();
        EXPECT_TRUE(winding->hasEndturns());
        EXPECT_TRUE(console.error.isEmpty());
        Verdict verdict{winding->windingWarnings().testFlag(CoreMotorElement::OuterEndturnsOverlap),
                        winding->windingWarnings().testFlag(CoreMotorElement::InnerEndturnsOverlap),
                        {}};
        for (const QList<QVariant> &signal : console.log) {
            if (signal.at(1).toString().contains(QLatin1String(" end turns: closest ")))
                verdict.distances << signal.at(1).toString();
        }
        std::cout << script << ": " << verdict.distances.join("; ").toStdString() << std::endl;
        return verdict;
    }

    QTemporaryDir folder;
    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    ConsoleSpies console{winding->console()};
};

} // namespace

// Inside, neighbouring coils leave their shared slot touching, closer together than the
// bundle is thick where the coil is widest: that is no overlap.
TEST_F(ShippedEndturnsOverlapTest, TheExamplesToothCoilsOverlapWithNeitherScript)
{
    const QString copy = folder.filePath(QStringLiteral("new_motor.zva"));
    ASSERT_TRUE(QFile::copy(example, copy));
    ASSERT_TRUE(doc.load(copy));
    for (const char *script : {"WindingEndturns.js", "StackedEndturns.js"}) {
        SCOPED_TRACE(script);
        const Verdict verdict = verdictOf(script);
        // One layout: a line for each side.
        EXPECT_EQ(verdict.distances.size(), 2);
        EXPECT_FALSE(verdict.outer);
        EXPECT_FALSE(verdict.inner);
    }
}

TEST_F(ShippedEndturnsOverlapTest, ADistributedWindingOverlapsWithBothScripts)
{
    makeDistributedMachine();
    const Verdict arched = verdictOf("WindingEndturns.js");
    EXPECT_TRUE(arched.outer);
    EXPECT_TRUE(arched.inner);
    // Its levels part only end turns that start from different layers: neighbours that
    // start from the same layer still cross within a millimetre or so of each other.
    const Verdict stacked = verdictOf("StackedEndturns.js");
    EXPECT_TRUE(stacked.outer);
    EXPECT_TRUE(stacked.inner);
}
