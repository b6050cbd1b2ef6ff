#include "ui/Controls/NumberPoleSpinBox.h"
#include "ui/Controls/NumberSlotSpinBox.h"

#include <QFocusEvent>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Types over the whole text, as a user who selected it first.
void type(QSpinBox &box, const QString &text)
{
    box.findChild<QLineEdit *>()->selectAll();
    QTest::keyClicks(&box, text);
}

void leave(QSpinBox &box)
{
    QFocusEvent focusOut(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&box, &focusOut);
}

} // namespace

TEST(NumberSlotSpinBoxTest, TypedCountsBecomeTheNearestMultipleOfThree)
{
    NumberSlotSpinBox box;
    EXPECT_EQ(box.minimum(), 6);
    EXPECT_EQ(box.maximum(), 501);
    EXPECT_EQ(box.singleStep(), 3);

    const struct
    {
        const char *typed;
        int shown;
    } cases[] = {{"20", 21}, {"19", 18}, {"4", 6}, {"10", 9}, {"11", 12}, {"24", 24}, {"600", 501}, {"-5", 6}};
    for (const auto &c : cases) {
        type(box, QLatin1String(c.typed));
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_EQ(box.value(), c.shown) << c.typed;
        EXPECT_EQ(box.text(), QString::number(c.shown)) << c.typed;
    }
}

TEST(NumberSlotSpinBoxTest, EnterAndLeavingCommitTooAndTextThatIsNoNumberKeepsTheValue)
{
    NumberSlotSpinBox box;
    box.setValue(12);
    type(box, QStringLiteral("29"));
    QTest::keyClick(&box, Qt::Key_Enter);
    EXPECT_EQ(box.value(), 30);

    type(box, QStringLiteral("37"));
    EXPECT_EQ(box.value(), 30) << "nothing is applied while typing";
    leave(box);
    EXPECT_EQ(box.value(), 36);

    type(box, QStringLiteral("x"));
    leave(box);
    EXPECT_EQ(box.value(), 36);
}

TEST(NumberPoleSpinBoxTest, TypedCountsAreLimitedToTheRange)
{
    NumberPoleSpinBox box;
    box.setRange(1, 40);
    type(box, QStringLiteral("7"));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.value(), 7);
    type(box, QStringLiteral("77"));
    leave(box);
    EXPECT_EQ(box.value(), 40);
    type(box, QStringLiteral("0"));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.value(), 1);
}

TEST(CountSpinBoxSlots, ScriptsSetTheRangeThroughASlot)
{
    NumberPoleSpinBox box;
    EXPECT_GE(box.metaObject()->indexOfSlot("setRange(int,int)"), 0);
    EXPECT_TRUE(QMetaObject::invokeMethod(&box, "setRange", Q_ARG(int, 2), Q_ARG(int, 8)));
    EXPECT_EQ(box.minimum(), 2);
    EXPECT_EQ(box.maximum(), 8);
}
