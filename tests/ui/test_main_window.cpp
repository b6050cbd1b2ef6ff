#include <QPointer>
#include <QTimer>
#include <cmath>
#include <QLineEdit>
#include "analysis/MagnetostaticAnalysis.h"
#include "analysis/DriveSettings.h"
#include <QAction>
#include <TopoDS_Shape.hxx>
#include <QCheckBox>
#include <QLabel>
#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QToolBox>
#include <QUndoStack>
#include <QUrl>
#include <gtest/gtest.h>

#include "base/UserMessage.h"
#include "document/UndoStack.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "meshing/Mesh.h"
#include "ui/ModifiedFadeLabel.h"
#include "ui/CommandStackView.h"
#include "ui/DocumentWindow.h"
#include "ui/GlassWidget.h"
#include "ui/MagnetostaticResultWidget.h"
#include "ui/FileDialog.h"
#include "ui/MainWindow.h"
#include "ui/MaterialsWidget.h"
#include "ui/Viewer/ElementScenes.h"
#include "materials/WindingMaterial.h"
#include "winding/Winding.h"
#include "winding/WindingObject.h"
#include "ui/MessageBox.h"
#include "ui/Viewer/GeometryScene.h"
#include "ui/Viewer/GeometryViewer.h"
#include "support/LogCatcher.h"

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

QByteArray readAll(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// A main window on fresh settings with a copy of the example to work on. The settings
// live in a folder of the test's own: test programs run side by side.
class MainWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
        ASSERT_TRUE(QFile::copy(example, design));
        window = std::make_unique<MainWindow>();
        window->show();
        QCoreApplication::processEvents();
    }

    void TearDown() override
    {
        MessageBox::answerNextBoxes({QMessageBox::Discard, QMessageBox::Discard, QMessageBox::Discard});
        window->close();
        window.reset();
        MessageBox::answerNextBoxes({});
        FileDialog::answerNextDialogs({});
        QSettings().clear();
    }

    QAction *action(const char *name) const { return window->findChild<QAction *>(QLatin1String(name)); }

    void trigger(const char *name) const
    {
        QAction *found = action(name);
        ASSERT_NE(found, nullptr) << name;
        found->trigger();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Opens through the dialog of the action, as a user does, and lets the document settle.
    DocumentWindow *openByDialog(const QString &path)
    {
        FileDialog::answerNextDialogs({path});
        trigger("actionOpen");
        QCoreApplication::processEvents();
        return window->currentDocumentWindow();
    }

    // One undoable change: the number of slices of the mesh, one more.
    void changeDesign(DocumentWindow *documentWindow)
    {
        Mesh *mesh = documentWindow->document()->mesh();
        documentWindow->document()->setPropertyUndoable(mesh, "numberSlices", mesh->numberSlices() + 1);
        QCoreApplication::processEvents();
    }

    QTemporaryDir settingsFolder;
    QTemporaryDir folder;
    const QString design = folder.filePath("design.zva");
    std::unique_ptr<MainWindow> window;
};

} // namespace

TEST_F(MainWindowTest, WithoutDocumentOnlyTheShellIsOn)
{
    EXPECT_EQ(window->windowTitle(), QCoreApplication::applicationName());
    EXPECT_EQ(MainWindow::instance(), window.get());
    for (const char *name : {"actionSave", "actionSaveAs", "actionClose", "actionCloseAll", "actionUndo",
                             "actionRedo", "actionUndo2", "actionRedo2", "actionExportToJSON"})
        EXPECT_FALSE(action(name)->isEnabled()) << name;
    for (const char *name : {"menuStator", "menuRotor", "menuWindings", "menuMesh"})
        EXPECT_FALSE(window->findChild<QMenu *>(QLatin1String(name))->isEnabled()) << name;
    EXPECT_TRUE(action("actionNew")->isVisible());
    EXPECT_TRUE(action("actionOpen")->isVisible());
    // Redo keeps the key its users know.
    EXPECT_EQ(action("actionRedo")->shortcut(), QKeySequence("Ctrl+X"));
}

TEST_F(MainWindowTest, OpenShowsTheDocumentOnceWhateverThePathsSpelling)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(window->windowTitle(), "design - " + QCoreApplication::applicationName());
    EXPECT_TRUE(action("actionSave")->isEnabled());
    EXPECT_TRUE(action("actionCloseAll")->isEnabled());
    EXPECT_TRUE(window->findChild<QMenu *>("menuStator")->isEnabled()) << "the motor page edits the stator";
    EXPECT_FALSE(window->findChild<QMenu *>("menuMesh")->isEnabled());
    EXPECT_EQ(MainWindow::recentFiles(), QStringList{design});
    EXPECT_EQ(QSettings().value("Settings/PathProject").toString(), folder.path());

    const QString otherSpelling = folder.path() + "/./design.zva";
    EXPECT_TRUE(window->openFile(otherSpelling, false, Document::UnknownMode));
    EXPECT_EQ(window->mdiArea()->subWindowList().size(), 1);
    EXPECT_EQ(MainWindow::recentFiles(), QStringList{design}) << "an open file is not added again";
}

TEST_F(MainWindowTest, AFailedLoadClosesItsWindowAndKeepsTheOthers)
{
    ASSERT_NE(openByDialog(design), nullptr);
    const QString broken = folder.filePath("broken.zva");
    {
        QFile file(broken);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("not a design");
    }
    QString shown;
    UserMessage::setCriticalPresenter([&shown](const QString &text) { shown = text; });
    EXPECT_FALSE(window->openFile(broken, false, Document::UnknownMode));
    UserMessage::setCriticalPresenter({});
    EXPECT_TRUE(shown.contains("broken.zva")) << "the user reads why";
    QCoreApplication::processEvents();
    EXPECT_EQ(window->mdiArea()->subWindowList().size(), 1);
    EXPECT_EQ(MainWindow::recentFiles(), QStringList{design});
}

TEST_F(MainWindowTest, RecentFilesKeepTheLatestTenAndShowOnlyThoseThatExist)
{
    QStringList paths;
    for (int i = 0; i < 12; ++i) {
        paths.append(folder.filePath(QStringLiteral("d%1.zva").arg(i)));
        QFile file(paths.last());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        MainWindow::addRecentFile(paths.last());
    }
    const QStringList stored = MainWindow::recentFiles();
    ASSERT_EQ(stored.size(), 10);
    EXPECT_EQ(stored.first(), paths.at(11));
    EXPECT_EQ(stored.last(), paths.at(2));

    ASSERT_TRUE(QFile::remove(paths.at(11)));
    QMenu *menu = action("actionRecentFiles")->menu();
    ASSERT_NE(menu, nullptr);
    emit menu->aboutToShow();
    QStringList shown;
    for (QAction *entry : menu->actions()) {
        if (entry->isVisible())
            shown.append(entry->data().toString());
    }
    EXPECT_EQ(shown.size(), 9);
    EXPECT_FALSE(shown.contains(paths.at(11)));
    EXPECT_EQ(menu->actions().first()->text(), QStringLiteral("&1 d10.zva (%1)").arg(folder.path()));
    EXPECT_EQ(MainWindow::recentFiles().size(), 10) << "the stored list keeps a file that went";
}

TEST_F(MainWindowTest, UndoAndRedoActionsMoveTheDocumentsHistory)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    Mesh *mesh = opened->document()->mesh();
    const int slices = mesh->numberSlices();
    EXPECT_FALSE(action("actionUndo")->isEnabled());

    changeDesign(opened);
    EXPECT_EQ(mesh->numberSlices(), slices + 1);
    EXPECT_TRUE(action("actionUndo")->isEnabled());
    EXPECT_TRUE(action("actionUndo2")->isEnabled());
    EXPECT_TRUE(window->windowTitle().startsWith("● design")) << window->windowTitle().toStdString();

    trigger("actionUndo2");
    EXPECT_EQ(mesh->numberSlices(), slices);
    EXPECT_FALSE(action("actionUndo")->isEnabled());
    EXPECT_TRUE(action("actionRedo")->isEnabled());

    trigger("actionRedo");
    EXPECT_EQ(mesh->numberSlices(), slices + 1);

    // A read-only document keeps its history but offers no step of it.
    opened->document()->setReadonly(true);
    QCoreApplication::processEvents();
    EXPECT_FALSE(action("actionUndo")->isEnabled());
}

TEST_F(MainWindowTest, SaveWritesTheChangeAndClearsTheMark)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    const QByteArray before = readAll(design);
    changeDesign(opened);
    trigger("actionSave");
    EXPECT_FALSE(opened->document()->isModified());
    EXPECT_FALSE(window->windowTitle().contains("●")) << window->windowTitle().toStdString();
    EXPECT_TRUE(window->windowTitle().contains("[mesh modified]")) << "saving doesn't make a mesh";
    EXPECT_NE(readAll(design), before);

    Document reloaded;
    reloaded.start();
    ASSERT_TRUE(reloaded.load(design));
    EXPECT_EQ(reloaded.mesh()->numberSlices(), opened->document()->mesh()->numberSlices());
    EXPECT_EQ(reloaded.undoStack()->count(), 1) << "the history travels with the file";
}

TEST_F(MainWindowTest, SaveAsThatCannotWriteSaysSoAndKeepsTheChange)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    const QByteArray before = readAll(design);
    changeDesign(opened);

    FileDialog::answerNextDialogs({folder.filePath("missing/other")});
    trigger("actionSaveAs");
    EXPECT_TRUE(opened->document()->isModified());
    EXPECT_EQ(opened->document()->filePath(), QFileInfo(design).canonicalFilePath());
    EXPECT_EQ(readAll(design), before);

    // A name without the suffix gets it.
    FileDialog::answerNextDialogs({folder.filePath("other")});
    trigger("actionSaveAs");
    EXPECT_FALSE(opened->document()->isModified());
    EXPECT_TRUE(QFileInfo::exists(folder.filePath("other.zva")));
    EXPECT_EQ(opened->document()->filePath(), QFileInfo(folder.filePath("other.zva")).canonicalFilePath());
    EXPECT_EQ(readAll(design), before) << "the old file stays as it was";
    EXPECT_EQ(MainWindow::recentFiles().first(), opened->document()->filePath());
}

TEST_F(MainWindowTest, ClosingAModifiedDocumentAsks)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    const QByteArray before = readAll(design);
    changeDesign(opened);

    MessageBox::answerNextBoxes({QMessageBox::Cancel});
    trigger("actionClose");
    EXPECT_EQ(window->mdiArea()->subWindowList().size(), 1) << "cancel keeps the window";

    MessageBox::answerNextBoxes({QMessageBox::Cancel});
    EXPECT_FALSE(window->close()) << "nor does the application end";

    MessageBox::answerNextBoxes({QMessageBox::Discard});
    trigger("actionClose");
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->mdiArea()->subWindowList().isEmpty());
    EXPECT_EQ(readAll(design), before);
    EXPECT_EQ(window->windowTitle(), QCoreApplication::applicationName());
    EXPECT_FALSE(action("actionCloseAll")->isEnabled());
}

TEST_F(MainWindowTest, ClosingWithSaveWritesTheFile)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    const QByteArray before = readAll(design);
    changeDesign(opened);
    MessageBox::answerNextBoxes({QMessageBox::Save});
    trigger("actionCloseAll");
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->mdiArea()->subWindowList().isEmpty());
    EXPECT_NE(readAll(design), before);
}

TEST_F(MainWindowTest, ClosingAnUnchangedDocumentAsksNothing)
{
    ASSERT_NE(openByDialog(design), nullptr);
    // An answer that would keep the window, if a question came.
    MessageBox::answerNextBoxes({QMessageBox::Cancel});
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(QSettings().contains("Settings/MainWindowGeometry"));
}

TEST_F(MainWindowTest, PastedPropertiesAreOneUndoStepAndEqualOnesNone)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    opened->document()->setMode(Document::Mesh2D);
    QCoreApplication::processEvents();
    EXPECT_FALSE(action("actionPasteMeshProperties")->isVisible());
    trigger("actionCopyMeshProperties");
    EXPECT_TRUE(action("actionPasteMeshProperties")->isVisible()) << "the clipboard signal refreshes the actions";

    const QUndoStack *stack = opened->document()->undoStack();
    trigger("actionPasteMeshProperties");
    EXPECT_EQ(stack->count(), 0);

    QVariantMap changed = opened->document()->mesh()->properties();
    changed["nSlices"] = changed["nSlices"].toInt() + 2;
    auto *data = new QMimeData;
    data->setData(DocumentWindow::mimeType(DocumentWindow::MeshElement),
                  QJsonDocument(QJsonObject::fromVariantMap(changed)).toJson());
    QApplication::clipboard()->setMimeData(data);
    trigger("actionPasteMeshProperties");
    EXPECT_EQ(stack->count(), 1);
    EXPECT_EQ(opened->document()->mesh()->properties().value("nSlices"), changed["nSlices"].toInt());

    auto *broken = new QMimeData;
    broken->setData(DocumentWindow::mimeType(DocumentWindow::MeshElement), "{ not json");
    QApplication::clipboard()->setMimeData(broken);
    trigger("actionPasteMeshProperties");
    EXPECT_EQ(stack->count(), 1);
}

TEST_F(MainWindowTest, NewDocumentsAreNumberedAndSavedUnderAChosenName)
{
    trigger("actionNew");
    trigger("actionNew");
    const QList<DocumentWindow *> windows = window->documentWindows();
    ASSERT_EQ(windows.size(), 2);
    const QString first = windows.at(0)->document()->filePath();
    const QString second = windows.at(1)->document()->filePath();
    EXPECT_TRUE(first.startsWith("new_motor_") && first.endsWith(".zva")) << first.toStdString();
    EXPECT_NE(first, second);
    EXPECT_TRUE(windows.at(1)->isNewFile());

    // Save of a new file is a save as; a cancelled dialog writes nothing.
    trigger("actionSave");
    EXPECT_TRUE(windows.at(1)->isNewFile());

    FileDialog::answerNextDialogs({folder.filePath("fresh.zva")});
    trigger("actionSave");
    EXPECT_FALSE(windows.at(1)->isNewFile());
    EXPECT_TRUE(QFileInfo::exists(folder.filePath("fresh.zva")));
}

TEST_F(MainWindowTest, TheWindowMenuListsTheDocumentsAndChecksTheCurrent)
{
    ASSERT_NE(openByDialog(design), nullptr);
    trigger("actionNew");
    QMenu *menu = window->findChild<QMenu *>("menuWindow");
    emit menu->aboutToShow();
    QStringList texts;
    QStringList checked;
    for (QAction *entry : menu->actions()) {
        texts.append(entry->text());
        if (entry->isChecked())
            checked.append(entry->text());
    }
    ASSERT_EQ(texts.size(), 5);
    EXPECT_EQ(texts.at(3), "&1 design");
    EXPECT_TRUE(texts.at(4).startsWith("&2 new_motor_"));
    EXPECT_EQ(checked, QStringList{texts.at(4)});
}

TEST_F(MainWindowTest, DebugModeIsToggledAndAnnounced)
{
    QSignalSpy spy(window.get(), &MainWindow::debugModeChanged);
    trigger("actionToggleDebugMode");
    EXPECT_TRUE(window->isDebugMode());
    EXPECT_TRUE(action("actionToggleDebugMode")->isChecked());
    trigger("actionToggleDebugMode");
    ASSERT_EQ(spy.size(), 2);
    EXPECT_FALSE(spy.at(1).at(0).toBool());
}

TEST_F(MainWindowTest, InDebugModeTheAnalysisPageShowsItsSettingsResultsAndRunAction)
{
    EXPECT_FALSE(action("actionRunAnalysis")->isVisible());
    trigger("actionToggleDebugMode");
    EXPECT_TRUE(action("actionRunAnalysis")->isVisible());
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    auto *toolBox = opened->findChild<QToolBox *>("toolBoxEditors");
    ASSERT_EQ(toolBox->count(), 4);
    EXPECT_FALSE(action("actionRunAnalysis")->isEnabled());

    toolBox->setCurrentIndex(3);
    EXPECT_EQ(opened->document()->mode(), Document::AnalysisMagnetostatic);
    EXPECT_TRUE(toolBox->widget(3)->findChild<QWidget *>("MagnetostaticEditor"));
    auto *page = opened->findChild<QWidget *>("MagnetostaticPageViewer");
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->isVisible());
    EXPECT_TRUE(action("actionRunAnalysis")->isEnabled());
    EXPECT_FALSE(action("actionZoomIn")->isEnabled());
}

TEST_F(MainWindowTest, TheRunActionAnalysesTheDesignAndTheResultsPageShowsTheSolversValues)
{
    QTemporaryDir home;
    const QByteArray previousDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    trigger("actionToggleDebugMode");
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    Document *document = opened->document();
    document->analysis()->setSolverProgram(QStringLiteral(ZDS_EXECUTABLE));
    document->driveSettings()->setCurrentSupplyRMS(10.0);
    opened->findChild<QToolBox *>("toolBoxEditors")->setCurrentIndex(3);
    ASSERT_TRUE(action("actionRunAnalysis")->isEnabled());

    trigger("actionRunAnalysis");
    qputenv("XDG_DATA_HOME", previousDataHome);
    EXPECT_FALSE(document->analysis()->isRunning());
    auto *results = opened->findChild<MagnetostaticResultWidget *>();
    ASSERT_NE(results, nullptr);
    bool numeric = false;
    const double torque = results->editor(QStringLiteral("torque"))->text().toDouble(&numeric);
    EXPECT_TRUE(numeric) << results->editor(QStringLiteral("torque"))->text().toStdString();
    EXPECT_GT(std::abs(torque), 0.0);
    EXPECT_EQ(results->editor(QStringLiteral("speed"))->text(), QStringLiteral("1000"));
    EXPECT_EQ(opened->findChild<GlassWidget *>(), nullptr) << "the overlay goes with the run";

    // The overlay's button stops a run; the results of the last one stay.
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    QTimer::singleShot(200, opened, [opened] {
        if (auto *stop = opened->findChild<QPushButton *>("buttonStopAnalysis"))
            QTest::mouseClick(stop, Qt::LeftButton);
    });
    trigger("actionRunAnalysis");
    EXPECT_FALSE(document->analysis()->isRunning());
    EXPECT_EQ(results->editor(QStringLiteral("speed"))->text(), QStringLiteral("1000"));

    // Closing during a run asks, stops the run, and closes once it has ended.
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    QPointer<DocumentWindow> closing = opened;
    MessageBox::answerNextBoxes({QMessageBox::Yes, QMessageBox::Discard});
    QTimer::singleShot(200, opened, [opened] { opened->parentWidget()->close(); });
    trigger("actionRunAnalysis");
    qputenv("XDG_DATA_HOME", previousDataHome);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTest::qWait(100);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(closing.isNull());
    EXPECT_EQ(window->currentDocumentWindow(), nullptr);
}

TEST_F(MainWindowTest, TheUndoDropDownUndoesUpToThePressedCommand)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    for (int i = 0; i < 3; ++i)
        changeDesign(opened);
    const QUndoStack *stack = opened->document()->undoStack();
    auto *undoMenu = qobject_cast<CommandStackView *>(action("actionUndo2")->menu());
    ASSERT_NE(undoMenu, nullptr);
    QListWidget *list = undoMenu->listWidget();
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->item(0)->data(Qt::UserRole).toInt(), 2) << "the latest command comes first";

    emit list->itemEntered(list->item(1));
    EXPECT_EQ(list->selectedItems().size(), 2);
    emit list->itemPressed(list->item(1));
    EXPECT_EQ(stack->index(), 1);
    QCoreApplication::processEvents();

    auto *redoMenu = qobject_cast<CommandStackView *>(action("actionRedo2")->menu());
    ASSERT_EQ(redoMenu->listWidget()->count(), 2);
    ASSERT_EQ(undoMenu->listWidget()->count(), 1);
    emit redoMenu->listWidget()->itemPressed(redoMenu->listWidget()->item(1));
    EXPECT_EQ(stack->index(), 3);
}

TEST_F(MainWindowTest, TheToolBoxAndTheModeFollowEachOther)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    auto *toolBox = opened->findChild<QToolBox *>("toolBoxEditors");
    ASSERT_NE(toolBox, nullptr);
    ASSERT_EQ(toolBox->count(), 3) << "the analysis page is for debug mode only";

    toolBox->setCurrentIndex(1);
    EXPECT_EQ(opened->document()->mode(), Document::Winding);
    EXPECT_TRUE(window->findChild<QMenu *>("menuWindings")->isEnabled());

    opened->document()->setMode(Document::GeometryStator);
    EXPECT_EQ(toolBox->currentIndex(), 0);
    EXPECT_EQ(toolBox->itemText(0), "Geometry Editor (Stator)");

    // The mesh page stands for both mesh modes.
    opened->document()->setMode(Document::Mesh3D);
    toolBox->setCurrentIndex(0);
    toolBox->setCurrentIndex(2);
    EXPECT_EQ(opened->document()->mode(), Document::Mesh2D);
    opened->document()->setMode(Document::Mesh3D);
    EXPECT_EQ(toolBox->currentIndex(), 2);
    EXPECT_EQ(toolBox->itemText(0), "Geometry Editor");
}

TEST_F(MainWindowTest, ClosingAfterOnlyTurningThePageStoresItWithoutAsking)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    opened->findChild<QToolBox *>("toolBoxEditors")->setCurrentIndex(1);
    EXPECT_FALSE(opened->document()->isModified());
    // An answer that would keep the window, if a question came.
    MessageBox::answerNextBoxes({QMessageBox::Cancel});
    trigger("actionClose");
    EXPECT_TRUE(window->mdiArea()->subWindowList().isEmpty());

    Document reloaded;
    reloaded.start();
    ASSERT_TRUE(reloaded.load(design));
    EXPECT_EQ(reloaded.mode(), Document::Winding);
}

TEST_F(MainWindowTest, ARestartOnAnotherScaleKeepsTheWindowsProportion)
{
    window->resize(600, 400);
    ASSERT_TRUE(window->close());
    window = std::make_unique<MainWindow>();
    EXPECT_EQ(window->size(), QSize(600, 400));
    ASSERT_TRUE(window->close());

    // Stored on a screen of twice the scale: the same look takes half the pixels here.
    QSettings().setValue("Settings/MainWindowScale", 2 * QSettings().value("Settings/MainWindowScale").toDouble());
    window = std::make_unique<MainWindow>();
    EXPECT_EQ(window->size(), QSize(300, 200));
}

TEST_F(MainWindowTest, SimulationDataLocksTheHistoryUntilUnlocked)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    changeDesign(opened);
    auto *banner = window->findChild<QWidget *>("UnlockEditWidget");
    ASSERT_NE(banner, nullptr);
    // The tool bar may fold the banner into its overflow; what counts is its action.
    auto *toolBar = window->findChild<QToolBar *>("mainToolBar");
    QAction *bannerAction = nullptr;
    for (QAction *entry : toolBar->actions()) {
        if (toolBar->widgetForAction(entry) == banner)
            bannerAction = entry;
    }
    ASSERT_NE(bannerAction, nullptr);
    EXPECT_FALSE(bannerAction->isVisible());

    const QString results = folder.filePath("results.mat");
    {
        QFile file(results);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("MATLAB 5.0 results");
    }
    ASSERT_TRUE(opened->document()->loadDataSimulationFromFile(results));
    QCoreApplication::processEvents();
    EXPECT_TRUE(bannerAction->isVisible());
    EXPECT_FALSE(action("actionUndo")->isEnabled()) << "results belong to the design as it is";

    auto *unlock = banner->findChild<QPushButton *>("buttonUnlock");
    MessageBox::answerNextBoxes({QMessageBox::No});
    QTest::mouseClick(unlock, Qt::LeftButton);
    EXPECT_TRUE(opened->document()->isLockedBySimulationData());

    MessageBox::answerNextBoxes({QMessageBox::Yes});
    QTest::mouseClick(unlock, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_FALSE(opened->document()->isLockedBySimulationData());
    EXPECT_FALSE(bannerAction->isVisible());
    EXPECT_TRUE(action("actionUndo")->isEnabled());
    EXPECT_FALSE(window->windowTitle().contains("[with simulation data]"));
}

TEST_F(MainWindowTest, SavingUnderTheProtectedSuffixWritesAProtectedFileAndWorksOnWithThePlainName)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    FileDialog::answerNextDialogs({folder.filePath("shared.zvap")});
    trigger("actionSaveAs");
    EXPECT_EQ(readAll(folder.filePath("shared.zvap")).left(4), QByteArray("\x70\x61\x76\x7A", 4));
    EXPECT_FALSE(opened->document()->isProtectedFile()) << "the window goes on with the design";
    EXPECT_EQ(QFileInfo(opened->document()->filePath()).fileName(), "shared.zva");

    // Opened again, the protected file shows its banner instead of the design.
    DocumentWindow *shared = openByDialog(folder.filePath("shared.zvap"));
    ASSERT_NE(shared, nullptr);
    ASSERT_NE(shared, opened);
    EXPECT_TRUE(shared->document()->isProtectedFile());
    auto *banner = shared->findChild<QLabel *>("ProtectedBanner");
    ASSERT_NE(banner, nullptr);
    EXPECT_TRUE(banner->isVisible());
    EXPECT_FALSE(shared->findChild<QWidget *>("splitterHorizontal")->isVisible());
}

TEST_F(MainWindowTest, ExportToJsonForcesItsSuffixAndRemembersTheFolder)
{
    ASSERT_NE(openByDialog(design), nullptr);
    EXPECT_TRUE(action("actionExportToJSON")->isEnabled());
    FileDialog::answerNextDialogs({folder.filePath("export")});
    trigger("actionExportToJSON");
    EXPECT_TRUE(readAll(folder.filePath("export.json")).contains("Zolvane"));
    EXPECT_EQ(QSettings().value("Settings/PathExportJSON").toString(), folder.path());
    EXPECT_EQ(window->statusBar()->currentMessage(), "File exported to JSON");

    // Below a file no folder can be made.
    window->statusBar()->clearMessage();
    FileDialog::answerNextDialogs({design + "/export.json"});
    trigger("actionExportToJSON");
    EXPECT_TRUE(window->statusBar()->currentMessage().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(design + "/export.json"));
}

TEST_F(MainWindowTest, DroppedDesignsOpenAndOtherFilesAreIgnored)
{
    const QString text = folder.filePath("notes.txt");
    QFile(text).open(QIODevice::WriteOnly);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(text)});
    QDragEnterEvent refused(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &refused);
    EXPECT_FALSE(refused.isAccepted());

    data.setUrls({QUrl::fromLocalFile(text), QUrl::fromLocalFile(design)});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &drop);
    QCoreApplication::processEvents();
    ASSERT_EQ(window->documentWindows().size(), 1);
    EXPECT_EQ(QFileInfo(window->documentWindows().first()->document()->filePath()).fileName(), "design.zva");
}

TEST_F(MainWindowTest, AReadOnlyDocumentIsOnlyViewed)
{
    ASSERT_TRUE(window->openFile(design, true, Document::UnknownMode));
    QCoreApplication::processEvents();
    EXPECT_TRUE(window->windowTitle().startsWith("design[view only]")) << window->windowTitle().toStdString();
    EXPECT_FALSE(action("actionSave")->isEnabled());
    EXPECT_FALSE(action("actionNew")->isVisible());
    EXPECT_FALSE(action("actionOpen")->isVisible());
}

namespace {

constexpr int drawTimeout = 120000;

// Waits until the scene of the viewer has drawn the document's newest machine.
bool waitForMachine(GeometryViewer *viewer)
{
    QSignalSpy redrawn(viewer->scene(), &GeometryScene::redrawScene);
    while (viewer->scene()->isGenerating() || viewer->scene()->objects().isEmpty()) {
        if (!redrawn.wait(drawTimeout))
            return false;
    }
    return true;
}

int coilsOn(const GeometryScene *scene)
{
    int coils = 0;
    for (const Piece &piece : scene->pieces())
        coils += piece.kind() == AbstractMaterial::WindingKind ? 1 : 0;
    return coils;
}

} // namespace

TEST_F(MainWindowTest, TheMotorPageDrawsTheMachineAndFollowsAChangeAndItsUndo)
{
    window->resize(1400, 860);
    DocumentWindow *documentWindow = openByDialog(design);
    ASSERT_NE(documentWindow, nullptr);
    GeometryViewer *viewer = documentWindow->viewer(Document::GeometryMotor);
    ASSERT_NE(viewer, nullptr);
    ASSERT_TRUE(waitForMachine(viewer));
    EXPECT_TRUE(viewer->isVisible());
    const int coilsBefore = coilsOn(viewer->scene());
    EXPECT_GT(coilsBefore, 0);

    // The panels beside the view lay out what the finished machine changed.
    QCoreApplication::processEvents();
    const QImage drawn = window->grab().toImage();
    if (qEnvironmentVariableIsSet("ZDS_SCREENSHOT"))
        drawn.save(qEnvironmentVariable("ZDS_SCREENSHOT"));
    int magnetPixels = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor pixel = drawn.pixelColor(x, y);
            magnetPixels += pixel.hsvSaturationF() > 0.4 && std::abs(pixel.hsvHue() - 240) < 8 ? 1 : 0;
        }
    }
    EXPECT_GT(magnetPixels, 20) << "the south poles of the magnets are drawn in the window";

    // A change waits for "Apply" over the machine it makes out of date.
    auto *modified = viewer->findChild<ModifiedFadeLabel *>();
    ASSERT_NE(modified, nullptr);
    EXPECT_FALSE(modified->isVisible());
    Document *document = documentWindow->document();
    document->setPropertyUndoable(document->stator(), "numberSlots", 24);
    QCoreApplication::processEvents();
    EXPECT_TRUE(modified->isVisible());
    EXPECT_TRUE(modified->findChild<QWidget *>("widgetRigthAway")->isVisible());
    EXPECT_FALSE(viewer->scene()->isGenerating());
    EXPECT_EQ(coilsOn(viewer->scene()), coilsBefore);
    auto *apply = modified->findChild<QPushButton *>("buttonApply");
    QTest::mouseClick(apply, Qt::LeftButton);
    EXPECT_FALSE(modified->isVisible());
    EXPECT_EQ(viewer->progressText(), "Generating motor geometry...");
    ASSERT_TRUE(waitForMachine(viewer));
    EXPECT_TRUE(viewer->progressText().isEmpty());
    EXPECT_EQ(coilsOn(viewer->scene()), 2 * coilsBefore);

    // Asked not to ask again, the view draws the undone machine at once, and every
    // later change too.
    trigger("actionUndo");
    QCoreApplication::processEvents();
    ASSERT_TRUE(modified->isVisible());
    modified->findChild<QCheckBox *>("checkBoxRigthAwayApplyChanges")->click();
    EXPECT_TRUE(window->rightAwayApplyChangesGeometry());
    QCoreApplication::processEvents();
    ASSERT_TRUE(waitForMachine(viewer));
    EXPECT_FALSE(modified->isVisible());
    EXPECT_EQ(coilsOn(viewer->scene()), coilsBefore);
    trigger("actionRedo");
    QCoreApplication::processEvents();
    EXPECT_FALSE(modified->isVisible());
    ASSERT_TRUE(waitForMachine(viewer));
    EXPECT_EQ(coilsOn(viewer->scene()), 2 * coilsBefore);
}

TEST_F(MainWindowTest, TheViewsSayWhatIsWrongAndWhatIsStaleAlongTheirBottom)
{
    DocumentWindow *documentWindow = openByDialog(design);
    ASSERT_NE(documentWindow, nullptr);
    GeometryViewer *viewer = documentWindow->viewer(Document::GeometryMotor);
    ASSERT_TRUE(waitForMachine(viewer));
    auto *warnings = viewer->findChild<QLabel *>("labelWarnings");
    auto *errors = viewer->findChild<QLabel *>("labelErrors");
    ASSERT_TRUE(warnings && errors);
    EXPECT_FALSE(warnings->isVisible()) << "the drawn bundles are the end winding";
    EXPECT_FALSE(errors->isVisible());

    // A change waiting for "Apply" leaves the end winding stale; its link draws the machine.
    Document *document = documentWindow->document();
    document->setPropertyUndoable(document->stator(), "numberSlots", 24);
    QCoreApplication::processEvents();
    ASSERT_TRUE(warnings->isVisible());
    EXPECT_TRUE(viewer->warningText().contains("End winding needs to be regenerated"));
    emit warnings->linkActivated(QStringLiteral("generate"));
    ASSERT_TRUE(waitForMachine(viewer));
    EXPECT_FALSE(warnings->isVisible());

    // Diameters in the wrong order are named on the motor's and the stator's views alike.
    document->setPropertyUndoable(document->stator(), "innerDiameter", 250.0);
    QCoreApplication::processEvents();
    EXPECT_TRUE(errors->isVisible());
    EXPECT_FALSE(viewer->errorText().isEmpty());
    EXPECT_EQ(documentWindow->viewer(Document::GeometryStator)->errorText(), viewer->errorText());
    EXPECT_TRUE(documentWindow->viewer(Document::GeometryRotor)->errorText().isEmpty());
    // The messages are those of the machine last built: the undone one, once applied.
    trigger("actionUndo");
    QCoreApplication::processEvents();
    QTest::mouseClick(viewer->findChild<QPushButton *>("buttonApply"), Qt::LeftButton);
    ASSERT_TRUE(waitForMachine(viewer));
    EXPECT_FALSE(errors->isVisible()) << viewer->errorText().toStdString();
}

TEST_F(MainWindowTest, TheMotorPageDrawsTheEndTurnsAsBundlesOrLinesInTheirPhasesColours)
{
    DocumentWindow *documentWindow = openByDialog(design);
    ASSERT_NE(documentWindow, nullptr);
    GeometryViewer *viewer = documentWindow->viewer(Document::GeometryMotor);
    ASSERT_TRUE(waitForMachine(viewer));
    auto *scene = qobject_cast<MotorGeometryScene *>(viewer->scene());
    ASSERT_NE(scene, nullptr);
    const auto endturns = [scene] {
        PieceList found;
        for (const Piece &piece : scene->pieces()) {
            if (piece.kind() == AbstractMaterial::EndturnKind)
                found.append(piece);
        }
        return found;
    };
    // Each coil of the example's tooth-coil winding has an outer and an inner end turn.
    const PieceList bundles = endturns();
    ASSERT_EQ(bundles.size(), 2 * 12);
    for (const Piece &piece : bundles)
        EXPECT_GT(piece.shape().volume(), 1.0);

    QWidget *page = viewer->parentWidget();
    page->findChild<QCheckBox *>(QStringLiteral("checkBoxShowOnlyFilaments"))->click();
    const PieceList lines = endturns();
    ASSERT_EQ(lines.size(), bundles.size());
    for (const Piece &piece : lines)
        EXPECT_EQ(piece.shape().Shape().ShapeType(), TopAbs_WIRE);

    page->findChild<QCheckBox *>(QStringLiteral("checkBoxHightlightWindingPhases"))->click();
    int phaseColoured = 0;
    for (const Handle(AIS_InteractiveObject) &object : scene->objects()) {
        const Piece piece = scene->pieceOf(object);
        const auto material = piece.material().dynamicCast<EndturnMaterial>();
        if (!material)
            continue;
        Quantity_Color color;
        object->Color(color);
        double red = 0.0, green = 0.0, blue = 0.0;
        color.Values(red, green, blue, Quantity_TOC_sRGB);
        const QColor expected = Winding::phaseColor(Winding::Phase(material->phase()), false);
        phaseColoured += std::abs(red - expected.redF()) < 0.02 && std::abs(green - expected.greenF()) < 0.02
                                 && std::abs(blue - expected.blueF()) < 0.02
                             ? 1
                             : 0;
    }
    EXPECT_EQ(phaseColoured, bundles.size());
}

TEST_F(MainWindowTest, AnEditorWithErroneousSettingsIsMarkedInTheToolBox)
{
    DocumentWindow *documentWindow = openByDialog(design);
    ASSERT_NE(documentWindow, nullptr);
    auto *toolBox = documentWindow->findChild<QToolBox *>();
    ASSERT_NE(toolBox, nullptr);
    const int windingPage = 1;
    EXPECT_EQ(toolBox->itemText(windingPage), QStringLiteral("Winding Editor"));
    EXPECT_TRUE(toolBox->itemToolTip(windingPage).isEmpty());
    const QImage clean = toolBox->itemIcon(windingPage).pixmap(16, 16).toImage();

    // Five parallel paths cannot share the four coils of a phase.
    Document *document = documentWindow->document();
    document->setPropertyUndoable(document->winding(), "parallelPaths", 5);
    QCoreApplication::processEvents();
    EXPECT_EQ(toolBox->itemToolTip(windingPage), QStringLiteral("Editor contains erroneous settings"));
    EXPECT_NE(toolBox->itemIcon(windingPage).pixmap(16, 16).toImage(), clean);
    EXPECT_TRUE(toolBox->itemToolTip(0).isEmpty()) << "the geometry has no error";

    trigger("actionUndo");
    QCoreApplication::processEvents();
    EXPECT_TRUE(toolBox->itemToolTip(windingPage).isEmpty());
    EXPECT_EQ(toolBox->itemIcon(windingPage).pixmap(16, 16).toImage(), clean);
}

TEST_F(MainWindowTest, AnOpenedDesignIsPreparedBeforeItIsShownAndANewOneIsNot)
{
    DocumentWindow *opened = openByDialog(design);
    ASSERT_NE(opened, nullptr);
    Document *document = opened->document();
    EXPECT_TRUE(document->hasPieces());
    EXPECT_FALSE(document->mesh()->isMeshInvalid());
    EXPECT_EQ(document->mesh()->meshSlices().size(), document->mesh()->numberSlices());
    EXPECT_FALSE(document->isPreparing());
    EXPECT_FALSE(document->isModified());
    EXPECT_EQ(opened->findChild<GlassWidget *>(), nullptr);

    trigger("actionNew");
    QCoreApplication::processEvents();
    DocumentWindow *created = window->currentDocumentWindow();
    ASSERT_NE(created, opened);
    EXPECT_TRUE(created->document()->mesh()->isMeshInvalid());
    EXPECT_FALSE(created->document()->isPreparing());
}

TEST_F(MainWindowTest, TheMaterialsBesideTheMotorHideAKindAndWeighTheMachine)
{
    window->resize(1100, 720);
    DocumentWindow *documentWindow = openByDialog(design);
    ASSERT_NE(documentWindow, nullptr);
    GeometryViewer *viewer = documentWindow->viewer(Document::GeometryMotor);
    ASSERT_TRUE(waitForMachine(viewer));
    QWidget *page = viewer->parentWidget();
    auto *materials = page->findChild<MaterialsWidget *>(QStringLiteral("widgetMaterials"));
    ASSERT_NE(materials, nullptr);
    EXPECT_TRUE(materials->isVisible());
    EXPECT_TRUE(materials->isRowShown(MaterialsWidget::RotorMagnet));
    EXPECT_FALSE(materials->isRowShown(MaterialsWidget::RotorConductor));
    QCoreApplication::processEvents();
    auto *total = page->findChild<QLabel *>(QStringLiteral("labelTotalWeightValue"));
    ASSERT_NE(total, nullptr);
    EXPECT_GT(total->text().toDouble(), 0.0);

    const auto magnetObjects = [viewer] {
        int count = 0;
        for (const Handle(AIS_InteractiveObject) &object : viewer->scene()->objects())
            count += viewer->scene()->pieceOf(object).kind() == AbstractMaterial::MagnetKind ? 1 : 0;
        return count;
    };
    EXPECT_GT(magnetObjects(), 0);
    page->findChild<QCheckBox *>(QStringLiteral("buttonRotorMagnet"))->click();
    EXPECT_EQ(magnetObjects(), 0);
    EXPECT_FALSE(viewer->scene()->isMaterialVisible(QStringLiteral("VisibleRotorMagnet")));
    page->findChild<QPushButton *>(QStringLiteral("buttonShowAll"))->click();
    EXPECT_GT(magnetObjects(), 0);
}

TEST_F(MainWindowTest, ExportToStepWritesTheBodiesOfThePageOnView)
{
    DocumentWindow *documentWindow = openByDialog(design);
    ASSERT_NE(documentWindow, nullptr);
    documentWindow->document()->setMode(Document::GeometryStator);
    GeometryViewer *viewer = documentWindow->viewer(Document::GeometryStator);
    ASSERT_TRUE(waitForMachine(viewer));
    QCoreApplication::processEvents();
    ASSERT_TRUE(action("actionExportToSTEP")->isEnabled());

    FileDialog::answerNextDialogs({folder.filePath("stator.STEP")});
    trigger("actionExportToSTEP");
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("stator.STEP.step"))) << "the suffix is taken in any case";
    const QByteArray written = readAll(folder.filePath("stator.STEP"));
    EXPECT_TRUE(written.startsWith("ISO-10303-21"));
    EXPECT_EQ(written.count("MANIFOLD_SOLID_BREP"), viewer->scene()->pieces().size()) << "one body per piece";
    EXPECT_EQ(window->statusBar()->currentMessage(), "File exported to STEP");

    documentWindow->document()->setMode(Document::Mesh2D);
    QCoreApplication::processEvents();
    EXPECT_FALSE(action("actionExportToSTEP")->isEnabled());
}

TEST_F(MainWindowTest, ExportToMatWritesTheExchangeFile)
{
    ASSERT_NE(openByDialog(design), nullptr);
    ASSERT_TRUE(action("actionExportToMAT")->isEnabled());
    FileDialog::answerNextDialogs({folder.filePath("exchange")});
    trigger("actionExportToMAT");
    EXPECT_TRUE(readAll(folder.filePath("exchange.mat")).startsWith("MATLAB 5.0 MAT-file"));
    EXPECT_EQ(window->statusBar()->currentMessage(), "File exported to MAT");
}

TEST_F(MainWindowTest, ASlaveWindowShowsOneDocumentAndWritesTheExchangeFileOnApply)
{
    window->close();
    const QString exchange = folder.filePath("exchange.mat");
    {
        QFile stale(exchange);
        ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
        stale.write("left from an earlier run");
    }
    WindowStart start;
    start.files = QStringList{design};
    start.slave = true;
    start.editable = true;
    start.exchangeFile = exchange;
    start.caption = QStringLiteral("Motor A");
    start.page = QStringLiteral("Winding");
    window = std::make_unique<MainWindow>(start);
    window->show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();

    EXPECT_FALSE(QFileInfo::exists(exchange)) << "the parent waits for the file to appear";
    DocumentWindow *documentWindow = window->currentDocumentWindow();
    ASSERT_NE(documentWindow, nullptr);
    EXPECT_TRUE(documentWindow->document()->isSlave());
    EXPECT_FALSE(documentWindow->document()->isReadonly());
    EXPECT_EQ(documentWindow->document()->mode(), Document::Winding);
    EXPECT_FALSE(window->mdiArea()->isVisible()) << "no tabs";
    EXPECT_FALSE(window->menuBar()->isVisible());
    EXPECT_TRUE(window->windowTitle().startsWith("Motor A"));
    EXPECT_FALSE(action("actionOpen")->isVisible());
    EXPECT_FALSE(action("actionSave")->isVisible());

    auto *apply = window->findChild<QToolButton *>(QStringLiteral("buttonApplyAndClose"));
    ASSERT_NE(apply, nullptr);
    ASSERT_TRUE(apply->isVisible());
    EXPECT_EQ(apply->text(), "Apply and close");
    QTest::mouseClick(apply, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(readAll(exchange).startsWith("MATLAB 5.0 MAT-file"));
}

TEST_F(MainWindowTest, ASlaveWindowWithoutEditIsOnlyViewedAndAnUnknownPageShowsTheGeometry)
{
    window->close();
    WindowStart start;
    start.files = QStringList{design};
    start.slave = true;
    start.exchangeFile = folder.filePath("exchange.mat");
    start.page = QStringLiteral("nowhere");
    LogCatcher log;
    window = std::make_unique<MainWindow>(start);
    window->show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    DocumentWindow *documentWindow = window->currentDocumentWindow();
    ASSERT_NE(documentWindow, nullptr);
    EXPECT_TRUE(documentWindow->document()->isReadonly());
    EXPECT_EQ(documentWindow->document()->mode(), Document::GeometryMotor);
    EXPECT_TRUE(log.contains("Unknown page: nowhere . Set document mode: GeometryMotor"));
    EXPECT_FALSE(window->findChild<QToolButton *>(QStringLiteral("buttonApplyAndClose"))->isVisible());
    window->close();
    EXPECT_TRUE(QFileInfo::exists(folder.filePath("exchange.mat"))) << "closing hands the design back too";
}
