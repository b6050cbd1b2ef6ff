#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "scripting/QtPrinters.h"
#include "winding/CoilHelpers.h"
#include "winding/WindingObject.h"

using Winding::CoilList;
using Winding::Layout;

namespace {

class WindingLayoutsTest : public ::testing::Test
{
protected:
    void setSlotsAndPoles(int numberSlots, int polePairs)
    {
        doc.stator()->setNumberSlots(numberSlots);
        doc.rotor()->setNumberPolePairs(polePairs);
    }

    void setDoubleLayer(Winding::LayersOrientation orientation)
    {
        winding->setNumberLayers(2);
        winding->setLayersOrientation(orientation);
    }

    // The slots of the coils of a phase, without layers and paths.
    CoilList slotsOf(Winding::Phase phase, const Layout &layout) const
    {
        CoilList result;
        for (const Winding::Coil &c : layout.at(phase))
            result << coil(c.slotFrom, c.slotTo);
        return result;
    }

    bool isEmpty(const Layout &layout) const
    {
        return std::all_of(layout.cbegin(), layout.cend(), [](const CoilList &list) { return list.isEmpty(); });
    }

    Document doc{nullptr};
    WindingObject *winding = doc.winding();
};

} // namespace

TEST_F(WindingLayoutsTest, NewPolesRegenerateTheLayoutAndItsSpan)
{
    setSlotsAndPoles(24, 4);
    EXPECT_EQ(winding->coilSpan(), 3);
    EXPECT_EQ(slotsOf(Winding::A, winding->layout()), CoilList({coil(3, 0), coil(9, 6), coil(15, 12), coil(21, 18)}));
    EXPECT_NEAR(winding->calcWindingFactor(1), 1.0, 1e-12);
    EXPECT_TRUE(winding->isBalanced());

    QSignalSpy layoutsSpy(winding, &WindingObject::layoutsChanged);
    QSignalSpy spanSpy(winding, &WindingObject::coilSpanChanged);
    doc.rotor()->setNumberPolePairs(2);
    EXPECT_EQ(layoutsSpy.count(), 1);
    EXPECT_EQ(spanSpy.count(), 1);
    EXPECT_EQ(winding->coilSpan(), 5);
    EXPECT_NEAR(winding->calcWindingFactor(1), 0.965926, 5e-7);
    EXPECT_EQ(winding->coilLayouts().first(), winding->layout());

    // The same values again change nothing.
    doc.rotor()->setNumberPolePairs(2);
    doc.stator()->setNumberSlots(24);
    winding->updateLayouts();
    EXPECT_EQ(layoutsSpy.count(), 1);
    EXPECT_EQ(spanSpy.count(), 1);
}

TEST_F(WindingLayoutsTest, InfeasibleCombinationLeavesNoCoils)
{
    setSlotsAndPoles(12, 5);
    ASSERT_FALSE(isEmpty(winding->layout()));

    QSignalSpy layoutsSpy(winding, &WindingObject::layoutsChanged);
    setSlotsAndPoles(10, 4);
    EXPECT_TRUE(isEmpty(winding->layout()));
    for (const Layout &layout : winding->coilLayouts())
        EXPECT_TRUE(isEmpty(layout));
    EXPECT_GE(layoutsSpy.count(), 1);
    EXPECT_TRUE(winding->windingErrors().testFlag(CoreMotorElement::SlotPoleNotFeasible));
    EXPECT_DOUBLE_EQ(winding->calcWindingFactor(1), 0.0);
    EXPECT_EQ(winding->signatureLayouts(), "");
}

TEST_F(WindingLayoutsTest, FacesOfTheMachineGetCopiesOfTheBaseLayout)
{
    setDoubleLayer(Winding::LeftRight);
    setSlotsAndPoles(12, 5);
    EXPECT_NEAR(winding->calcWindingFactor(1), 0.933013, 5e-7);

    doc.setMachineType(Machine::SRS);
    QVector<Layout> layouts = winding->coilLayouts();
    EXPECT_EQ(layouts.at(0), winding->layout());
    EXPECT_EQ(layouts.at(1), winding->layout());
    EXPECT_TRUE(isEmpty(layouts.at(2)));
    EXPECT_EQ(winding->statorItemOfLayout(1), 2);

    doc.setMachineType(Machine::RSRSR);
    EXPECT_EQ(winding->countLayouts(), 4);
    EXPECT_EQ(winding->statorItemOfLayout(3), 2);
    EXPECT_EQ(winding->coilLayouts().at(3), winding->layout());

    QSignalSpy countSpy(winding, &WindingObject::countLayoutsChanged);
    doc.stator()->setTypeMiddleItem(MotorElement::Yokeless);
    EXPECT_EQ(countSpy.count(), 1);
    EXPECT_EQ(winding->countLayouts(), 2);
    EXPECT_EQ(winding->statorItemOfLayout(1), 2);
    layouts = winding->coilLayouts();
    EXPECT_EQ(layouts.at(1), winding->layout());
    EXPECT_TRUE(isEmpty(layouts.at(2)));
}

TEST_F(WindingLayoutsTest, ReversedLayersSwapTheLayersOfThatFaceOnly)
{
    setDoubleLayer(Winding::UpperLower);
    setSlotsAndPoles(24, 2);
    doc.setMachineType(Machine::SRS);

    QSignalSpy layoutsSpy(winding, &WindingObject::layoutsChanged);
    winding->setReverseLayerLayout(1, true);
    EXPECT_EQ(layoutsSpy.count(), 1);
    Layout swapped = winding->layout();
    for (CoilList &list : swapped) {
        for (Winding::Coil &c : list)
            std::swap(c.layerFrom, c.layerTo);
    }
    EXPECT_EQ(winding->coilLayouts().at(0), winding->layout());
    EXPECT_EQ(winding->coilLayouts().at(1), swapped);
}

TEST_F(WindingLayoutsTest, NewParallelPathsKeepTheEndTurnsAndANewSpanDropsThem)
{
    setDoubleLayer(Winding::UpperLower);
    setSlotsAndPoles(24, 2);
    winding->setEndturnShapeGenerated(true);

    QSignalSpy layoutsSpy(winding, &WindingObject::layoutsChanged);
    winding->setParallelPaths(2);
    EXPECT_EQ(layoutsSpy.count(), 1);
    EXPECT_TRUE(winding->isEndturnShapeGenerated());
    const CoilList a = winding->layout().at(Winding::A);
    ASSERT_EQ(a.size(), 8);
    EXPECT_EQ(a.at(0).parallelPath, 1);
    EXPECT_EQ(a.at(1).parallelPath, 2);
    EXPECT_EQ(a.at(2).parallelPath, 1);

    winding->setAutoCalcCoilSpan(false);
    winding->setCoilSpan(5);
    EXPECT_EQ(layoutsSpy.count(), 2);
    EXPECT_FALSE(winding->isEndturnShapeGenerated());
    EXPECT_NEAR(winding->calcWindingFactor(1), 0.933013, 5e-7);
}

TEST_F(WindingLayoutsTest, SettingsOfTheWindingRebuildTheLayout)
{
    setSlotsAndPoles(12, 5);
    EXPECT_EQ(winding->layout().at(Winding::A).size(), 2);

    winding->setNumberLayers(2);
    EXPECT_EQ(winding->layout().at(Winding::A).size(), 4);
    EXPECT_EQ(winding->coilSpan(), 2);
    winding->setLayersOrientation(Winding::LeftRight);
    EXPECT_EQ(winding->coilSpan(), 1);
    EXPECT_NEAR(winding->calcWindingFactor(1), 0.933013, 5e-7);

    winding->setNumberLayers(1);
    winding->setType(Winding::Toroidal);
    const CoilList a = winding->layout().at(Winding::A);
    ASSERT_EQ(a.size(), 4);
    for (const Winding::Coil &c : a)
        EXPECT_EQ(c.slotFrom, c.slotTo);
    EXPECT_NEAR(winding->calcWindingFactor(1), 0.965926, 5e-7);
    EXPECT_TRUE(winding->windingErrors() == WindingErrors());
}

TEST_F(WindingLayoutsTest, ToroidalWindingHasOneLayoutABody)
{
    doc.setMachineType(Machine::RSR);
    EXPECT_EQ(winding->countLayouts(), 2);
    winding->setType(Winding::Toroidal);
    EXPECT_EQ(winding->countLayouts(), 1);
}

TEST_F(WindingLayoutsTest, ManualCoilsStayWhenTheSlotsChange)
{
    setSlotsAndPoles(12, 5);
    winding->setModeLayout(Winding::Manual);
    Layout layout = winding->layout();
    layout[Winding::A][0] = coil(2, 3);
    winding->setLayout(layout);

    setSlotsAndPoles(6, 5);
    EXPECT_EQ(slotsOf(Winding::A, winding->layout()), CoilList({coil(2, 3)}));
    for (const CoilList &list : winding->layout())
        EXPECT_EQ(list.size(), 1);

    doc.stator()->setNumberSlots(12);
    const CoilList a = slotsOf(Winding::A, winding->layout());
    ASSERT_EQ(a.size(), 2);
    EXPECT_EQ(a.first(), coil(2, 3));
    EXPECT_EQ(winding->layout().at(Winding::A).first().orientation, Winding::Coil::CCW);
}

TEST_F(WindingLayoutsTest, BackToAutomaticRegeneratesTheLayout)
{
    setSlotsAndPoles(12, 5);
    const Layout generated = winding->layout();
    winding->setModeLayout(Winding::Manual);
    Layout layout = generated;
    layout[Winding::A][0] = coil(2, 3);
    winding->setLayout(layout);

    winding->setModeLayout(Winding::Automatic);
    EXPECT_EQ(winding->layout(), generated);
}

TEST_F(WindingLayoutsTest, LayoutTextIsSavedToAFile)
{
    setSlotsAndPoles(12, 5);
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath("layout.txt");
    ASSERT_TRUE(winding->saveLayoutsToFile(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_EQ(text, winding->layoutsToText());
    EXPECT_TRUE(text.startsWith("Layout #1\n"));

    EXPECT_FALSE(winding->saveLayoutsToFile(dir.filePath("missing/layout.txt")));
}
