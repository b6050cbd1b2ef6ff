#pragma once

#include <QHash>
#include <QPointer>
#include <functional>
#include <QWidget>

#include "document/Document.h"
#include "ui/DesignFileLock.h"

class ConsoleContentModel;
class ConsoleWidget;
class GeometryViewer;
class GlassWidget;
class MeshPageViewer;
class ZoomableView;
class QComboBox;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QToolBox;

// The face of one document, which it owns: the tool box of editors on the left,
// the page of the current mode and the console on the right. It carries out what
// the main window forwards: saving with its questions, exports, the clipboard.
class DocumentWindow : public QWidget
{
    Q_OBJECT
public:
    // The elements whose properties travel through the clipboard.
    enum Element { StatorElement, RotorElement, WindingElement, MeshElement };

    explicit DocumentWindow(Document::Mode mode, QWidget *parent = nullptr);
    ~DocumentWindow() override;

    Document *document() const { return m_document; }
    bool isNewFile() const { return m_newFile; }

    bool load(const QString &path, Document::Mode mode);
    void newDocument();
    bool save();
    bool saveAs();
    // Each asks for the file, proposing the given name or the document's.
    bool exportToJSON(const QString &name);
    bool exportToMAT(const QString &name);
    // The scene of the page on view.
    bool exportToSTEP(const QString &name);

    static QString mimeType(Element element);
    void copyProperties(Element element) const;
    void pasteProperties(Element element);

    // Saves first, as a new file where it is one, and runs the analysis on a saved design.
    void runAnalysis();

    // The 3D view of a geometry mode; none for other modes or without a display.
    GeometryViewer *viewer(Document::Mode mode) const;
    // What the zoom actions act on in a mode's page; none for a page without a view.
    ZoomableView *zoomableView(Document::Mode mode) const;

    // The view of the page on show.
    void zoomIn();
    void zoomOut();
    void setZoomAutoFit(bool on);

    void undo();
    void redo();
    bool canUndo() const;
    bool canRedo() const;

signals:
    void aboutToUpdateUI();
    void aboutToUpdateTitle();

protected:
    void closeEvent(QCloseEvent *event) override;

private slots:
    void documentWasModified();

private:
    struct ExportRecipe {
        QString settingsKey;
        QString folderBelowRoot;
        QString filter;
        QString title;
        QString forcedSuffix;
        QString nameSuffix;
    };
    bool exportFile(const ExportRecipe &recipe, const QString &name,
                    const std::function<bool(const QString &)> &write);

    void createForm();
    void createConsole(QWidget *widgetConsole);
    void showLogs(bool debugMode);
    void followModeInConsole(Document::Mode mode);
    void createViewers();
    // Over a view whose machine waits for "Apply", with the choice to stop asking.
    void addModifiedLabel(GeometryViewer *viewer);
    // What is wrong with the shown elements and what deserves a look, along the views.
    void showViewerMessages();
    void connectAnalysisOverlay();
    void showViewerOf(Document::Mode mode);
    // A page of the tool box with the editor that makeEditor builds for its parent.
    void addEditorPage(const char *name, const QString &text, const QString &icon, Document::Mode mode,
                       const std::function<QWidget *(QWidget *)> &makeEditor);
    void documentModeChanged(Document::Mode mode);
    // The editors' pages in the tool box carry an exclamation mark while their part of the
    // design has errors.
    void updateEditorExclamation();
    bool pageHasErrors(Document::Mode mode) const;
    void toolBoxPageChanged(int index);
    void documentReady();
    // Pieces, end turns and meshes, behind an overlay: what an export or analysis reads.
    void prepareData();
    void makeFileCurrent(const QString &path);
    bool saveToPath(const QString &path);
    void updateTab();
    QObject *element(Element element) const;

    Document *m_document = nullptr;
    QStringList m_pageIcons;
    bool m_newFile = true;
    // Held while the design is open for editing here.
    DesignFileLock m_fileLock;
    // A new document has nothing to prepare before it is first shown.
    bool m_deferredPreparation = false;
    QSplitter *m_splitterHorizontal = nullptr;
    QSplitter *m_splitterVertical = nullptr;
    QToolBox *m_toolBoxEditors = nullptr;
    QStackedWidget *m_viewers = nullptr;
    ConsoleContentModel *m_consoleModel = nullptr;
    ConsoleWidget *m_console = nullptr;
    QComboBox *m_comboBoxConsole = nullptr;
    QPushButton *m_buttonLogs = nullptr;
    QHash<Document::Mode, GeometryViewer *> m_viewerOfMode;
    // The page of each mode that has one, the 3D views included.
    QHash<Document::Mode, QWidget *> m_pageOfMode;
    MeshPageViewer *m_meshPage = nullptr;
    QList<Document::Mode> m_pageModes;
    // Over the window while the analysis runs.
    QPointer<GlassWidget> m_overlay;
    // The user closed the window during a run and stopped it.
    bool m_closeAfterRun = false;
};
