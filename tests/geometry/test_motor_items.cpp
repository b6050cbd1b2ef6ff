#include <QSignalSpy>
#include <gtest/gtest.h>

#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"

TEST(MotorItem, HeightNotAboveZeroIsReportedAndBecomesATenth)
{
    Document doc(nullptr);
    StatorItem *item = doc.stator()->items().at(0);
    QSignalSpy errors(doc.stator()->console(), &ScriptConsole::signalError);
    QSignalSpy heightSpy(item, &MotorItem::heightChanged);

    item->setHeight(0.0);
    EXPECT_DOUBLE_EQ(item->height(), 0.1);
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors.at(0).at(1).toString(), "Height of statorItem1 must be great zero!");

    item->setHeight(-4.0);
    EXPECT_EQ(errors.count(), 2);
    EXPECT_EQ(heightSpy.count(), 1);
}

TEST(MotorItem, HeightIsRoundedAndAnnouncedBeforeTheItemChange)
{
    Document doc(nullptr);
    RotorItem *item = doc.rotor()->items().at(0);
    QStringList order;
    QObject::connect(item, &MotorItem::heightChanged, [&order] { order << "height"; });
    QObject::connect(item, &MotorItem::itemChanged, [&order] { order << "item"; });

    item->setHeight(50.000001);
    EXPECT_TRUE(order.isEmpty());

    item->setHeight(12.345678);
    EXPECT_DOUBLE_EQ(item->height(), 12.34568);
    EXPECT_EQ(order, QStringList({"height", "item"}));
    EXPECT_TRUE(doc.isGeometryModified());
}

TEST(MotorItem, AngularDisplacementIsBroughtIntoOneTurn)
{
    Document doc(nullptr);
    StatorItem *item = doc.stator()->items().at(0);
    const QVector<QPair<double, double>> table{
        {-30.0, 330.0}, {360.0, 0.0}, {725.0, 5.0}, {-720.5, 359.5}, {1e-8, 0.0}, {12.3456789, 12.34568},
    };
    for (const auto &row : table) {
        item->setAngularDisplacement(row.first);
        EXPECT_DOUBLE_EQ(item->angularDisplacement(), row.second) << row.first;
    }

    QSignalSpy spy(item, &MotorItem::angularDisplacementChanged);
    item->setAngularDisplacement(372.34568);
    EXPECT_EQ(spy.count(), 0);
}

TEST(MotorItem, ChangeOfABodyDropsTheCachesOfAllBodies)
{
    Document doc(nullptr);
    StatorItem *statorItem = doc.stator()->items().at(0);
    RotorItem *rotorItem = doc.rotor()->items().at(0);
    statorItem->createPieces();
    rotorItem->createPieces();
    ASSERT_TRUE(statorItem->hasCachedPieces());
    EXPECT_TRUE(statorItem->cachedPieces().isEmpty());

    rotorItem->setAngularDisplacement(10.0);

    EXPECT_FALSE(statorItem->hasCachedPieces());
    EXPECT_FALSE(rotorItem->hasCachedPieces());
}

TEST(MotorItem, ObjectNamesCarryTheElementAndTheId)
{
    Document doc(nullptr);
    EXPECT_EQ(doc.stator()->items().at(2)->objectName(), "statorItem3");
    EXPECT_EQ(doc.rotor()->items().at(1)->objectName(), "rotorItem2");
    EXPECT_EQ(doc.rotor()->items().at(1)->id(), RotorItem::ID2);
}
