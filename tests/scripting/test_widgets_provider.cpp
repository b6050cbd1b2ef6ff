#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlWidgets.h"
#include "QtPrinters.h"
#include "ui/Controls/EnumComboBoxes.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/Controls/NumberSlotSpinBox.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPushButton>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// A panel as an editor hands it to a script: the host stays the program's.
class WidgetsProviderTest : public ::testing::Test
{
protected:
    WidgetsProviderTest()
    {
        QJSValue hostValue = engine.newQObject(&host);
        QQmlEngine::setObjectOwnership(&host, QQmlEngine::CppOwnership);
        engine.globalObject().setProperty(QStringLiteral("host"), hostValue);
    }

    template <typename Widget>
    Widget *made(const QString &program)
    {
        const QJSValue value = engine.evaluate(program);
        EXPECT_FALSE(value.isError()) << qPrintable(JSEngine::errorString(value));
        return qobject_cast<Widget *>(value.toQObject());
    }

    // Row and column of a widget in a grid, as "row,column".
    static QString cellOf(QGridLayout *grid, QWidget *widget)
    {
        int row = -1, column = -1, rowSpan = 0, columnSpan = 0;
        grid->getItemPosition(grid->indexOf(widget), &row, &column, &rowSpan, &columnSpan);
        return QStringLiteral("%1,%2").arg(row).arg(column);
    }

    JSEngine engine;
    QWidget host;
};

} // namespace

TEST_F(WidgetsProviderTest, PrologueFunctionsMakeTheirWidgetsWithTheGivenParent)
{
    QmlLabel *label = made<QmlLabel>("QLabel('Outer diameter', host)");
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), QStringLiteral("Outer diameter"));
    EXPECT_EQ(label->parentWidget(), &host);

    EXPECT_EQ(made<QLineEdit>("QLineEdit('abc', host)")->text(), QStringLiteral("abc"));
    EXPECT_EQ(made<QPushButton>("QPushButton('Apply', host)")->text(), QStringLiteral("Apply"));
    EXPECT_EQ(made<QGroupBox>("QGroupBox('Slot', host)")->title(), QStringLiteral("Slot"));
    EXPECT_EQ(made<QmlCheckBox>("QCheckBox('Skew', host)")->text(), QStringLiteral("Skew"));
    EXPECT_NE(made<QmlSpinBox>("QSpinBox(host)"), nullptr);
    EXPECT_NE(made<QmlDoubleSpinBox>("QDoubleSpinBox(host)"), nullptr);
    EXPECT_NE(made<QmlComboBox>("QComboBox(host)"), nullptr);
    EXPECT_NE(made<NumberEdit>("NumberEdit(host)"), nullptr);
    EXPECT_NE(made<NumberSlotSpinBox>("NumberSlotSpinBox(host)"), nullptr);
    EXPECT_NE(made<MiddleTypeComboBox>("StatorTypeComboBox(host)"), nullptr);
    EXPECT_NE(made<MiddleTypeComboBox>("RotorTypeComboBox(host)"), nullptr);
    EXPECT_NE(made<PoleArrangementComboBox>("PoleArrangementComboBox(host)"), nullptr);
    EXPECT_NE(made<WindingConnectionComboBox>("StatorConnectionComboBox(host)"), nullptr);
    EXPECT_NE(made<WindingConnectionComboBox>("WindingConnectionComboBox(host)"), nullptr);
    EXPECT_NE(made<WindingLayersComboBox>("WindingLayersComboBox(host)"), nullptr);
    EXPECT_NE(made<WindingLayersOrientationComboBox>("WindingLayersOrientationComboBox(host)"), nullptr);
    EXPECT_NE(made<WindingTypeComboBox>("WindingTypeComboBox(host)"), nullptr);

    QmlFormLayout *form = made<QmlFormLayout>("QFormLayout(host)");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(host.layout(), form);
}

TEST_F(WidgetsProviderTest, WidgetsWithoutParentBelongToTheEngine)
{
    QWidget *loose = made<QWidget>("QWidget()");
    ASSERT_NE(loose, nullptr);
    EXPECT_EQ(QQmlEngine::objectOwnership(loose), QQmlEngine::JavaScriptOwnership);
}

TEST_F(WidgetsProviderTest, PixmapsComeFromResourcesOrFilesAndLabelsShowThem)
{
    QmlLabel *label =
        made<QmlLabel>("var p = QPixmap(':/exclamation.png'); var l = QtWidgets.createQLabel(p, host); l");
    ASSERT_NE(label, nullptr);
    EXPECT_FALSE(label->pixmap(Qt::ReturnByValue).isNull());
    EXPECT_TRUE(engine.evaluate("l.pixmap === p").toBool());

    EXPECT_TRUE(engine.evaluate("l.pixmap = QPixmap('/no/such/picture.png'); l.pixmap !== p").toBool());
    EXPECT_TRUE(label->pixmap(Qt::ReturnByValue).isNull());

    QmlLabel *blank = made<QmlLabel>("QtWidgets.createQLabel(null, host)");
    ASSERT_NE(blank, nullptr);
    EXPECT_TRUE(blank->pixmap(Qt::ReturnByValue).isNull());
}

TEST_F(WidgetsProviderTest, IconsStandRightAndShowTheirPictures)
{
    for (const char *program : {"WarningIcon(host)", "ExclamationIcon(host)"}) {
        QLabel *icon = made<QLabel>(QString::fromLatin1(program));
        ASSERT_NE(icon, nullptr) << program;
        EXPECT_FALSE(icon->pixmap(Qt::ReturnByValue).isNull()) << program;
        EXPECT_EQ(icon->alignment(), Qt::AlignRight | Qt::AlignVCenter) << program;
    }
    EXPECT_NE(made<QmlWarningIcon>("WarningIcon(host)"), nullptr);
    EXPECT_NE(made<QmlExclamationIcon>("ExclamationIcon(host)"), nullptr);
}

TEST_F(WidgetsProviderTest, GridRowsFollowEachOtherUnlessARowIsGiven)
{
    QmlGridLayout *grid = made<QmlGridLayout>("var g = QGridLayout(host); g");
    ASSERT_NE(grid, nullptr);
    engine.evaluate("var a = QLabel('a', host), b = QLabel('b', host), c = QLabel('c', host), d = QLabel('d', host);"
                    "g.addWidgets(a, b); g.addWidgets(c, d);");
    const auto named = [this](const char *name) {
        return qobject_cast<QWidget *>(engine.globalObject().property(QString::fromLatin1(name)).toQObject());
    };
    const QString firstRow = cellOf(grid, named("a"));
    EXPECT_EQ(cellOf(grid, named("b")), firstRow.section(',', 0, 0) + QStringLiteral(",1"));
    EXPECT_EQ(cellOf(grid, named("c")).section(',', 0, 0).toInt(), firstRow.section(',', 0, 0).toInt() + 1);
    EXPECT_EQ(cellOf(grid, named("d")).section(',', 1, 1), QStringLiteral("1"));

    engine.evaluate("var e = QLabel(host), f = QLabel(host), h = QLabel(host);"
                    "g.addWidgets(e, f, h, 7, 2); var i = QLabel(host); g.addWidget(i, -1, 1);");
    EXPECT_EQ(cellOf(grid, named("e")), QStringLiteral("7,2"));
    EXPECT_EQ(cellOf(grid, named("f")), QStringLiteral("7,3"));
    EXPECT_EQ(cellOf(grid, named("h")), QStringLiteral("7,4"));
    EXPECT_EQ(cellOf(grid, named("i")), QStringLiteral("8,1"));
}

TEST_F(WidgetsProviderTest, OverloadsTheEngineCouldNotReachOtherwise)
{
    QmlSpinBox *spin = made<QmlSpinBox>("var s = QSpinBox(host); s.setRange(3, 12); s.value = 20; s");
    ASSERT_NE(spin, nullptr);
    EXPECT_EQ(spin->value(), 12);
    QmlDoubleSpinBox *doubleSpin = made<QmlDoubleSpinBox>("var ds = QDoubleSpinBox(host); ds.setRange(0.5, 1.5); ds");
    EXPECT_EQ(doubleSpin->minimum(), 0.5);
    EXPECT_EQ(doubleSpin->maximum(), 1.5);
    QmlComboBox *combo = made<QmlComboBox>("var cb = QComboBox(host); cb.addItem('first'); cb.addItem('second'); cb");
    ASSERT_EQ(combo->count(), 2);
    EXPECT_EQ(combo->itemText(1), QStringLiteral("second"));
    EXPECT_FALSE(combo->itemData(1).isValid());

    QmlFormLayout *form = made<QmlFormLayout>("var fl = QFormLayout(host); fl.addRow(QLabel('x', host), "
                                              "QLineEdit(host)); fl.addWidget(QLabel('y', host)); fl");
    EXPECT_EQ(form->rowCount(), 2);
}

TEST_F(WidgetsProviderTest, CheckBoxesEditThroughTheirUserProperty)
{
    QmlCheckBox *box = made<QmlCheckBox>("var x = QCheckBox(host); x");
    ASSERT_NE(box, nullptr);
    const QMetaProperty user = box->metaObject()->userProperty();
    EXPECT_STREQ(user.name(), "checked");
    ASSERT_TRUE(user.hasNotifySignal());
    EXPECT_EQ(user.notifySignal().name(), QByteArray("toggled"));

    QSignalSpy toggled(box, &QAbstractButton::toggled);
    engine.evaluate("x.setChecked(true)");
    EXPECT_TRUE(box->isChecked());
    EXPECT_EQ(toggled.size(), 1);
}

TEST_F(WidgetsProviderTest, ScriptsDriveTheProgramsControlsThroughTheirUserProperties)
{
    NumberEdit *edit = made<NumberEdit>("var n = NumberEdit(host); n.setRange(1, 10, 2); n.value = 20; n");
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->value(), 20.0) << "setting the value does not check the range";
    engine.evaluate("n.setRange(1, 10)");
    EXPECT_EQ(edit->value(), 10.0);
    EXPECT_EQ(edit->decimals(), 2);

    PoleArrangementComboBox *poles = made<PoleArrangementComboBox>(
        "var p = PoleArrangementComboBox(host); p.setItems([PoleArrangement.NS, PoleArrangement.NNSS]);"
        "p.currentValue = PoleArrangement.NNSS; p");
    ASSERT_NE(poles, nullptr);
    EXPECT_EQ(poles->count(), 2);
    EXPECT_EQ(poles->currentValue(), PoleArrangement::NNSS);
    EXPECT_EQ(engine.evaluate("p.value(0)").toInt(), int(PoleArrangement::NS));
    EXPECT_EQ(engine.evaluate("p.currentValue = PoleArrangement.NN; p.currentValue").toInt(),
              int(PoleArrangement::NNSS));

    made<WindingConnectionComboBox>("var w = WindingConnectionComboBox(host); w.setItems(['1-2', '1||2']); w");
    EXPECT_EQ(engine.evaluate("w.currentValue = '1||2'; w.currentValue").toString(), QStringLiteral("1||2"));

    NumberSlotSpinBox *slotBox = made<NumberSlotSpinBox>("var s = NumberSlotSpinBox(host); s.setRange(12, 48); s");
    ASSERT_NE(slotBox, nullptr);
    EXPECT_EQ(slotBox->minimum(), 12);
    EXPECT_EQ(slotBox->maximum(), 48);
}
