#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QStringList>

#include "document/Document.h"

class CommandRedoStackView;
class CommandUndoStackView;
class DocumentWindow;
class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;

// How the command line starts the window.
struct WindowStart {
    QStringList files;
    // A parent program's "execute": one document without tabs, read-only unless
    // editable, written to the exchange file when the window closes.
    bool slave = false;
    bool editable = false;
    QString exchangeFile;
    QString caption;
    QString page;
};

// The shell of the interactive process: one tab of a document window for each
// open document, and the commands that act on the current one.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    static constexpr int recentFilesLimit = 10;

    // The files are opened once the event loop runs, as given on the command line.
    explicit MainWindow(const WindowStart &start = {}, QWidget *parent = nullptr);
    ~MainWindow() override;

    static MainWindow *instance();

    bool openFile(const QString &path, bool readonly, Document::Mode mode);
    DocumentWindow *currentDocumentWindow() const;
    QList<DocumentWindow *> documentWindows() const;
    QMdiArea *mdiArea() const { return m_mdiArea; }

    bool isDebugMode() const { return m_debugMode; }
    bool isSlave() const { return m_start.slave; }
    bool rightAwayApplyChangesGeometry() const { return m_rightAwayApplyChangesGeometry; }
    void setRightAwayApplyChangesGeometry(bool rightAway);

    // The stored list of recent files, latest first, without duplicates.
    static QStringList recentFiles();
    static void addRecentFile(const QString &path);

signals:
    void rightAwayApplyChangesGeometryChanged(bool rightAway);
    void debugModeChanged(bool on);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private slots:
    void actionNewFile();
    void actionOpen();
    void save();
    void saveAs();
    void exportToSTEP();
    void exportToMAT();
    void exportToJSON();
    void zoomIn();
    void zoomOut();
    void setZoomAutoFit(bool on);
    void updateRecentFileActions();
    void openRecentFile();
    void unlockSimulationFile();
    void undo();
    void redo();
    void actionCopyStatorProperties();
    void actionCopyRotorProperties();
    void actionCopyWindingProperties();
    void actionCopyMeshProperties();
    void actionPasteStatorProperties();
    void actionPasteRotorProperties();
    void actionPasteWindingProperties();
    void actionPasteMeshProperties();
    void actionToggleDebugMode();
    void actionRunAnalysis();
    void actionAbout();
    void actionHelp();
    void updateUI();
    void updateWindowMenu();
    void updateWindowTitle();
    void closeActiveDocumentWindow();
    void closeAllDocumentWindows();

private:
    QAction *makeAction(const char *name, const QString &text, const QString &toolTip, const QString &shortcut,
                        const QString &icon, bool checkable = false);
    void createActions();
    void createMenus();
    void createToolBar();
    void parseCmdLine();
    void startSlave();
    DocumentWindow *createMdiWindow(Document::Mode mode = Document::UnknownMode);
    static void showDocumentWindow(DocumentWindow *window);
    void subWindowActivated(QMdiSubWindow *window);
    void restoreSettings();
    void storeSettings() const;
    void fileSaved();
    static bool isDocumentFile(const QString &path);

    WindowStart m_start;
    QPointer<DocumentWindow> m_slaveWindow;
    QMdiArea *m_mdiArea = nullptr;
    QPointer<QMdiSubWindow> m_activeWindow;
    CommandUndoStackView *m_undoMenu = nullptr;
    CommandRedoStackView *m_redoMenu = nullptr;
    QList<QAction *> m_recentActions;
    bool m_rightAwayApplyChangesGeometry = false;
    bool m_debugMode = false;

    QAction *m_actionExit = nullptr;
    QAction *m_actionAboutQt = nullptr;
    QAction *m_actionAbout = nullptr;
    QAction *m_actionOpen = nullptr;
    QAction *m_actionNew = nullptr;
    QAction *m_actionSave = nullptr;
    QAction *m_actionSaveAs = nullptr;
    QAction *m_actionRecentFiles = nullptr;
    QAction *m_actionClose = nullptr;
    QAction *m_actionCloseAll = nullptr;
    QAction *m_actionUndo = nullptr;
    QAction *m_actionRedo = nullptr;
    QAction *m_actionHelp = nullptr;
    QAction *m_actionExportToSTEP = nullptr;
    QAction *m_actionExportToMAT = nullptr;
    QAction *m_actionExportToJSON = nullptr;
    QAction *m_actionZoomIn = nullptr;
    QAction *m_actionZoomOut = nullptr;
    QAction *m_actionZoomFit = nullptr;
    QAction *m_actionRunAnalysis = nullptr;
    QAction *m_actionCopyMeshProperties = nullptr;
    QAction *m_actionCopyWindingProperties = nullptr;
    QAction *m_actionCopyStatorProperties = nullptr;
    QAction *m_actionCopyRotorProperties = nullptr;
    QAction *m_actionPasteStatorProperties = nullptr;
    QAction *m_actionPasteRotorProperties = nullptr;
    QAction *m_actionPasteWindingProperties = nullptr;
    QAction *m_actionPasteMeshProperties = nullptr;
    QAction *m_actionToggleDebugMode = nullptr;
    QAction *m_actionUndo2 = nullptr;
    QAction *m_applyAndCloseAction = nullptr;
    QAction *m_actionRedo2 = nullptr;

    QAction *m_unlockEditAction = nullptr;
    QAction *m_spacerAction = nullptr;

    QMenu *m_menuStator = nullptr;
    QMenu *m_menuRotor = nullptr;
    QMenu *m_menuWindings = nullptr;
    QMenu *m_menuMesh = nullptr;
    QMenu *m_menuWindow = nullptr;
};
