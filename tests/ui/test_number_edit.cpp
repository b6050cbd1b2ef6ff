#include "ui/Controls/CustomValidator.h"
#include "ui/Controls/NumberEdit.h"

#include <QFocusEvent>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double tolerance = std::numeric_limits<double>::epsilon();
const QString markedStyle = QStringLiteral("background-color: rgb(255, 252, 207);");

// A field as an editor holds it: its owner stores each finished number and answers with setValue.
class NumberEditTest : public ::testing::Test
{
protected:
    NumberEditTest()
        : finished(&edit, &NumberEdit::valueEditingFinished)
        , changed(&edit, &NumberEdit::valueChanged)
    {
        edit.setValue(5.0);
        changed.clear();
    }

    void type(const QString &text)
    {
        edit.selectAll();
        QTest::keyClicks(&edit, text);
    }

    void leave()
    {
        QFocusEvent focusOut(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(&edit, &focusOut);
    }

    NumberEdit edit;
    QSignalSpy finished;
    QSignalSpy changed;
};

} // namespace

TEST_F(NumberEditTest, TypingMarksTheFieldUntilItShowsTheStoredTextAgain)
{
    type(QStringLiteral("7"));
    EXPECT_EQ(edit.styleSheet(), markedStyle);
    type(QStringLiteral("5"));
    EXPECT_TRUE(edit.styleSheet().isEmpty());
    EXPECT_TRUE(finished.isEmpty());
    EXPECT_TRUE(changed.isEmpty());
}

TEST_F(NumberEditTest, ReturnHandsOnTheNumberButTheFieldKeepsItsValueUntilTheOwnerAnswers)
{
    type(QStringLiteral("7.25"));
    QTest::keyClick(&edit, Qt::Key_Return);
    ASSERT_EQ(finished.size(), 1);
    EXPECT_EQ(finished.at(0).at(0).toDouble(), 7.25);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toDouble(), 7.25);
    EXPECT_EQ(edit.value(), 5.0);

    edit.setValue(7.25);
    EXPECT_EQ(edit.text(), QStringLiteral("7.25"));
    EXPECT_TRUE(edit.styleSheet().isEmpty());
    EXPECT_EQ(changed.size(), 1) << "the text showed the number already";
}

TEST_F(NumberEditTest, CommaAndPointAreBothTheDecimalPoint)
{
    type(QStringLiteral("1,5"));
    QTest::keyClick(&edit, Qt::Key_Return);
    type(QStringLiteral("1.5"));
    QTest::keyClick(&edit, Qt::Key_Return);
    ASSERT_EQ(finished.size(), 2);
    EXPECT_EQ(finished.at(0).at(0).toDouble(), 1.5);
    EXPECT_EQ(finished.at(1).at(0).toDouble(), 1.5);
}

TEST_F(NumberEditTest, TheSameNumberInAnotherSpellingIsNoChange)
{
    type(QStringLiteral("5.000"));
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_TRUE(finished.isEmpty());
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_EQ(edit.text(), QStringLiteral("5"));
    EXPECT_TRUE(edit.styleSheet().isEmpty());
}

TEST_F(NumberEditTest, LeavingTheFieldFinishesWhatCanBeReadAndShowsTheStoredTextUntilTheOwnerAnswers)
{
    edit.setRange(0.0, 10.0);
    type(QStringLiteral("12"));
    leave();
    ASSERT_EQ(finished.size(), 1);
    EXPECT_EQ(finished.at(0).at(0).toDouble(), 10.0) << "brought onto the bound";
    EXPECT_EQ(edit.text(), QStringLiteral("5"));
    EXPECT_TRUE(edit.styleSheet().isEmpty());

    type(QStringLiteral("-"));
    leave();
    EXPECT_EQ(finished.size(), 1) << "a text that is no number is dropped";
    EXPECT_EQ(edit.text(), QStringLiteral("5"));
}

TEST_F(NumberEditTest, ReturnOnANumberOutOfRangeIsDroppedAndTheTextStays)
{
    edit.setRange(0.0, 10.0);
    type(QStringLiteral("12"));
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_TRUE(finished.isEmpty());
    EXPECT_EQ(edit.text(), QStringLiteral("12"));
    EXPECT_EQ(edit.styleSheet(), markedStyle);
}

TEST_F(NumberEditTest, ARangeThatExcludesTheValueMovesItOntoTheNearerBound)
{
    edit.setRange(6.0, 10.0);
    EXPECT_EQ(edit.text(), QStringLiteral("6"));
    EXPECT_EQ(edit.value(), 6.0);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toDouble(), 6.0);

    edit.setMaximumValue(2.5);
    edit.setMinimumValue(-1.0);
    EXPECT_EQ(edit.value(), 2.5);
    EXPECT_EQ(changed.size(), 2);

    edit.setRange(-1.0, 100.0, 0);
    EXPECT_EQ(edit.value(), 2.5) << "a range that holds the value leaves it alone";
}

TEST_F(NumberEditTest, FormattingShowsAtMostSevenDigitsBehindThePoint)
{
    const struct
    {
        double value;
        const char *text;
    } cases[] = {
        {300.0, "300"},       {0.5, "0.5"},       {1.0 / 3.0, "0.3333333"}, {123.456789012345, "123.456789"},
        {0.0, "0"},           {-2.75, "-2.75"},   {-1.0 / 3.0, "-0.3333333"}, {1e-9, "1e-09"},
        {12345678.9, "12345678.9"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(edit.format(c.value), QLatin1String(c.text)) << c.value;

    edit.setDecimals(0);
    EXPECT_EQ(edit.format(2.6), QStringLiteral("3"));
    edit.setDecimals(2);
    EXPECT_EQ(edit.format(1.0 / 3.0), QStringLiteral("0.33"));
}

TEST(CustomValidatorTest, BoundsHoldWithinTheToleranceAndFixupBringsNumbersOntoThem)
{
    CustomValidator validator(0.0, 10.0, 3);
    validator.setTolerance(tolerance);
    int pos = 0;
    QString text = QString::number(10.0 + tolerance / 2, 'g', 17);
    EXPECT_EQ(validator.validate(text, pos), QValidator::Acceptable);
    text = QStringLiteral("10,000");
    EXPECT_EQ(validator.validate(text, pos), QValidator::Acceptable);
    text = QStringLiteral("10.5");
    EXPECT_NE(validator.validate(text, pos), QValidator::Acceptable);
    text = QStringLiteral("abc");
    EXPECT_EQ(validator.validate(text, pos), QValidator::Invalid);

    QString above = QStringLiteral("12.5");
    validator.fixup(above);
    EXPECT_EQ(above, QStringLiteral("10"));
    QString below = QStringLiteral("-0.25");
    validator.fixup(below);
    EXPECT_EQ(below, QStringLiteral("0"));
    QString inside = QStringLiteral("2.500");
    validator.fixup(inside);
    EXPECT_EQ(inside, QStringLiteral("2.5"));
    QString whole = QStringLiteral("200");
    validator.fixup(whole);
    EXPECT_EQ(whole, QStringLiteral("10")) << "trailing zeros go only from a fraction";
}

TEST(NumberEditProperty, TheValueIsTheUserPropertyAnnouncedByValueChanged)
{
    NumberEdit edit;
    const QMetaProperty user = edit.metaObject()->userProperty();
    EXPECT_STREQ(user.name(), "value");
    ASSERT_TRUE(user.hasNotifySignal());
    EXPECT_EQ(user.notifySignal().name(), QByteArray("valueChanged"));

    QSignalSpy changed(&edit, &NumberEdit::valueChanged);
    EXPECT_TRUE(user.write(&edit, 42.0));
    EXPECT_EQ(edit.text(), QStringLiteral("42"));
    EXPECT_EQ(changed.size(), 1);
    edit.setValue(42.0 + tolerance / 4);
    EXPECT_EQ(changed.size(), 1) << "a change within the tolerance is none";
}
