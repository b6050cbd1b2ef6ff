#include "ui/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QUndoStack>
#include <QUrl>
#include <algorithm>
#include <initializer_list>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/UndoStack.h"
#include "meshing/Mesh.h"
#include "ui/CommandStackView.h"
#include "ui/Controls/ZoomableView.h"
#include "ui/DocumentWindow.h"
#include "ui/FileDialog.h"
#include "ui/MessageBox.h"
#include "ui/Viewer/GeometryViewer.h"
#include "winding/WindingObject.h"

// The window's icons live in the static library, whose resources are only linked
// in when asked for; Q_INIT_RESOURCE may not stand inside a namespace.
static void initUiResources()
{
    Q_INIT_RESOURCE(ui);
}

namespace {

const int statusTimeout = 2000;
const QString keyGeometry = QStringLiteral("Settings/MainWindowGeometry");
const QString keyScale = QStringLiteral("Settings/MainWindowScale");
const QString keyState = QStringLiteral("Settings/MainWindowState");
const QString keyRightAway = QStringLiteral("Settings/RightAwayApplyChangesGeometry");
const QString keyRecentFiles = QStringLiteral("RecentFileList");
const QString keyPathProject = QStringLiteral("Settings/PathProject");

double screenScale(const QWidget *widget)
{
    const QScreen *screen = widget->screen() ? widget->screen() : QGuiApplication::primaryScreen();
    return screen->logicalDotsPerInchX() / 96.0;
}

// Reading the stored list: at most the bound, native separators, no duplicates.
QStringList readRecentFiles(QSettings &settings)
{
    QStringList files;
    const int size = settings.beginReadArray(keyRecentFiles);
    for (int i = 0; i < qMin(size, MainWindow::recentFilesLimit); ++i) {
        settings.setArrayIndex(i);
        files.append(QDir::toNativeSeparators(settings.value(QStringLiteral("file")).toString()));
    }
    settings.endArray();
    files.removeDuplicates();
    return files;
}

bool isEnvironmentUserQuorlan()
{
    return qEnvironmentVariable("USERNAME") == QLatin1String("quorlan");
}

} // namespace

MainWindow::MainWindow(const WindowStart &start, QWidget *parent)
    : QMainWindow(parent)
    , m_start(start)
{
    initUiResources();
    setObjectName(QStringLiteral("MainWindowClass"));
    setWindowIcon(QIcon(QStringLiteral(":/StudioLogo.ico")));
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAcceptDrops(true);
    setStyleSheet(QStringLiteral(
        "QToolTip { border: 1px solid gray; padding: 3px; background: rgb(255, 255, 200); }"));

    auto *central = new QWidget(this);
    auto *layout = new QGridLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    m_mdiArea = new QMdiArea(central);
    m_mdiArea->setObjectName(QStringLiteral("mdiArea"));
    m_mdiArea->setViewMode(QMdiArea::TabbedView);
    m_mdiArea->setDocumentMode(true);
    m_mdiArea->setTabsClosable(true);
    m_mdiArea->setTabsMovable(true);
    if (auto *tabBar = m_mdiArea->findChild<QTabBar *>())
        tabBar->setExpanding(false);
    layout->addWidget(m_mdiArea);
    setCentralWidget(central);
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this, &MainWindow::subWindowActivated);

    createActions();
    createMenus();
    createToolBar();
    statusBar()->showMessage(tr("Ready"));
    updateUI();
    updateWindowTitle();
    restoreSettings();
    // The menus are usable only once the command line has been served.
    menuBar()->hide();
    QTimer::singleShot(0, this, &MainWindow::parseCmdLine);
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &MainWindow::updateUI);
}

MainWindow::~MainWindow() = default;

MainWindow *MainWindow::instance()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<MainWindow *>(widget))
            return window;
    }
    return nullptr;
}

QAction *MainWindow::makeAction(const char *name, const QString &text, const QString &toolTip,
                                const QString &shortcut, const QString &icon, bool checkable)
{
    auto *action = new QAction(text, this);
    action->setObjectName(QLatin1String(name));
    if (!toolTip.isEmpty()) {
        action->setToolTip(toolTip);
        action->setStatusTip(toolTip);
    }
    if (!shortcut.isEmpty())
        action->setShortcut(QKeySequence(shortcut));
    if (!icon.isEmpty())
        action->setIcon(QIcon(icon));
    action->setCheckable(checkable);
    return action;
}

void MainWindow::createActions()
{
    m_actionExit = makeAction("actionExit", tr("Exit"), tr("Close all windows and exit application"), {},
                              QStringLiteral(":/cross.png"));
    m_actionAboutQt = makeAction("actionAboutQt", tr("About Qt"), tr("About Qt"), {}, QStringLiteral(":/qt.png"));
    m_actionAbout = makeAction("actionAbout", tr("About Zolvane Design Studio"), {}, {},
                               QStringLiteral(":/StudioLogo.ico"));
    m_actionOpen = makeAction("actionOpen", tr("Open..."), tr("Open file"), QStringLiteral("Ctrl+O"),
                              QStringLiteral(":/folder.png"));
    m_actionNew = makeAction("actionNew", tr("Create new motor"), tr("Create new motor"), QStringLiteral("Ctrl+N"),
                             QStringLiteral(":/new_page.png"));
    m_actionSave = makeAction("actionSave", tr("Save"), {}, QStringLiteral("Ctrl+S"), QStringLiteral(":/disk.png"));
    m_actionSave->setStatusTip(tr("Save file"));
    m_actionSaveAs = makeAction("actionSaveAs", tr("Save as..."), {}, {}, {});
    m_actionSaveAs->setStatusTip(tr("Save file as"));
    m_actionRecentFiles = makeAction("actionRecentFiles", tr("Recent files"), {}, {}, {});
    m_actionClose = makeAction("actionClose", tr("Close"), tr("Close the active window"), {}, {});
    m_actionCloseAll = makeAction("actionCloseAll", tr("Close all"), tr("Close all the windows"), {}, {});
    m_actionUndo = makeAction("actionUndo", tr("Undo"), tr("Undo operation"), QStringLiteral("Ctrl+Z"),
                              QStringLiteral(":/arrow-undo.png"));
    // The redo key is Ctrl+X, as users of the program know it.
    m_actionRedo = makeAction("actionRedo", tr("Redo"), tr("Redo operation"), QStringLiteral("Ctrl+X"),
                              QStringLiteral(":/arrow-redo.png"));
    m_actionHelp = makeAction("actionHelp", tr("Open User Manual"), {}, QStringLiteral("F1"),
                              QStringLiteral(":/help.png"));
    m_actionExportToJSON = makeAction("actionExportToJSON", tr("Export to JSON..."), {}, {},
                                      QStringLiteral(":/json.png"));
    m_actionExportToSTEP = makeAction("actionExportToSTEP", tr("Export to STEP..."), tr("Export to STEP"), {},
                                      QStringLiteral(":/save-step.png"));
    m_actionExportToMAT = makeAction("actionExportToMAT", tr("Export to MAT..."), tr("Export to MAT"), {},
                                     QStringLiteral(":/MatLab.png"));
    m_actionZoomIn = makeAction("actionZoomIn", tr("Zoom in"), tr("Zoom in (Ctrl + Scroll)"), QStringLiteral("+"),
                                QStringLiteral(":/zoom_in.png"));
    m_actionZoomOut = makeAction("actionZoomOut", tr("Zoom out"), tr("Zoom out (Ctrl + Scroll)"),
                                 QStringLiteral("-"), QStringLiteral(":/zoom_out.png"));
    m_actionZoomFit = makeAction("actionZoomFit", tr("Zoom fit"), {}, {}, QStringLiteral(":/zoom_fit.png"), true);
    const QString copyIcon = QStringLiteral(":/page_copy.png");
    const QString pasteIcon = QStringLiteral(":/page_paste.png");
    m_actionCopyMeshProperties = makeAction("actionCopyMeshProperties", tr("Copy properties"),
                                            tr("Copy mesh properties to clipboard"), {}, copyIcon);
    m_actionCopyWindingProperties = makeAction("actionCopyWindingProperties", tr("Copy properies"),
                                               tr("Copy Winding properties to clipboard"), {}, copyIcon);
    m_actionCopyStatorProperties = makeAction("actionCopyStatorProperties", tr("Copy properties"),
                                              tr("Copy stator properties to clipboard"), {}, copyIcon);
    m_actionCopyRotorProperties = makeAction("actionCopyRotorProperties", tr("Copy properties"),
                                             tr("Copy rotor properties to clipboard"), {}, copyIcon);
    m_actionPasteStatorProperties = makeAction("actionPasteStatorProperties", tr("Paste properties"),
                                               tr("Paste stator properties from clipboard"), {}, pasteIcon);
    m_actionPasteRotorProperties = makeAction("actionPasteRotorProperties", tr("Paste properties"),
                                              tr("Paste rotor properties from clipboard"), {}, pasteIcon);
    m_actionPasteWindingProperties = makeAction("actionPasteWindingProperties", tr("Paste properties"),
                                                tr("Paste winding properties from clipboard"), {}, pasteIcon);
    m_actionPasteMeshProperties = makeAction("actionPasteMeshProperties", tr("Paste properties"),
                                             tr("Paste mesh properties from clipboard"), {}, pasteIcon);
    m_actionRunAnalysis = makeAction("actionRunAnalysis", tr("Run analysis"), tr("Run analysis"), {},
                                     QStringLiteral(":/play.png"), true);
    m_actionToggleDebugMode = makeAction("actionToggleDebugMode", tr("Debug mode"), {}, QStringLiteral("Alt+D"), {},
                                         true);
    // The tool bar's pair carries no key: two actions of one window on one key
    // would make Qt find the key ambiguous and run neither.
    m_actionUndo2 = makeAction("actionUndo2", tr("Undo"), tr("Undo operation"), {},
                               QStringLiteral(":/arrow-undo.png"));
    m_actionRedo2 = makeAction("actionRedo2", tr("Redo"), tr("Redo operation"), {},
                               QStringLiteral(":/arrow-redo.png"));

    for (int i = 0; i < recentFilesLimit; ++i) {
        auto *action = new QAction(this);
        action->setVisible(false);
        connect(action, &QAction::triggered, this, &MainWindow::openRecentFile);
        m_recentActions.append(action);
    }

    connect(m_actionExit, &QAction::triggered, qApp, &QApplication::closeAllWindows);
    connect(m_actionAboutQt, &QAction::triggered, qApp, &QApplication::aboutQt);
    connect(m_actionAbout, &QAction::triggered, this, &MainWindow::actionAbout);
    connect(m_actionOpen, &QAction::triggered, this, &MainWindow::actionOpen);
    connect(m_actionNew, &QAction::triggered, this, &MainWindow::actionNewFile);
    connect(m_actionSave, &QAction::triggered, this, &MainWindow::save);
    connect(m_actionSaveAs, &QAction::triggered, this, &MainWindow::saveAs);
    connect(m_actionClose, &QAction::triggered, this, &MainWindow::closeActiveDocumentWindow);
    connect(m_actionCloseAll, &QAction::triggered, this, &MainWindow::closeAllDocumentWindows);
    connect(m_actionUndo, &QAction::triggered, this, &MainWindow::undo);
    connect(m_actionRedo, &QAction::triggered, this, &MainWindow::redo);
    connect(m_actionUndo2, &QAction::triggered, this, &MainWindow::undo);
    connect(m_actionRedo2, &QAction::triggered, this, &MainWindow::redo);
    connect(m_actionHelp, &QAction::triggered, this, &MainWindow::actionHelp);
    connect(m_actionExportToSTEP, &QAction::triggered, this, &MainWindow::exportToSTEP);
    connect(m_actionExportToMAT, &QAction::triggered, this, &MainWindow::exportToMAT);
    connect(m_actionExportToJSON, &QAction::triggered, this, &MainWindow::exportToJSON);
    connect(m_actionZoomIn, &QAction::triggered, this, &MainWindow::zoomIn);
    connect(m_actionZoomOut, &QAction::triggered, this, &MainWindow::zoomOut);
    connect(m_actionZoomFit, &QAction::triggered, this, &MainWindow::setZoomAutoFit);
    connect(m_actionCopyStatorProperties, &QAction::triggered, this, &MainWindow::actionCopyStatorProperties);
    connect(m_actionCopyRotorProperties, &QAction::triggered, this, &MainWindow::actionCopyRotorProperties);
    connect(m_actionCopyWindingProperties, &QAction::triggered, this, &MainWindow::actionCopyWindingProperties);
    connect(m_actionCopyMeshProperties, &QAction::triggered, this, &MainWindow::actionCopyMeshProperties);
    connect(m_actionPasteStatorProperties, &QAction::triggered, this, &MainWindow::actionPasteStatorProperties);
    connect(m_actionPasteRotorProperties, &QAction::triggered, this, &MainWindow::actionPasteRotorProperties);
    connect(m_actionPasteWindingProperties, &QAction::triggered, this, &MainWindow::actionPasteWindingProperties);
    connect(m_actionPasteMeshProperties, &QAction::triggered, this, &MainWindow::actionPasteMeshProperties);
    connect(m_actionToggleDebugMode, &QAction::triggered, this, &MainWindow::actionToggleDebugMode);
    connect(m_actionRunAnalysis, &QAction::triggered, this, &MainWindow::actionRunAnalysis);
}

void MainWindow::createMenus()
{
    QMenu *menuFile = menuBar()->addMenu(tr("File"));
    menuFile->setObjectName(QStringLiteral("menuFile"));
    menuFile->addAction(m_actionNew);
    menuFile->addAction(m_actionOpen);
    menuFile->addAction(m_actionRecentFiles);
    menuFile->addSeparator();
    menuFile->addAction(m_actionSave);
    menuFile->addAction(m_actionSaveAs);
    menuFile->addSeparator();
    menuFile->addAction(m_actionExportToSTEP);
    menuFile->addAction(m_actionExportToMAT);
    menuFile->addAction(m_actionExportToJSON);
    menuFile->addSeparator();
    menuFile->addAction(m_actionExit);

    auto *menuRecent = new QMenu(tr("Recent..."), this);
    menuRecent->setObjectName(QStringLiteral("menuRecent"));
    menuRecent->addActions(m_recentActions);
    m_actionRecentFiles->setMenu(menuRecent);
    connect(menuRecent, &QMenu::aboutToShow, this, &MainWindow::updateRecentFileActions);
    m_actionRecentFiles->setEnabled(!recentFiles().isEmpty());

    QMenu *menuEdit = menuBar()->addMenu(tr("Edit"));
    menuEdit->setObjectName(QStringLiteral("menuEdit"));
    menuEdit->addAction(m_actionUndo);
    menuEdit->addAction(m_actionRedo);
    menuEdit->addSeparator();
    auto addElementMenu = [&](const char *name, const QString &title, QAction *copy, QAction *paste) {
        QMenu *menu = menuEdit->addMenu(title);
        menu->setObjectName(QLatin1String(name));
        menu->addAction(copy);
        menu->addAction(paste);
        return menu;
    };
    m_menuStator = addElementMenu("menuStator", tr("Stator"), m_actionCopyStatorProperties,
                                  m_actionPasteStatorProperties);
    m_menuRotor = addElementMenu("menuRotor", tr("Rotor"), m_actionCopyRotorProperties, m_actionPasteRotorProperties);
    m_menuWindings = addElementMenu("menuWindings", tr("Windings"), m_actionCopyWindingProperties,
                                    m_actionPasteWindingProperties);
    m_menuMesh = addElementMenu("menuMesh", tr("Mesh"), m_actionCopyMeshProperties, m_actionPasteMeshProperties);
    menuEdit->addSeparator();
    menuEdit->addAction(m_actionRunAnalysis);

    QMenu *menuView = menuBar()->addMenu(tr("View"));
    menuView->setObjectName(QStringLiteral("menuView"));
    menuView->addAction(m_actionZoomIn);
    menuView->addAction(m_actionZoomOut);
    menuView->addAction(m_actionZoomFit);
    menuView->addSeparator();
    menuView->addAction(m_actionToggleDebugMode);

    m_menuWindow = menuBar()->addMenu(tr("Window"));
    m_menuWindow->setObjectName(QStringLiteral("menuWindow"));
    connect(m_menuWindow, &QMenu::aboutToShow, this, &MainWindow::updateWindowMenu);

    QMenu *menuHelp = menuBar()->addMenu(tr("Help"));
    menuHelp->setObjectName(QStringLiteral("menuHelp"));
    menuHelp->addAction(m_actionHelp);
    menuHelp->addSeparator();
    menuHelp->addAction(m_actionAbout);
    menuHelp->addAction(m_actionAboutQt);
}

void MainWindow::createToolBar()
{
    QToolBar *toolBar = addToolBar(tr("Main"));
    toolBar->setObjectName(QStringLiteral("mainToolBar"));
    toolBar->setContextMenuPolicy(Qt::PreventContextMenu);
    toolBar->addAction(m_actionNew);
    toolBar->addAction(m_actionOpen);
    toolBar->addAction(m_actionSave);
    toolBar->addAction(m_actionExportToSTEP);
    toolBar->addSeparator();
    toolBar->addAction(m_actionUndo2);
    toolBar->addAction(m_actionRedo2);
    m_undoMenu = new CommandUndoStackView(this);
    m_redoMenu = new CommandRedoStackView(this);
    m_actionUndo2->setMenu(m_undoMenu);
    m_actionRedo2->setMenu(m_redoMenu);
    for (QAction *action : {m_actionUndo2, m_actionRedo2}) {
        if (auto *button = qobject_cast<QToolButton *>(toolBar->widgetForAction(action)))
            button->setPopupMode(QToolButton::MenuButtonPopup);
    }
    toolBar->addSeparator();
    toolBar->addAction(m_actionZoomIn);
    toolBar->addAction(m_actionZoomOut);
    toolBar->addAction(m_actionZoomFit);
    toolBar->addSeparator();
    toolBar->addAction(m_actionRunAnalysis);
    toolBar->addAction(m_actionHelp);

    auto *unlockWidget = new QWidget(toolBar);
    unlockWidget->setObjectName(QStringLiteral("UnlockEditWidget"));
    unlockWidget->setAttribute(Qt::WA_StyledBackground);
    unlockWidget->setStyleSheet(QStringLiteral("#UnlockEditWidget { background-color: rgb(255, 252, 207); "
                                               "border: 1px solid rgb(197, 197, 197); border-radius: 3px; }"));
    auto *unlockLayout = new QHBoxLayout(unlockWidget);
    auto *unlockLabel = new QLabel(tr("Editing is disabled because file may contain analysis data! "
                                      "Use the “Unlock” button to enable editing"),
                                   unlockWidget);
    unlockLabel->setWordWrap(true);
    unlockLabel->setIndent(5);
    auto *unlockButton = new QPushButton(QIcon(QStringLiteral(":/lock_open.png")), tr("Unlock"), unlockWidget);
    unlockButton->setObjectName(QStringLiteral("buttonUnlock"));
    unlockLayout->addWidget(unlockLabel);
    unlockLayout->addWidget(unlockButton);
    connect(unlockButton, &QPushButton::clicked, this, &MainWindow::unlockSimulationFile);
    m_unlockEditAction = toolBar->insertWidget(m_actionHelp, unlockWidget);

    auto *applyButton = new QToolButton(toolBar);
    applyButton->setObjectName(QStringLiteral("buttonApplyAndClose"));
    applyButton->setAutoRaise(true);
    applyButton->setIcon(QIcon(QStringLiteral(":/apply.png")));
    applyButton->setText(tr("Apply and close"));
    applyButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    applyButton->setToolTip(tr("Back to analysis"));
    connect(applyButton, &QToolButton::clicked, this, &QWidget::close);
    m_applyAndCloseAction = toolBar->insertWidget(m_unlockEditAction, applyButton);

    auto *spacer = new QWidget(toolBar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_spacerAction = toolBar->insertWidget(m_actionHelp, spacer);
    toolBar->insertSeparator(m_actionHelp);
}

void MainWindow::unlockSimulationFile()
{
    DocumentWindow *window = currentDocumentWindow();
    if (!window)
        return;
    const auto answer = MessageBox::question(
        this, tr("Unlock simulation file"),
        tr("<b>Are you sure you want to unlock this file for editing?<br>"
           "All analysis data and simulation settings will be deleted!</b>"));
    if (answer != QMessageBox::Yes)
        return;
    // Clearing the data also empties the analysis's results.
    window->document()->clearSimulationData();
    updateWindowTitle();
}

void MainWindow::parseCmdLine()
{
    if (m_start.slave) {
        startSlave();
        return;
    }
    for (const QString &path : qAsConst(m_start.files))
        openFile(path, false, Document::UnknownMode);
    menuBar()->show();
    updateUI();
}

void MainWindow::startSlave()
{
    // The file appears again only when the user has finished: the parent waits for it.
    if (QFileInfo::exists(m_start.exchangeFile) && !QFile::remove(m_start.exchangeFile))
        qCritical() << "file" << m_start.exchangeFile << "exists and cannot remove";
    const QString page = m_start.page.toLower();
    Document::Mode mode = Document::GeometryMotor;
    if (page == QLatin1String("winding")) {
        mode = Document::Winding;
    } else if (page == QLatin1String("mesh")) {
        mode = Document::Mesh2D;
    } else if (page != QLatin1String("geometry")) {
        qWarning().noquote() << "Unknown page:" << m_start.page << ". Set document mode: GeometryMotor";
    }
    for (const QString &path : qAsConst(m_start.files)) {
        if (openFile(path, !m_start.editable, mode))
            m_slaveWindow->document()->setSlave(true);
    }
    updateUI();
    updateWindowTitle();
}

DocumentWindow *MainWindow::currentDocumentWindow() const
{
    if (m_start.slave)
        return m_slaveWindow;
    return m_activeWindow ? qobject_cast<DocumentWindow *>(m_activeWindow->widget()) : nullptr;
}

QList<DocumentWindow *> MainWindow::documentWindows() const
{
    QList<DocumentWindow *> windows;
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList()) {
        if (auto *window = qobject_cast<DocumentWindow *>(sub->widget()))
            windows.append(window);
    }
    return windows;
}

void MainWindow::subWindowActivated(QMdiSubWindow *window)
{
    if (window == m_activeWindow)
        return;
    m_activeWindow = window;
    updateUI();
    updateWindowTitle();
}

DocumentWindow *MainWindow::createMdiWindow(Document::Mode mode)
{
    auto *window = new DocumentWindow(mode);
    if (m_start.slave) {
        m_mdiArea->hide();
        centralWidget()->layout()->addWidget(window);
        m_slaveWindow = window;
    } else {
        m_mdiArea->addSubWindow(window);
    }
    connect(window, &DocumentWindow::aboutToUpdateUI, this, &MainWindow::updateUI);
    connect(window, &DocumentWindow::aboutToUpdateTitle, this, &MainWindow::updateWindowTitle);
    return window;
}

void MainWindow::showDocumentWindow(DocumentWindow *window)
{
    // The tab shows and becomes current only with its sub-window.
    window->parentWidget()->show();
    window->show();
}

bool MainWindow::openFile(const QString &path, bool readonly, Document::Mode mode)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList()) {
        auto *window = qobject_cast<DocumentWindow *>(sub->widget());
        if (window && !canonical.isEmpty()
            && QFileInfo(window->document()->filePath()).canonicalFilePath() == canonical) {
            m_mdiArea->setActiveSubWindow(sub);
            return true;
        }
    }

    DocumentWindow *window = createMdiWindow(mode);
    QCoreApplication::processEvents();
    window->document()->setReadonly(readonly);
    if (!window->load(path, mode)) {
        m_undoMenu->setUndoStack(nullptr);
        m_redoMenu->setUndoStack(nullptr);
        if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget()))
            sub->close();
        else
            window->close();
        return false;
    }
    showDocumentWindow(window);
    updateUI();
    updateWindowTitle();
    addRecentFile(path);
    m_actionRecentFiles->setVisible(true);
    m_actionRecentFiles->setEnabled(true);
    statusBar()->showMessage(tr("File loaded"), statusTimeout);
    return true;
}

void MainWindow::actionNewFile()
{
    DocumentWindow *window = createMdiWindow();
    window->newDocument();
    showDocumentWindow(window);
}

void MainWindow::actionOpen()
{
    QSettings settings;
    settings.remove(QStringLiteral("PathProject"));
    QString folder = settings.value(keyPathProject).toString();
    if (folder.isEmpty())
        folder = FileDialog::rootPath();
    const QString filter = tr("%1 file (*.%2 *.%3);;%1 protected file (*.%3)")
                               .arg(QCoreApplication::applicationName(), zvaSuffix(), zvapSuffix());
    const QStringList files = FileDialog::getOpenFileNames(this, tr("Open"), folder, filter);
    if (files.isEmpty())
        return;
    settings.setValue(keyPathProject, QFileInfo(files.first()).absolutePath());
    for (const QString &file : files)
        openFile(QDir::toNativeSeparators(file), false, Document::UnknownMode);
}

void MainWindow::fileSaved()
{
    updateWindowTitle();
    addRecentFile(currentDocumentWindow()->document()->filePath());
    statusBar()->showMessage(tr("File saved"), statusTimeout);
}

void MainWindow::save()
{
    if (DocumentWindow *window = currentDocumentWindow(); window && window->save())
        fileSaved();
}

void MainWindow::saveAs()
{
    if (DocumentWindow *window = currentDocumentWindow(); window && window->saveAs())
        fileSaved();
}

void MainWindow::exportToSTEP()
{
    if (DocumentWindow *window = currentDocumentWindow(); window && window->exportToSTEP(QString()))
        statusBar()->showMessage(tr("File exported to STEP"), statusTimeout);
}

void MainWindow::exportToMAT()
{
    if (DocumentWindow *window = currentDocumentWindow(); window && window->exportToMAT(QString()))
        statusBar()->showMessage(tr("File exported to MAT"), statusTimeout);
}

void MainWindow::actionRunAnalysis()
{
    // The check follows the run, not the click.
    m_actionRunAnalysis->setChecked(false);
    if (DocumentWindow *window = currentDocumentWindow())
        window->runAnalysis();
}

void MainWindow::zoomIn()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->zoomIn();
}

void MainWindow::zoomOut()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->zoomOut();
}

void MainWindow::setZoomAutoFit(bool on)
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->setZoomAutoFit(on);
}

void MainWindow::exportToJSON()
{
    if (DocumentWindow *window = currentDocumentWindow(); window && window->exportToJSON(QString()))
        statusBar()->showMessage(tr("File exported to JSON"), statusTimeout);
}

QStringList MainWindow::recentFiles()
{
    QSettings settings;
    return readRecentFiles(settings);
}

void MainWindow::addRecentFile(const QString &path)
{
    QSettings settings;
    const QStringList read = readRecentFiles(settings);
    QStringList files = read;
    files.removeAll(path);
    files.prepend(path);
    if (files == read)
        return;
    settings.beginWriteArray(keyRecentFiles);
    for (int i = 0; i < qMin(int(files.size()), recentFilesLimit); ++i) {
        settings.setArrayIndex(i);
        settings.setValue(QStringLiteral("file"), files.at(i));
    }
    settings.endArray();
}

void MainWindow::updateRecentFileActions()
{
    QStringList files = recentFiles();
    files.erase(std::remove_if(files.begin(), files.end(), [](const QString &file) { return !QFileInfo::exists(file); }),
                files.end());
    for (int i = 0; i < m_recentActions.size(); ++i) {
        QAction *action = m_recentActions.at(i);
        if (i >= files.size()) {
            action->setVisible(false);
            continue;
        }
        const QFileInfo info(files.at(i));
        action->setText(QStringLiteral("&%1 %2 (%3)")
                            .arg(i + 1)
                            .arg(info.fileName(), QDir::toNativeSeparators(info.absolutePath())));
        action->setData(files.at(i));
        action->setIcon(QIcon(info.suffix().toLower() == zvapSuffix() ? QStringLiteral(":/StudioLogo_lock.ico")
                                                                      : QStringLiteral(":/StudioLogo.ico")));
        action->setVisible(true);
    }
}

void MainWindow::openRecentFile()
{
    if (auto *action = qobject_cast<QAction *>(sender()))
        openFile(action->data().toString(), false, Document::UnknownMode);
}

void MainWindow::undo()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->undo();
}

void MainWindow::redo()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->redo();
}

void MainWindow::actionCopyStatorProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->copyProperties(DocumentWindow::StatorElement);
}

void MainWindow::actionCopyRotorProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->copyProperties(DocumentWindow::RotorElement);
}

void MainWindow::actionCopyWindingProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->copyProperties(DocumentWindow::WindingElement);
}

void MainWindow::actionCopyMeshProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->copyProperties(DocumentWindow::MeshElement);
}

void MainWindow::actionPasteStatorProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->pasteProperties(DocumentWindow::StatorElement);
}

void MainWindow::actionPasteRotorProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->pasteProperties(DocumentWindow::RotorElement);
}

void MainWindow::actionPasteWindingProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->pasteProperties(DocumentWindow::WindingElement);
}

void MainWindow::actionPasteMeshProperties()
{
    if (DocumentWindow *window = currentDocumentWindow())
        window->pasteProperties(DocumentWindow::MeshElement);
}

void MainWindow::actionToggleDebugMode()
{
    m_debugMode = !m_debugMode;
    emit debugModeChanged(m_debugMode);
    m_actionToggleDebugMode->setChecked(m_debugMode);
    updateUI();
}

void MainWindow::setRightAwayApplyChangesGeometry(bool rightAway)
{
    if (m_rightAwayApplyChangesGeometry == rightAway)
        return;
    m_rightAwayApplyChangesGeometry = rightAway;
    emit rightAwayApplyChangesGeometryChanged(rightAway);
}

void MainWindow::actionAbout()
{
    QMessageBox box(this);
    box.setWindowTitle(tr("Information"));
    box.setIconPixmap(QPixmap(QStringLiteral(":/StudioLogo.ico")));
    box.setTextFormat(Qt::RichText);
    box.setText(tr("<p style='font-size:12pt; font-weight:bold; color:#0055ff;'>About %1</p>"
                   "<p><b>%1</b> version 1.11</p>"
                   "<p>Copyright the authors of %1.</p>"
                   "<p style='color:#646464;'>Build: %2 %3</p>")
                    .arg(QCoreApplication::applicationName(), QStringLiteral(__DATE__), QStringLiteral(__TIME__)));
    box.exec();
}

void MainWindow::actionHelp()
{
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/../manual.pdf");
    const QString title = QCoreApplication::applicationName();
    if (!QFileInfo::exists(path)) {
        MessageBox::critical(this, title, tr("<b>Can't find manual file %1</b>").arg(path));
        return;
    }
    const QUrl url = QUrl::fromLocalFile(path);
    if (!QDesktopServices::openUrl(url))
        MessageBox::critical(this, title, tr("<b>Can't open url %1</b>").arg(url.toString()));
}

void MainWindow::updateUI()
{
    DocumentWindow *window = currentDocumentWindow();
    Document *document = window ? window->document() : nullptr;
    const bool readonly = document && document->isReadonly();
    const bool protectedFile = document && document->isProtectedFile();
    const MagnetostaticAnalysis *analysis = document ? document->analysis() : nullptr;
    const bool busy = analysis && analysis->isRunning();
    const bool editable = document && !readonly && !protectedFile && !busy;
    const Document::Mode mode = document ? document->mode() : Document::UnknownMode;

    const bool slave = m_start.slave;
    const bool openable = !slave && !readonly;
    m_actionNew->setVisible(openable);
    m_actionOpen->setVisible(openable);
    m_actionRecentFiles->setVisible(openable);
    for (QAction *action : {m_actionSave, m_actionSaveAs, m_actionExportToSTEP, m_actionExportToMAT,
                            m_actionExportToJSON})
        action->setVisible(!slave);
    m_applyAndCloseAction->setVisible(slave && !readonly);
    m_applyAndCloseAction->setEnabled(slave && document && !busy);
    m_actionSave->setEnabled(editable);
    m_actionSaveAs->setEnabled(editable);
    m_actionExportToSTEP->setEnabled(document && !protectedFile && mode < Document::Mesh2D && !busy
                                     && window->viewer(mode));
    m_actionExportToMAT->setEnabled(document && !protectedFile && !busy
                                    && (mode == Document::GeometryMotor || mode == Document::Winding
                                        || mode == Document::Mesh2D || mode == Document::Mesh3D));
    m_actionExportToJSON->setEnabled(document && !protectedFile && !busy);
    const ZoomableView *view = window ? window->zoomableView(mode) : nullptr;
    const bool zoomable = view && view->isZoomable();
    m_actionZoomIn->setEnabled(zoomable && view->canZoomIn());
    m_actionZoomOut->setEnabled(zoomable && view->canZoomOut());
    m_actionZoomFit->setEnabled(view && view->canAutoFit());
    m_actionZoomFit->setChecked(view && view->canAutoFit() && view->isAutoFit());

    const bool canUndo = window && window->canUndo() && !busy;
    const bool canRedo = window && window->canRedo() && !busy;
    m_actionUndo->setEnabled(canUndo);
    m_actionUndo2->setEnabled(canUndo);
    m_actionRedo->setEnabled(canRedo);
    m_actionRedo2->setEnabled(canRedo);
    m_undoMenu->setUndoStack(document ? document->undoStack() : nullptr);
    m_redoMenu->setUndoStack(document ? document->undoStack() : nullptr);
    if (document) {
        const QUndoStack *stack = document->undoStack();
        m_actionUndo->setToolTip(stack->undoText());
        m_actionUndo2->setToolTip(stack->undoText());
        m_actionRedo->setToolTip(stack->redoText());
        m_actionRedo2->setToolTip(stack->redoText());
    }

    m_unlockEditAction->setVisible(document && !readonly && !protectedFile
                                   && (document->isLockedBySimulationData() || !analysis->dataSimulation().isEmpty()));
    m_unlockEditAction->setEnabled(analysis && !analysis->isRunning());
    m_spacerAction->setVisible(!m_unlockEditAction->isVisible());

    m_actionRunAnalysis->setVisible(!slave && (m_debugMode || isEnvironmentUserQuorlan()));
    m_actionRunAnalysis->setEnabled(editable && mode == Document::AnalysisMagnetostatic
                                    && !document->hasGeometryErrors() && !document->hasMaterialErrors());
    m_actionRunAnalysis->setChecked(busy);

    m_actionClose->setEnabled(document && !busy);
    m_actionCloseAll->setEnabled(document != nullptr);

    const QMimeData *clipboard = QApplication::clipboard()->mimeData();
    auto updateElementMenu = [&](QMenu *menu, QAction *copy, QAction *paste, DocumentWindow::Element element,
                                 std::initializer_list<Document::Mode> modes) {
        const bool on = document && std::find(modes.begin(), modes.end(), mode) != modes.end();
        menu->setEnabled(on);
        copy->setVisible(on);
        paste->setVisible(on && !readonly && clipboard
                          && clipboard->hasFormat(DocumentWindow::mimeType(element)));
    };
    updateElementMenu(m_menuStator, m_actionCopyStatorProperties, m_actionPasteStatorProperties,
                      DocumentWindow::StatorElement, {Document::GeometryMotor, Document::GeometryStator});
    updateElementMenu(m_menuRotor, m_actionCopyRotorProperties, m_actionPasteRotorProperties,
                      DocumentWindow::RotorElement, {Document::GeometryMotor, Document::GeometryRotor});
    updateElementMenu(m_menuWindings, m_actionCopyWindingProperties, m_actionPasteWindingProperties,
                      DocumentWindow::WindingElement, {Document::Winding});
    updateElementMenu(m_menuMesh, m_actionCopyMeshProperties, m_actionPasteMeshProperties,
                      DocumentWindow::MeshElement, {Document::Mesh2D, Document::Mesh3D});
}

void MainWindow::updateWindowMenu()
{
    m_menuWindow->clear();
    m_menuWindow->addAction(m_actionClose);
    m_menuWindow->addAction(m_actionCloseAll);
    m_menuWindow->addSeparator();
    const QList<QMdiSubWindow *> windows = m_mdiArea->subWindowList();
    for (int i = 0; i < windows.size(); ++i) {
        QMdiSubWindow *sub = windows.at(i);
        auto *window = qobject_cast<DocumentWindow *>(sub->widget());
        if (!window)
            continue;
        const QString name = QFileInfo(window->document()->filePath()).completeBaseName();
        const QString text = (i < 9 ? QStringLiteral("&%1 %2") : QStringLiteral("%1 %2")).arg(i + 1).arg(name);
        QAction *action = m_menuWindow->addAction(text);
        action->setCheckable(true);
        action->setChecked(window == currentDocumentWindow());
        connect(action, &QAction::triggered, this, [this, sub] { m_mdiArea->setActiveSubWindow(sub); });
    }
}

void MainWindow::updateWindowTitle()
{
    const DocumentWindow *window = currentDocumentWindow();
    if (!window) {
        setWindowTitle(QCoreApplication::applicationName());
        return;
    }
    const Document *document = window->document();
    QString title = m_start.slave ? m_start.caption : QFileInfo(document->filePath()).completeBaseName();
    if (document->isModified())
        title.prepend(QStringLiteral("● "));
    if (document->isReadonly())
        title += tr("[view only]");
    if (!document->isProtectedFile() && document->isLockedBySimulationData())
        title += tr("[with simulation data]");
    if (!(document->isProtectedFile() && document->isReadonly()) && document->mesh()->isMeshModified())
        title += tr("[mesh modified]");
    title += QStringLiteral(" - ") + QCoreApplication::applicationName();
    setWindowTitle(title.simplified());
}

void MainWindow::closeActiveDocumentWindow()
{
    m_mdiArea->closeActiveSubWindow();
}

void MainWindow::closeAllDocumentWindows()
{
    m_mdiArea->closeAllSubWindows();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (m_start.slave && m_slaveWindow) {
        Document *document = m_slaveWindow->document();
        if (!document->isProtectedFile())
            document->winding()->clearEndWindingStale();
        document->writeExchangeFile(m_start.exchangeFile);
        m_slaveWindow->save();
        m_slaveWindow->close();
    }
    m_mdiArea->closeAllSubWindows();
    if (!m_mdiArea->subWindowList().isEmpty()) {
        event->ignore();
        return;
    }
    storeSettings();
    event->accept();
}

bool MainWindow::isDocumentFile(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == zvaSuffix() || suffix == zvapSuffix();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (std::any_of(urls.begin(), urls.end(), [](const QUrl &url) { return isDocumentFile(url.toLocalFile()); }))
        event->acceptProposedAction();
    else
        event->ignore();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    for (const QUrl &url : event->mimeData()->urls()) {
        if (isDocumentFile(url.toLocalFile()))
            openFile(url.toLocalFile(), false, Document::UnknownMode);
    }
}

void MainWindow::restoreSettings()
{
    QSettings settings;
    const QByteArray geometry = settings.value(keyGeometry).toByteArray();
    if (geometry.isEmpty()) {
        const QRect available = (screen() ? screen() : QGuiApplication::primaryScreen())->availableGeometry();
        resize(available.width() / 2, (2 * available.height()) / 3);
        QRect frame = frameGeometry();
        frame.moveCenter(available.center());
        move(frame.topLeft());
    } else {
        restoreGeometry(geometry);
        // A window keeps its look when the scale of the screen changes.
        const double current = screenScale(this);
        if (settings.contains(keyScale)) {
            const double stored = settings.value(keyScale).toDouble();
            if (stored > 0 && !qFuzzyCompare(current, stored))
                resize(qRound(width() * current / stored), qRound(height() * current / stored));
        }
    }
    const QByteArray state = settings.value(keyState).toByteArray();
    if (!state.isEmpty())
        restoreState(state);
    m_rightAwayApplyChangesGeometry = settings.value(keyRightAway, false).toBool();
    if (auto *toolBar = findChild<QToolBar *>(QStringLiteral("mainToolBar")))
        toolBar->setVisible(true);
}

void MainWindow::storeSettings() const
{
    QSettings settings;
    settings.setValue(keyGeometry, saveGeometry());
    settings.setValue(keyScale, screenScale(this));
    settings.setValue(keyState, saveState());
    settings.setValue(keyRightAway, m_rightAwayApplyChangesGeometry);
}
