#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QToolButton>
#include <gtest/gtest.h>

#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "geometry/Stator.h"
#include "ui/ConsoleModel.h"
#include "ui/ConsoleWidget.h"
#include "ui/DocumentWindow.h"
#include "ui/MessageBox.h"

namespace {

QString textOfRow(const QAbstractItemModel &model, int row)
{
    return model.index(row, 0).data().toString();
}

int lastCount(const QSignalSpy &spy)
{
    return spy.isEmpty() ? -1 : spy.last().at(0).toInt();
}

} // namespace

TEST(ConsoleContentModelTest, TheOldestRowGoesAtTheLimitWithItsCount)
{
    ConsoleContentModel model;
    model.warn(ScriptConsole::Stator, QStringLiteral("first"));
    for (int i = 1; i < ConsoleContentModel::rowLimit; ++i)
        model.info(ScriptConsole::Rotor, QStringLiteral("line %1").arg(i));
    ASSERT_EQ(model.rowCount(), ConsoleContentModel::rowLimit);
    EXPECT_EQ(model.warnings(ScriptConsole::All), 1);

    QSignalSpy warnings(&model, &ConsoleContentModel::warningsChanged);
    EXPECT_EQ(warnings.count(), 1) << "connecting announces the present state";
    warnings.clear();
    model.error(ScriptConsole::Mesh, QStringLiteral("newest"));
    EXPECT_EQ(model.rowCount(), ConsoleContentModel::rowLimit);
    EXPECT_EQ(model.warnings(ScriptConsole::All), 0) << "the removed row's kind falls";
    EXPECT_EQ(model.errors(ScriptConsole::All), 1);
    EXPECT_EQ(warnings.count(), 1);
    EXPECT_TRUE(textOfRow(model, 0).endsWith(QStringLiteral("Rotor: line 1")));
    EXPECT_TRUE(textOfRow(model, model.rowCount() - 1).endsWith(QStringLiteral("Mesh: newest")));
}

TEST(ConsoleContentModelTest, RowsShowTimeScopeKindAndColour)
{
    ConsoleContentModel model;
    model.error(ScriptConsole::Magnitostatic, QStringLiteral("solver failed"));
    const QModelIndex index = model.index(0, 0);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d  Magnitostatic: solver failed$"))
                    .match(index.data().toString())
                    .hasMatch())
        << index.data().toString().toStdString();
    EXPECT_EQ(index.data(ConsoleContentModel::KindRole).toInt(), ConsoleContentModel::ErrorKind);
    EXPECT_EQ(index.data(ConsoleContentModel::ScopeRole).toInt(), int(ScriptConsole::Magnitostatic));
    EXPECT_EQ(index.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::darkRed));
    EXPECT_FALSE(index.data(Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_FALSE(model.index(1, 0).data().isValid());
}

TEST(ConsoleContentModelTest, ClearingScopesKeepsTheOthersInOrderAndZeroesTheirCounts)
{
    ConsoleContentModel model;
    model.error(ScriptConsole::Stator, QStringLiteral("a"));
    model.error(ScriptConsole::Rotor, QStringLiteral("b"));
    model.warn(ScriptConsole::Stator, QStringLiteral("c"));
    model.log(ScriptConsole::Motor, QStringLiteral("d"));
    model.clear(ScriptConsole::Stator);
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_TRUE(textOfRow(model, 0).endsWith(QStringLiteral("Rotor: b")));
    EXPECT_TRUE(textOfRow(model, 1).endsWith(QStringLiteral("Motor: d")));
    EXPECT_EQ(model.errors(ScriptConsole::All), 1);
    EXPECT_EQ(model.warnings(ScriptConsole::Stator), 0);

    model.clear(ScriptConsole::All);
    EXPECT_EQ(model.rowCount(), 0);
    for (const int count : {model.errors(ScriptConsole::All), model.warnings(ScriptConsole::All),
                            model.informations(ScriptConsole::All), model.logs(ScriptConsole::All)})
        EXPECT_EQ(count, 0);
    model.clear(ScriptConsole::All);
    EXPECT_EQ(model.errors(ScriptConsole::All), 0) << "never below 0";
}

TEST(ConsoleContentModelTest, MessagesOfAWorkerArriveQueuedAfterThoseBefore)
{
    ConsoleContentModel model;
    ScriptConsole console(ScriptConsole::Mesh);
    model.attach(&console);
    console.message(ScriptConsole::Info, QStringLiteral("main"));
    QThread *worker = QThread::create([&console] { console.message(ScriptConsole::Error, QStringLiteral("worker")); });
    worker->start();
    worker->wait();
    delete worker;
    EXPECT_EQ(model.rowCount(), 1) << "the worker's message waits in the queue";
    QCoreApplication::processEvents();
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_TRUE(textOfRow(model, 1).endsWith(QStringLiteral("Mesh: worker")));
}

TEST(ConsoleWidgetTest, KindsHideRowsButNotCountsAndScopesChangeBoth)
{
    ConsoleContentModel model;
    model.error(ScriptConsole::Stator, QStringLiteral("s"));
    model.error(ScriptConsole::Rotor, QStringLiteral("r"));
    model.warn(ScriptConsole::Rotor, QStringLiteral("w"));
    ConsoleWidget view;
    QSignalSpy errors(&view, &ConsoleWidget::errorsChanged);
    QSignalSpy warnings(&view, &ConsoleWidget::warningsChanged);
    view.setSourceModel(&model);
    EXPECT_EQ(lastCount(errors), 2) << "a view that connects learns the counts at once";
    EXPECT_EQ(lastCount(warnings), 1);

    view.setKindVisible(ConsoleContentModel::ErrorKind, false);
    EXPECT_EQ(view.model()->rowCount(), 1);
    model.error(ScriptConsole::Stator, QStringLiteral("s2"));
    EXPECT_EQ(lastCount(errors), 3) << "hidden kinds still count";

    view.setScopes(ScriptConsole::Rotor);
    EXPECT_EQ(lastCount(errors), 1);
    EXPECT_EQ(view.model()->rowCount(), 1);
    view.setKindVisible(ConsoleContentModel::ErrorKind, true);
    EXPECT_EQ(view.model()->rowCount(), 2);

    view.clear();
    EXPECT_EQ(model.rowCount(), 2) << "clear takes the view's scopes only";
    EXPECT_EQ(model.errors(ScriptConsole::Stator), 2);
}

TEST(ConsoleWidgetTest, TheContextMenuCopiesTheSelectedRows)
{
    ConsoleContentModel model;
    model.info(ScriptConsole::Motor, QStringLiteral("one"));
    model.info(ScriptConsole::Motor, QStringLiteral("two"));
    ConsoleWidget view;
    view.setSourceModel(&model);
    view.resize(400, 200);
    view.show();

    const auto openMenuAndPick = [&view](bool trigger) {
        bool enabled = false;
        QTimer::singleShot(0, [&enabled, trigger] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            QAction *copy = menu->actions().value(0);
            enabled = copy->isEnabled();
            if (trigger && enabled)
                copy->trigger();
            menu->close();
        });
        emit view.customContextMenuRequested(QPoint(5, 5));
        return enabled;
    };
    view.clearSelection();
    EXPECT_FALSE(openMenuAndPick(false));

    view.selectAll();
    QApplication::clipboard()->clear();
    EXPECT_TRUE(openMenuAndPick(true));
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.at(0).endsWith(QStringLiteral("Motor: one")));
    EXPECT_TRUE(lines.at(1).endsWith(QStringLiteral("Motor: two")));
}

TEST(DocumentConsoleTest, TheButtonsCountTheDocumentsMessagesAndTheFilterFollowsThePage)
{
    QTemporaryDir settingsFolder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    auto *window = new DocumentWindow(Document::UnknownMode);
    Document *document = window->document();
    auto *errors = window->findChild<QPushButton *>(QStringLiteral("buttonErrors"));
    auto *warnings = window->findChild<QPushButton *>(QStringLiteral("buttonWarnings"));
    ASSERT_NE(errors, nullptr);
    EXPECT_EQ(errors->text(), QStringLiteral("0 Error(s)"));
    EXPECT_FALSE(errors->isEnabled());
    EXPECT_FALSE(window->findChild<QPushButton *>(QStringLiteral("buttonLogs"))->isVisibleTo(window))
        << "logs only in debug mode";

    document->stator()->console()->message(ScriptConsole::Error, QStringLiteral("bad slot"));
    document->console()->message(ScriptConsole::Warn, QStringLiteral("careful"));
    EXPECT_EQ(errors->text(), QStringLiteral("1 Error(s)"));
    EXPECT_TRUE(errors->isEnabled());
    EXPECT_EQ(warnings->text(), QStringLiteral("1 Warning(s)"));

    auto *scopes = window->findChild<QComboBox *>(QStringLiteral("comboBoxConsole"));
    EXPECT_EQ(scopes->itemText(0), QStringLiteral("All"));
    scopes->setCurrentIndex(scopes->findData(int(ScriptConsole::Motor)));
    EXPECT_EQ(errors->text(), QStringLiteral("0 Error(s)"));
    EXPECT_EQ(warnings->text(), QStringLiteral("1 Warning(s)"));
    document->setMode(Document::GeometryStator);
    EXPECT_EQ(scopes->currentData().toInt(), int(ScriptConsole::Stator)) << "one scope follows the page";
    EXPECT_EQ(errors->text(), QStringLiteral("1 Error(s)"));

    QTest::mouseClick(window->findChild<QToolButton *>(QStringLiteral("buttonClearConsole")), Qt::LeftButton);
    EXPECT_EQ(errors->text(), QStringLiteral("0 Error(s)"));
    scopes->setCurrentIndex(0);
    EXPECT_EQ(warnings->text(), QStringLiteral("1 Warning(s)")) << "the clear took the stator's rows only";
    delete window;
}
