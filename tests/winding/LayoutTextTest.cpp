#include <gtest/gtest.h>

#include "scripting/QtPrinters.h"
#include "winding/CoilHelpers.h"
#include "winding/LayoutGenerator.h"
#include "winding/LayoutSettingsOf.h"
#include "winding/LayoutSignature.h"
#include "winding/LayoutText.h"

using Winding::Coil;
using Winding::Layout;

TEST(LayoutText, ColumnsAreAsWideAsTheirHeadersAndCountFromOne)
{
    const QString text = Winding::layoutsToText({sampleLayout(), Layout()}, 2, 2);
    EXPECT_EQ(text, "Layout #1\n"
                    " Coil; Slot from; Layer from; Slot to; Layer to; Dir; Parallel path;\n"
                    "Phase A\n"
                    " #1            2           2        1         1   CW              1 \n"
                    " #2            7           1        8         2  CCW              2 \n"
                    "Phase B\n"
                    "Phase C\n"
                    " #1            4           1        4         2 Zero              1 \n"
                    "\n"
                    "Layout #2\n"
                    " Coil; Slot from; Layer from; Slot to; Layer to; Dir; Parallel path;\n"
                    "Phase A\n"
                    "Phase B\n"
                    "Phase C\n");
}

TEST(LayoutText, OneParallelPathHasNoColumnForIt)
{
    Layout layout;
    Coil wide = coil(11, 0, 1, 0);
    wide.orientation = Coil::CCW;
    for (int i = 0; i < 11; ++i)
        layout[Winding::B] << coil(1, 0, 1, 0);
    layout[Winding::B] << wide;
    const QStringList lines = Winding::layoutsToText({layout, layout}, 1, 1).split('\n');
    EXPECT_EQ(lines.at(1), " Coil; Slot from; Layer from; Slot to; Layer to; Dir;");
    EXPECT_EQ(lines.at(15), " #12          12           2        1         1  CCW ");
    // Only the layouts in use are written.
    EXPECT_FALSE(lines.contains("Layout #2"));
}

TEST(SlotMarks, EachSideIsMarkedWithPhaseAndPath)
{
    const QVector<Winding::SlotMark> marks = Winding::slotMarks(sampleLayout(), 12, 2);
    ASSERT_EQ(marks.size(), 24);

    const Winding::SlotMark &from = marks.at(2 * 1 + 1);
    EXPECT_EQ(from.text, "+A1");
    EXPECT_EQ(from.slot, 1);
    EXPECT_EQ(from.layer, 1);
    EXPECT_EQ(from.phase, Winding::A);
    EXPECT_EQ(from.color, Winding::phaseSlotColor(Winding::A, false));
    EXPECT_EQ(marks.at(2 * 7 + 1).text, "-A2");
    EXPECT_EQ(marks.at(2 * 3).text, "+C1");
    EXPECT_EQ(marks.at(2 * 3 + 1).text, "-C1");
    EXPECT_TRUE(marks.at(2 * 2).isEmpty());
}

TEST(SlotMarks, SidesOutsideTheSlotsAreLeftOut)
{
    Layout layout;
    layout[Winding::B] << coil(0, 9, 0, 0) << coil(1, 2, 0, 3);
    const QVector<Winding::SlotMark> marks = Winding::slotMarks(layout, 6, 1);
    ASSERT_EQ(marks.size(), 6);
    EXPECT_EQ(marks.at(0).text, "+B1");
    EXPECT_EQ(marks.at(1).text, "+B1");
    EXPECT_TRUE(marks.at(2).isEmpty());
    const auto isMarked = [](const Winding::SlotMark &mark) { return !mark.isEmpty(); };
    EXPECT_EQ(std::count_if(marks.cbegin(), marks.cend(), isMarked), 2);
}

TEST(LayoutSignature, GeneratedWindingsFillEverySlotPosition)
{
    for (const Winding::LayoutSettings &given :
         {settings(12, 5, 2, Winding::LeftRight), settings(12, 5, 1), settings(9, 4, 2, Winding::LeftRight),
          settings(24, 2, 2), settings(24, 4, 1)}) {
        SCOPED_TRACE(testing::Message() << given.numberSlots << " slots " << given.polePairs << " pole pairs "
                                        << given.numberLayers << " layers");
        const QString signature =
            Winding::layoutSignature(Winding::LayoutGenerator(given).baseLayout()->layout, given);
        EXPECT_EQ(signature.size(), 2 * given.numberLayers * given.numberSlots);
        EXPECT_FALSE(signature.contains('.'));
        EXPECT_EQ(signature.count("+B"), signature.count("+A"));
        EXPECT_EQ(signature.count("+C"), signature.count("+A"));
    }
}

TEST(LayoutSignature, ToroidalCoilsEachHaveASlotOfTheirOwn)
{
    Winding::LayoutSettings toroidal = settings(12, 5, 1);
    toroidal.type = Winding::Toroidal;
    const Layout layout = Winding::LayoutGenerator(toroidal).baseLayout()->layout;
    EXPECT_TRUE(Winding::isToroidalLayoutValid(layout));
    // Slot 0 holds the coil made of the second side of phase A's first coil: from layer 1 to 0.
    EXPECT_EQ(Winding::layoutSignature(layout, toroidal).left(4), "-A+A");

    // Two layers of planar coils put two toroidal coils into each slot.
    Winding::LayoutSettings crowded = settings(12, 5, 2, Winding::LeftRight);
    crowded.type = Winding::Toroidal;
    const Layout doubled = Winding::LayoutGenerator(crowded).baseLayout()->layout;
    EXPECT_FALSE(Winding::isToroidalLayoutValid(doubled));
    EXPECT_EQ(Winding::layoutSignature(doubled, crowded), "");
}
