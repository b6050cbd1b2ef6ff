#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBox>
#include <QToolButton>
#include <QUndoStack>
#include <gtest/gtest.h>

#include "document/UndoStack.h"
#include "QmlScripting/ScriptObject.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "support/ConsoleSpies.h"
#include "support/LogCatcher.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/DocumentWindow.h"
#include "ui/ElementConfigEditor.h"
#include "ui/MotorGeometryEditor.h"
#include "ui/RotorGeometryWidget.h"
#include "ui/StatorGeometryWidget.h"

// The geometry panels that the element scripts build, driven as a user does, on the
// example machine (a slotted stator).

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

class GeometryPanelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
        document.start();
        ASSERT_TRUE(document.load(example));
        document.setMode(Document::GeometryMotor);
        widget = std::make_unique<StatorGeometryWidget>(&document);
        widget->show();
        QCoreApplication::processEvents();
        ASSERT_EQ(document.stator()->script(), QStringLiteral("SlottedStator.js"));
    }

    void TearDown() override { QSettings().clear(); }

    QWidget *host() const { return widget->findChild<QWidget *>(QStringLiteral("panelGeometryEditor")); }
    NumberEdit *field(const char *name) const { return host()->findChild<NumberEdit *>(QLatin1String(name)); }
    QToolButton *button(const char *name) const { return widget->findChild<QToolButton *>(QLatin1String(name)); }
    QVariant stored(const char *name) const { return document.stator()->scriptProperties().value(QLatin1String(name)); }

    void enterEditMode() const
    {
        QTest::mouseClick(button("buttonEdit"), Qt::LeftButton);
        ASSERT_EQ(document.mode(), Document::GeometryStator);
    }

    static void type(NumberEdit *edit, const QString &text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }

    // A stator script of the test's own, read in place of the example's.
    void readStatorScript(const QByteArray &panelFunction)
    {
        const QString path = scriptFolder.filePath(QStringLiteral("TestStator.js"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("var StatorGeom = function () {};\nvar stator = { slotWidth: 3 };\n" + panelFunction);
        file.close();
        ASSERT_TRUE(document.stator()->readScript(path));
    }

    QTemporaryDir settingsFolder;
    QTemporaryDir scriptFolder;
    Document document{nullptr};
    std::unique_ptr<StatorGeometryWidget> widget;
};

} // namespace

TEST_F(GeometryPanelTest, TheScriptsPanelShowsItsVariablesAndOpensForEditingOnlyInTheStatorMode)
{
    NumberEdit *slotWidth = field("slotWidth");
    ASSERT_NE(slotWidth, nullptr);
    EXPECT_DOUBLE_EQ(slotWidth->value(), stored("slotWidth").toDouble());
    EXPECT_TRUE(host()->isVisible());
    EXPECT_FALSE(host()->isEnabled());
    EXPECT_EQ(button("buttonEdit")->text(), QStringLiteral("Edit stator"));
    EXPECT_TRUE(widget->findChild<QWidget *>(QStringLiteral("widgetHint"))->isVisible());

    enterEditMode();
    EXPECT_TRUE(host()->isEnabled());
    EXPECT_EQ(button("buttonEdit")->text(), QStringLiteral("Exit stator editor"));
    EXPECT_FALSE(widget->findChild<QWidget *>(QStringLiteral("widgetHint"))->isVisible());

    QTest::mouseClick(button("buttonEdit"), Qt::LeftButton);
    EXPECT_EQ(document.mode(), Document::GeometryMotor);
    EXPECT_FALSE(host()->isEnabled());
}

TEST_F(GeometryPanelTest, TypingANumberIsOneUndoStepThatUndoShowsBackInThePanel)
{
    enterEditMode();
    NumberEdit *slotWidth = field("slotWidth");
    const double before = slotWidth->value();
    const int commands = document.undoStack()->count();

    type(slotWidth, QStringLiteral("8.5"));
    EXPECT_EQ(document.undoStack()->count(), commands + 1);
    EXPECT_DOUBLE_EQ(stored("slotWidth").toDouble(), 8.5);
    EXPECT_DOUBLE_EQ(slotWidth->value(), 8.5);
    EXPECT_EQ(slotWidth->text(), QStringLiteral("8.5"));

    document.undo();
    EXPECT_DOUBLE_EQ(stored("slotWidth").toDouble(), before);
    EXPECT_DOUBLE_EQ(slotWidth->value(), before);
    EXPECT_DOUBLE_EQ(slotWidth->parsedText(), before);

    document.redo();
    EXPECT_DOUBLE_EQ(slotWidth->value(), 8.5);
}

TEST_F(GeometryPanelTest, NumbersAreRoundedToFiveDecimalsBeforeTheyAreCompared)
{
    enterEditMode();
    NumberEdit *slotWidth = field("slotWidth");
    slotWidth->setDecimals(6);
    const double before = stored("slotWidth").toDouble();
    const int commands = document.undoStack()->count();

    type(slotWidth, QString::number(before + 0.000004, 'f', 6));
    EXPECT_EQ(document.undoStack()->count(), commands) << "a change in the sixth decimal is none";
    EXPECT_DOUBLE_EQ(slotWidth->parsedText(), before) << "the field shows the stored value again";

    type(slotWidth, QString::number(before + 0.000006, 'f', 6));
    EXPECT_EQ(document.undoStack()->count(), commands + 1);
    EXPECT_DOUBLE_EQ(stored("slotWidth").toDouble(), before + 0.00001);
}

TEST_F(GeometryPanelTest, AReadOnlyDocumentShowsThePanelDisabled)
{
    enterEditMode();
    document.setReadonly(true);
    EXPECT_TRUE(host()->isVisible());
    EXPECT_FALSE(host()->isEnabled());
    EXPECT_FALSE(button("buttonEdit")->isEnabled());

    document.setReadonly(false);
    EXPECT_TRUE(host()->isEnabled());
}

TEST_F(GeometryPanelTest, APanelFunctionThatFailsLeavesAnEmptyPanelAndTellsTheConsole)
{
    readStatorScript("function createStatorUI(widget) {\n"
                     "    var edit = NumberEdit(widget);\n"
                     "    edit.objectName = \"slotWidth\";\n"
                     "    throw new Error(\"broken panel\");\n"
                     "}\n");
    const QVariantMap values = document.stator()->scriptProperties();
    const int commands = document.undoStack()->count();
    ConsoleSpies console(document.stator()->console());
    const LogCatcher log;

    widget->recreateStatorUI();
    EXPECT_TRUE(host()->findChildren<QWidget *>().isEmpty());
    ASSERT_EQ(console.error.count(), 1);
    EXPECT_TRUE(console.error.at(0).at(1).toString().contains(QStringLiteral("broken panel")));
    EXPECT_TRUE(log.contains(QStringLiteral("Error:")));
    EXPECT_EQ(document.stator()->scriptProperties(), values);
    EXPECT_EQ(document.undoStack()->count(), commands);
}

TEST_F(GeometryPanelTest, APanelWithoutNamedEditorsSaysSoAndCannotBeEntered)
{
    readStatorScript("function createStatorUI(widget) {\n"
                     "    var spin = QSpinBox(widget);\n"
                     "    QGridLayout(widget).addWidgets(QLabel(\"Nothing to edit\", widget), spin);\n"
                     "}\n");
    widget->recreateStatorUI();
    const QList<QLabel *> labels = host()->findChildren<QLabel *>();
    EXPECT_TRUE(std::any_of(labels.cbegin(), labels.cend(),
                            [](const QLabel *label) { return label->text() == QStringLiteral("No editor widgets"); }))
        << "the spin box's inner line edit is no editor";
    EXPECT_FALSE(button("buttonEdit")->isEnabled());
}

TEST_F(GeometryPanelTest, TwoEditorsOfOneVariableAreReportedAndTheFirstIsServed)
{
    readStatorScript("function createStatorUI(widget) {\n"
                     "    var first = NumberEdit(widget);\n"
                     "    first.objectName = \"slotWidth\";\n"
                     "    var second = NumberEdit(widget);\n"
                     "    second.objectName = \"slotWidth\";\n"
                     "}\n");
    widget->recreateStatorUI();
    const QList<NumberEdit *> editors = host()->findChildren<NumberEdit *>(QStringLiteral("slotWidth"));
    ASSERT_EQ(editors.size(), 2);
    const LogCatcher log;

    document.setPropertyUndoable(document.stator()->scriptObject(), QStringLiteral("slotWidth"), 4.5);
    EXPECT_TRUE(log.contains(QStringLiteral("Error: found multiplied editors for stator property: slotWidth")));
    EXPECT_DOUBLE_EQ(editors.at(0)->value(), 4.5);
    EXPECT_DOUBLE_EQ(editors.at(1)->value(), 0.0);
}

TEST_F(GeometryPanelTest, TheHintCanBeHiddenForGood)
{
    auto *hint = widget->findChild<QWidget *>(QStringLiteral("widgetHint"));
    ASSERT_TRUE(hint->isVisible());
    QTest::mouseClick(widget->findChild<QPushButton *>(QStringLiteral("buttonHideHint")), Qt::LeftButton);
    EXPECT_FALSE(hint->isVisible());
    EXPECT_TRUE(QSettings().value(QStringLiteral("Settings/HideStatorEditHint")).toBool());

    StatorGeometryWidget another(&document);
    another.show();
    EXPECT_FALSE(another.findChild<QWidget *>(QStringLiteral("widgetHint"))->isVisible());
}

TEST_F(GeometryPanelTest, ChoosingAnotherScriptIsOneStepThatUndoTakesBackWithTheValues)
{
    enterEditMode();
    type(field("slotWidth"), QStringLiteral("7.5"));
    const QVariantMap values = document.stator()->scriptProperties();
    const int commands = document.undoStack()->count();

    auto *menu = widget->findChild<QToolButton *>(QStringLiteral("buttonScript"))->menu();
    const QList<QAction *> actions = menu->actions();
    const auto tips = std::find_if(actions.cbegin(), actions.cend(), [](const QAction *action) {
        return action->text() == QStringLiteral("Slotted stator with tooth tips");
    });
    ASSERT_NE(tips, actions.cend());
    (*tips)->trigger();

    EXPECT_EQ(document.undoStack()->count(), commands + 1);
    EXPECT_EQ(document.undoStack()->text(commands), QStringLiteral("Set stator.script to 'SlottedStatorToothTips.js'"));
    EXPECT_EQ(document.stator()->script(), QStringLiteral("SlottedStatorToothTips.js"));
    EXPECT_NE(field("tipHeight"), nullptr);

    document.undo();
    EXPECT_EQ(document.stator()->script(), QStringLiteral("SlottedStator.js"));
    EXPECT_EQ(document.stator()->scriptProperties(), values);
    EXPECT_EQ(field("tipHeight"), nullptr);
    ASSERT_NE(field("slotWidth"), nullptr);
    EXPECT_DOUBLE_EQ(field("slotWidth")->value(), 7.5);
}

TEST_F(GeometryPanelTest, TheCatalogueMenuDisablesScriptsThatDoNotSuitTheMachine)
{
    auto *menu = widget->findChild<QToolButton *>(QStringLiteral("buttonScript"))->menu();
    for (const QAction *action : menu->actions()) {
        if (action->text() == QStringLiteral("Yokeless stator with segmented teeth"))
            EXPECT_EQ(action->isEnabled(), document.machineType() != Machine::SR && document.machineType() != Machine::SRS);
        else if (!action->isSeparator())
            EXPECT_TRUE(action->isEnabled()) << action->text().toStdString();
    }
}

TEST_F(GeometryPanelTest, TheRotorPanelIsTheRotorScriptsAndEditedInTheRotorMode)
{
    RotorGeometryWidget rotorWidget(&document);
    rotorWidget.show();
    auto *rotorHost = rotorWidget.findChild<QWidget *>(QStringLiteral("panelGeometryEditor"));
    ASSERT_FALSE(rotorHost->findChildren<NumberEdit *>().isEmpty());
    auto *edit = rotorWidget.findChild<QToolButton *>(QStringLiteral("buttonEdit"));
    EXPECT_EQ(edit->text(), QStringLiteral("Edit rotor"));

    QTest::mouseClick(edit, Qt::LeftButton);
    EXPECT_EQ(document.mode(), Document::GeometryRotor);
    EXPECT_TRUE(rotorHost->isEnabled());
    EXPECT_FALSE(host()->isEnabled()) << "the stator's panel stays closed";
    EXPECT_EQ(edit->text(), QStringLiteral("Exit rotor editor"));

    NumberEdit *field = rotorHost->findChildren<NumberEdit *>().first();
    const QByteArray name = field->objectName().toLatin1();
    const int commands = document.undoStack()->count();
    type(field, QString::number(field->value() + 1.0));
    EXPECT_EQ(document.undoStack()->count(), commands + 1);
    EXPECT_DOUBLE_EQ(document.rotor()->scriptObject()->property(name.constData()).toDouble(), field->value());
}

TEST(ElementConfigEditor, AConfigurationScriptWithoutThePanelFunctionLeavesANoteAndAnEmptyPanel)
{
    Document document(nullptr);
    document.start();
    ASSERT_TRUE(document.isConfigLoaded());
    ConsoleSpies console(document.console());
    StatorConfigEditor editor(&document);
    editor.createUI();
    ASSERT_EQ(console.error.count(), 1);
    EXPECT_EQ(console.error.at(0).at(1).toString(), QStringLiteral("Not found function 'createStatorUI'"));
    const QList<QLabel *> labels = editor.findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels.first()->text(), QStringLiteral("No widgets for editing"));
}

TEST(DocumentWindowEditors, TheGeometryPageHoldsTheStatorAndRotorPanels)
{
    QTemporaryDir settingsFolder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    DocumentWindow window(Document::GeometryMotor);
    auto *page = window.findChild<QWidget *>(QStringLiteral("editorGeometry"));
    ASSERT_NE(page, nullptr);
    auto *editor = page->findChild<MotorGeometryEditor *>();
    ASSERT_NE(editor, nullptr);
    EXPECT_NE(editor->statorWidget(), nullptr);
    EXPECT_NE(editor->rotorWidget(), nullptr);
}
