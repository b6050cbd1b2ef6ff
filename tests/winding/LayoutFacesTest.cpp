#include <QSet>
#include <gtest/gtest.h>

#include "winding/CoilHelpers.h"
#include "winding/LayoutFaces.h"

using Winding::Coil;
using Winding::Layout;

namespace {

// The reversal flags a machine reads from the configuration, by the number of the key.
Winding::FaceSettings faces(Machine::Type type, int count, QSet<int> reversedKeys = {})
{
    Winding::FaceSettings result;
    result.machineType = type;
    result.countLayouts = count;
    result.reverseFlag = [reversedKeys](int key) { return reversedKeys.contains(key); };
    return result;
}

} // namespace

TEST(LayoutFaces, CountFollowsTheBodiesOfTheMachine)
{
    const struct
    {
        Machine::Type type;
        int twoFaces;
        int onePerBody;
    } expected[] = {
        {Machine::SR, 1, 1},  {Machine::SRS, 2, 2},   {Machine::SRSRS, 4, 3},
        {Machine::RSR, 2, 1}, {Machine::RSRSR, 4, 2}, {Machine::UnknownType, 1, 1},
    };
    for (const auto &row : expected) {
        SCOPED_TRACE(Machine::typeText(row.type).toStdString());
        EXPECT_EQ(Winding::countLayouts(row.type, false), row.twoFaces);
        EXPECT_EQ(Winding::countLayouts(row.type, true), row.onePerBody);
    }
}

TEST(LayoutFaces, EachLayoutLiesOnAStatorBody)
{
    auto items = [](Machine::Type type, bool onePerBody) {
        QVector<int> result;
        for (int index = 0; index < Winding::countLayouts(type, onePerBody); ++index)
            result << Winding::statorItemOfLayout(type, onePerBody, index);
        return result;
    };
    EXPECT_EQ(items(Machine::SR, false), QVector<int>({1}));
    EXPECT_EQ(items(Machine::RSR, false), QVector<int>({1, 1}));
    EXPECT_EQ(items(Machine::SRS, false), QVector<int>({1, 2}));
    EXPECT_EQ(items(Machine::SRSRS, false), QVector<int>({1, 2, 2, 3}));
    EXPECT_EQ(items(Machine::SRSRS, true), QVector<int>({1, 2, 3}));
    EXPECT_EQ(items(Machine::RSRSR, false), QVector<int>({1, 1, 2, 2}));
    EXPECT_EQ(items(Machine::RSRSR, true), QVector<int>({1, 2}));

    EXPECT_EQ(Winding::statorItemOfLayout(Machine::SRS, false, 2), 0);
    EXPECT_EQ(Winding::statorItemOfLayout(Machine::SRSRS, true, -1), 0);
}

TEST(LayoutFaces, ConfigurationKeysThatReverseEachLayout)
{
    auto keys = [](Machine::Type type, int count) {
        QVector<int> result;
        for (int index = 0; index < count; ++index)
            result << Winding::reverseKeyOfLayout(type, count, index);
        return result;
    };
    EXPECT_EQ(keys(Machine::SR, 1), QVector<int>({0}));
    EXPECT_EQ(keys(Machine::SRS, 2), QVector<int>({0, 2}));
    EXPECT_EQ(keys(Machine::SRSRS, 4), QVector<int>({0, 2, 3, 4}));
    EXPECT_EQ(keys(Machine::SRSRS, 3), QVector<int>({0, 3, 4}));
    EXPECT_EQ(keys(Machine::RSR, 2), QVector<int>({0, 2}));
    EXPECT_EQ(keys(Machine::RSR, 1), QVector<int>({0}));
    EXPECT_EQ(keys(Machine::RSRSR, 4), QVector<int>({0, 2, 3, 4}));
    // With one layout a body, the first layout of this machine may be turned round too.
    EXPECT_EQ(keys(Machine::RSRSR, 2), QVector<int>({2, 4}));
}

TEST(LayoutFaces, ReversingTwiceGivesTheSameCoilsBack)
{
    Layout layout = sampleLayout();
    Winding::reverseLayout(layout);
    const Coil &reversed = layout.at(Winding::A).first();
    EXPECT_EQ(reversed.slotFrom, 0);
    EXPECT_EQ(reversed.slotTo, 1);
    EXPECT_EQ(reversed.layerFrom, 0);
    EXPECT_EQ(reversed.layerTo, 1);
    EXPECT_EQ(reversed.orientation, Coil::CCW);
    EXPECT_EQ(layout.at(Winding::C).first().orientation, Coil::Zero);

    Winding::reverseLayout(layout);
    EXPECT_EQ(layout, sampleLayout());
}

TEST(LayoutFaces, LayoutsInUseAreCopiesTurnedAsTheConfigurationSays)
{
    const Layout base = sampleLayout();
    Layout reversed = base;
    Winding::reverseLayout(reversed);

    QVector<Layout> layouts = Winding::faceLayouts(base, faces(Machine::SRSRS, 3, {4}));
    ASSERT_EQ(layouts.size(), 4);
    EXPECT_EQ(layouts.at(0), base);
    EXPECT_EQ(layouts.at(1), base);
    EXPECT_EQ(layouts.at(2), reversed);
    EXPECT_EQ(layouts.at(3), Layout());

    layouts = Winding::faceLayouts(base, faces(Machine::RSRSR, 2, {2}));
    EXPECT_EQ(layouts.at(0), reversed);
    EXPECT_EQ(layouts.at(1), base);

    // A flag that no layout of the machine reads changes nothing.
    layouts = Winding::faceLayouts(base, faces(Machine::SR, 1, {2, 3, 4}));
    EXPECT_EQ(layouts.at(0), base);
}

TEST(LayoutFaces, LayersAreSwappedOnlyWhereStackedAndAsked)
{
    const Layout base = sampleLayout();
    Layout swapped = base;
    Winding::swapLayers(swapped);
    EXPECT_EQ(swapped.at(Winding::A).first().layerFrom, 0);
    EXPECT_EQ(swapped.at(Winding::A).first().layerTo, 1);
    EXPECT_EQ(swapped.at(Winding::A).first().orientation, Coil::CW);

    Winding::FaceSettings settings = faces(Machine::SRS, 2);
    settings.reverseLayers = {false, true};
    EXPECT_EQ(Winding::faceLayouts(base, settings).at(1), base);

    settings.layersSwappable = true;
    const QVector<Layout> layouts = Winding::faceLayouts(base, settings);
    EXPECT_EQ(layouts.at(0), base);
    EXPECT_EQ(layouts.at(1), swapped);
}
