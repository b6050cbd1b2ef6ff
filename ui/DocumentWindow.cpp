#include "ui/DocumentWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QJsonDocument>
#include <QComboBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPainter>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QTimer>
#include <QToolBox>
#include <QVBoxLayout>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/CommandSetPropertyObject.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "ui/ConsoleModel.h"
#include "ui/ConsoleWidget.h"
#include "ui/FileDialog.h"
#include "ui/MainWindow.h"
#include "ui/MessageBox.h"
#include "ui/GlassWidget.h"
#include "ui/MagnetostaticEditor.h"
#include "ui/MagnetostaticPageViewer.h"
#include "ui/MaterialsPanel.h"
#include "ui/MeshEditor.h"
#include "ui/MeshPageViewer.h"
#include "ui/ModifiedFadeLabel.h"
#include "ui/MotorGeometryEditor.h"
#include "ui/ProtectedBanner.h"
#include "ui/WindingEditor.h"
#include "ui/WindingPageViewer.h"
#include "ui/Viewer/ElementScenes.h"
#include "ui/Viewer/GeometryScene.h"
#include "ui/Viewer/GeometryViewer.h"
#include "winding/WindingObject.h"

namespace {

const QString keyHorizontalSplitter = QStringLiteral("Settings/HorizontalSplitterState");
const QString keyVerticalSplitter = QStringLiteral("Settings/VerticalSplitterState");
const QString keyPathProject = QStringLiteral("Settings/PathProject");

// New documents are numbered across all windows of the process.
int nextNewDocumentNumber()
{
    static int counter = 0;
    return ++counter;
}

bool isDebugMode()
{
    const MainWindow *main = MainWindow::instance();
    return main && main->isDebugMode();
}

bool isAnalysisShown()
{
    return isDebugMode() || qEnvironmentVariable("USERNAME") == QLatin1String("quorlan");
}

} // namespace

DocumentWindow::DocumentWindow(Document::Mode mode, QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    m_document = new Document(this);
    // Here somebody can read why a file didn't open.
    m_document->setShowMessageBoxes(true);
    createForm();

    connect(m_document, &Document::modeChanged, this, &DocumentWindow::documentModeChanged);
    connect(m_document, &Document::modifiedChanged, this, &DocumentWindow::documentWasModified);
    connect(m_document->mesh(), &Mesh::meshModifiedChanged, this, &DocumentWindow::aboutToUpdateTitle);
    for (auto signal : {&Document::dataSimulationChanged, &Document::createMotorGeometryStarted,
                        &Document::createMotorGeometryFinished})
        connect(m_document, signal, this, &DocumentWindow::aboutToUpdateUI);
    connect(m_document, &Document::readonlyChanged, this, &DocumentWindow::aboutToUpdateUI);
    connect(m_document, &Document::slaveChanged, this, &DocumentWindow::aboutToUpdateUI);
    connect(m_document->undoStack(), &QUndoStack::canUndoChanged, this, &DocumentWindow::aboutToUpdateUI);
    connect(m_document->undoStack(), &QUndoStack::canRedoChanged, this, &DocumentWindow::aboutToUpdateUI);
    connect(m_document, &Document::documentLoaded, this, &DocumentWindow::documentReady);
    connect(m_document, &Document::createMotorGeometryFinished, this, &DocumentWindow::updateEditorExclamation);
    connect(m_document->winding(), &WindingObject::windingErrorsChanged, this, &DocumentWindow::updateEditorExclamation);
    connect(m_document->mesh(), &Mesh::meshErrorsChanged, this, &DocumentWindow::updateEditorExclamation);
    connect(m_document->analysis(), &MagnetostaticAnalysis::dataSimulationChanged, this,
            &DocumentWindow::aboutToUpdateUI);
    connect(m_document->analysis(), &MagnetostaticAnalysis::resultsChanged, this, &DocumentWindow::aboutToUpdateUI);
    connectAnalysisOverlay();

    if (mode != Document::UnknownMode)
        m_document->setMode(mode);
}

DocumentWindow::~DocumentWindow()
{
    // The views' workers read the document: they go first.
    delete m_viewers;
}

void DocumentWindow::createForm()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_splitterHorizontal = new QSplitter(Qt::Horizontal, this);
    m_splitterHorizontal->setObjectName(QStringLiteral("splitterHorizontal"));
    m_toolBoxEditors = new QToolBox(m_splitterHorizontal);
    m_toolBoxEditors->setObjectName(QStringLiteral("toolBoxEditors"));
    m_splitterVertical = new QSplitter(Qt::Vertical, m_splitterHorizontal);
    m_splitterVertical->setObjectName(QStringLiteral("splitterVertical"));
    auto *frameViewer = new QFrame(m_splitterVertical);
    frameViewer->setObjectName(QStringLiteral("frameViewer"));
    frameViewer->setFrameShape(QFrame::NoFrame);
    auto *viewerLayout = new QVBoxLayout(frameViewer);
    viewerLayout->setContentsMargins(0, 0, 0, 0);
    m_viewers = new QStackedWidget(frameViewer);
    m_viewers->setObjectName(QStringLiteral("stackedViewers"));
    viewerLayout->addWidget(m_viewers);
    createViewers();
    createConsole(new QWidget(m_splitterVertical));
    layout->addWidget(m_splitterHorizontal);

    addEditorPage("editorGeometry", tr("Geometry Editor"), QStringLiteral(":/geometry.png"), Document::GeometryMotor,
                  [this](QWidget *page) { return new MotorGeometryEditor(m_document, page); });
    addEditorPage("editorWinding", tr("Winding Editor"), QStringLiteral(":/winding.png"), Document::Winding,
                  [this](QWidget *page) { return new WindingEditor(m_document, page); });
    addEditorPage("editorMesh", tr("Mesh Editor"), QStringLiteral(":/mesh.png"), Document::Mesh2D,
                  [this](QWidget *page) {
                      auto *editor = new MeshEditor(m_document, page);
                      connect(m_meshPage->meshViewer(), &MeshViewer::countsChanged, editor, &MeshEditor::showCounts);
                      return editor;
                  });
    if (isAnalysisShown()) {
        addEditorPage("editorMagnetostaticFEA", tr("Magnetostatic Analysis"), QStringLiteral(":/MatLab.png"),
                      Document::AnalysisMagnetostatic,
                      [this](QWidget *page) { return new MagnetostaticEditor(m_document, page); });
        m_toolBoxEditors->setItemToolTip(m_pageModes.size() - 1, tr("Finite Element Analysis Magnetostatic"));
    }
    connect(m_toolBoxEditors, &QToolBox::currentChanged, this, &DocumentWindow::toolBoxPageChanged);

    // A first start shows no console.
    const QSettings settings;
    if (!m_splitterHorizontal->restoreState(settings.value(keyHorizontalSplitter).toByteArray()))
        m_splitterHorizontal->setSizes({100, 400});
    if (!m_splitterVertical->restoreState(settings.value(keyVerticalSplitter).toByteArray()))
        m_splitterVertical->setSizes({400, 0});
}

void DocumentWindow::createConsole(QWidget *widgetConsole)
{
    widgetConsole->setObjectName(QStringLiteral("widgetConsole"));
    auto *grid = new QGridLayout(widgetConsole);
    grid->setSpacing(1);
    grid->setContentsMargins(0, 0, 0, 0);

    auto *caption = new QWidget(widgetConsole);
    caption->setObjectName(QStringLiteral("widgetCaption"));
    // The bar's controls may be cut on a narrow window; they never widen it.
    caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *row = new QHBoxLayout(caption);
    row->setSpacing(6);
    row->setContentsMargins(4, 2, 4, 2);
    row->addWidget(new QLabel(tr("Console"), caption));
    row->addWidget(new QLabel(tr("Filter:"), caption));
    m_comboBoxConsole = new QComboBox(caption);
    m_comboBoxConsole->setObjectName(QStringLiteral("comboBoxConsole"));
    m_comboBoxConsole->addItem(tr("All"), int(ScriptConsole::All));
    m_comboBoxConsole->insertSeparator(1);
    const struct {
        ScriptConsole::Scope scope;
        QString text;
    } scopes[] = {{ScriptConsole::Motor, tr("Geometry")},
                  {ScriptConsole::Stator, tr("Geometry (stator editor)")},
                  {ScriptConsole::Rotor, tr("Geometry (rotor editor)")},
                  {ScriptConsole::Winding, tr("Winding")},
                  {ScriptConsole::Mesh, tr("Mesh")},
                  {ScriptConsole::Magnitostatic, tr("Magnetostatic")}};
    for (const auto &scope : scopes)
        m_comboBoxConsole->addItem(scope.text, int(scope.scope));
    row->addWidget(m_comboBoxConsole);
    const auto addLine = [caption, row](const char *name) {
        auto *line = new QFrame(caption);
        line->setObjectName(QLatin1String(name));
        line->setFrameShape(QFrame::VLine);
        line->setFrameShadow(QFrame::Sunken);
        row->addWidget(line);
    };
    addLine("vertLine");

    m_console = new ConsoleWidget(widgetConsole);
    m_console->setObjectName(QStringLiteral("viewerConsole"));
    const struct {
        const char *name;
        const char *icon;
        qint32 kind;
        void (ConsoleWidget::*counter)(int);
        const char *text;
    } buttons[] = {
        {"buttonErrors", ":/status-error.png", ConsoleContentModel::ErrorKind, &ConsoleWidget::errorsChanged,
         QT_TR_NOOP("%1 Error(s)")},
        {"buttonWarnings", ":/status-warn.png", ConsoleContentModel::WarningKind, &ConsoleWidget::warningsChanged,
         QT_TR_NOOP("%1 Warning(s)")},
        {"buttonInformations", ":/status-info.png", ConsoleContentModel::InformationKind,
         &ConsoleWidget::informationsChanged, QT_TR_NOOP("%1 Information(s)")},
        {"buttonLogs", ":/bug.png", ConsoleContentModel::LogKind, &ConsoleWidget::logsChanged, QT_TR_NOOP("%1 Log(s)")},
    };
    for (const auto &spec : buttons) {
        auto *button = new QPushButton(QIcon(QLatin1String(spec.icon)), tr(spec.text).arg(0), caption);
        button->setObjectName(QLatin1String(spec.name));
        button->setCheckable(true);
        button->setChecked(true);
        button->setFlat(true);
        row->addWidget(button);
        const qint32 kind = spec.kind;
        const char *text = spec.text;
        connect(button, &QPushButton::clicked, m_console,
                [this, kind](bool on) { m_console->setKindVisible(kind, on); });
        connect(m_console, spec.counter, button, [button, text](int count) {
            button->setText(tr(text).arg(count));
            button->setEnabled(count != 0);
        });
        if (kind != ConsoleContentModel::LogKind)
            button->setEnabled(false);
        else
            m_buttonLogs = button;
    }
    addLine("vertLine_2");
    auto *actionClear = new QAction(QIcon(QStringLiteral(":/console-clear.png")), tr("Clear"), this);
    actionClear->setObjectName(QStringLiteral("actionClearConsole"));
    auto *buttonClear = new QToolButton(caption);
    buttonClear->setObjectName(QStringLiteral("buttonClearConsole"));
    buttonClear->setDefaultAction(actionClear);
    buttonClear->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    buttonClear->setToolTip(tr("Clear Console Window"));
    row->addWidget(buttonClear);
    row->addStretch();
    auto *buttonClose = new QToolButton(caption);
    buttonClose->setObjectName(QStringLiteral("buttonCloseConsole"));
    buttonClose->setIcon(QIcon(QStringLiteral(":/close.png")));
    buttonClose->setAutoRaise(true);
    row->addWidget(buttonClose);

    auto *labelPrompt = new QLabel(QStringLiteral(" >"), widgetConsole);
    labelPrompt->setObjectName(QStringLiteral("labelPrompt"));
    labelPrompt->hide();
    auto *editCommand = new QLineEdit(widgetConsole);
    editCommand->setObjectName(QStringLiteral("editCommand"));
    editCommand->setFrame(false);
    editCommand->hide();
    grid->addWidget(caption, 0, 0, 1, 2);
    grid->addWidget(m_console, 1, 0, 1, 2);
    grid->addWidget(labelPrompt, 2, 0);
    grid->addWidget(editCommand, 2, 1);

    connect(m_comboBoxConsole, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        m_console->setScopes(ScriptConsole::Scopes(m_comboBoxConsole->itemData(index).toInt()));
    });
    connect(actionClear, &QAction::triggered, m_console, &ConsoleWidget::clear);
    connect(buttonClose, &QToolButton::clicked, this, [this] {
        QList<int> sizes = m_splitterVertical->sizes();
        if (sizes.value(1) != 0) {
            sizes[0] += sizes[1];
            sizes[1] = 0;
            m_splitterVertical->setSizes(sizes);
        }
    });

    m_consoleModel = new ConsoleContentModel(this);
    for (ScriptConsole *console : {m_document->console(), m_document->rotor()->console(),
                                   m_document->stator()->console(), m_document->winding()->console(),
                                   m_document->mesh()->console(), m_document->analysis()->console()})
        m_consoleModel->attach(console);
    m_console->setSourceModel(m_consoleModel);
    showLogs(isDebugMode());
    if (const MainWindow *main = MainWindow::instance())
        connect(main, &MainWindow::debugModeChanged, this, &DocumentWindow::showLogs);
}

// A console that shows one scope moves to the scope of the page.
void DocumentWindow::followModeInConsole(Document::Mode mode)
{
    const int shown = m_comboBoxConsole->currentData().toInt();
    if (shown == ScriptConsole::All || shown == ScriptConsole::Empty)
        return;
    static const QHash<Document::Mode, ScriptConsole::Scope> scopeOfMode{
        {Document::GeometryMotor, ScriptConsole::Motor},
        {Document::GeometryStator, ScriptConsole::Stator},
        {Document::GeometryRotor, ScriptConsole::Rotor},
        {Document::Winding, ScriptConsole::Winding},
        {Document::Mesh2D, ScriptConsole::Mesh},
        {Document::Mesh3D, ScriptConsole::Mesh},
        {Document::AnalysisMagnetostatic, ScriptConsole::Magnitostatic}};
    if (!scopeOfMode.contains(mode)) {
        qCritical() << "Can't found scope for" << mode;
        return;
    }
    m_comboBoxConsole->setCurrentIndex(m_comboBoxConsole->findData(int(scopeOfMode.value(mode))));
}

void DocumentWindow::showLogs(bool debugMode)
{
    m_console->setKindVisible(ConsoleContentModel::LogKind, debugMode && m_buttonLogs->isChecked());
    m_buttonLogs->setVisible(debugMode);
}

void DocumentWindow::createViewers()
{
    auto *blank = new QLabel(m_viewers);
    blank->setAlignment(Qt::AlignCenter);
    m_viewers->addWidget(blank);
    auto *windingPage = new WindingPageViewer(m_document, m_viewers);
    m_viewers->addWidget(windingPage);
    m_pageOfMode.insert(Document::Winding, windingPage);
    m_meshPage = new MeshPageViewer(m_document, m_viewers);
    m_viewers->addWidget(m_meshPage);
    m_pageOfMode.insert(Document::Mesh2D, m_meshPage);
    m_pageOfMode.insert(Document::Mesh3D, m_meshPage);
    connect(m_meshPage, &PageViewer::aboutToUpdateUI, this, &DocumentWindow::aboutToUpdateUI);
    if (isAnalysisShown()) {
        auto *analysis = new MagnetostaticPageViewer(m_document, m_viewers);
        m_viewers->addWidget(analysis);
        m_pageOfMode.insert(Document::AnalysisMagnetostatic, analysis);
    }
    if (!occ::View::isAvailable()) {
        blank->setText(tr("The 3D view needs an X display."));
        return;
    }
    const auto addViewer = [this](GeometryScene *scene, const char *name, Document::Mode mode) {
        auto *page = new QSplitter(Qt::Horizontal, m_viewers);
        auto *viewer = new GeometryViewer(scene, page);
        viewer->setObjectName(QLatin1String(name));
        page->addWidget(viewer);
        page->addWidget(new MaterialsPanel(m_document, scene, page));
        page->setStretchFactor(0, 1);
        page->setSizes({4 * m_viewers->width() / 5, m_viewers->width() / 5});
        m_viewers->addWidget(page);
        m_viewerOfMode.insert(mode, viewer);
        m_pageOfMode.insert(mode, page);
        addModifiedLabel(viewer);
        connect(viewer, &occ::View::zoomAutoFitChanged, this, &DocumentWindow::aboutToUpdateUI);
    };
    addViewer(new MotorGeometryScene(m_document), "viewerMotor", Document::GeometryMotor);
    addViewer(new StatorGeometryScene(m_document), "viewerStator", Document::GeometryStator);
    addViewer(new RotorGeometryScene(m_document), "viewerRotor", Document::GeometryRotor);

    for (MotorElement *element : {static_cast<MotorElement *>(m_document->stator()),
                                  static_cast<MotorElement *>(m_document->rotor())})
        connect(element, &MotorElement::geometryErrorsChanged, this, &DocumentWindow::showViewerMessages);
    connect(m_document, &Document::createMotorGeometryFinished, this, &DocumentWindow::showViewerMessages);
    connect(m_document->winding(), &WindingObject::windingWarningsChanged, this, &DocumentWindow::showViewerMessages);
    // Drawing the machine makes its end winding.
    GeometryViewer *motor = viewer(Document::GeometryMotor);
    connect(motor, &GeometryViewer::warningLinkActivated, motor->scene(), [motor](const QString &link) {
        if (link == QLatin1String("generate"))
            motor->scene()->applyChanges();
    });
    showViewerMessages();
}

void DocumentWindow::showViewerMessages()
{
    const auto errorsOf = [](const MotorElement *element) {
        QStringList lines{element->geometryErrorText(), element->scriptErrorText()};
        lines.removeAll(QString());
        return lines;
    };
    const QStringList stator = errorsOf(m_document->stator());
    const QStringList rotor = errorsOf(m_document->rotor());
    viewer(Document::GeometryMotor)->setErrorText((stator + rotor).join(QLatin1Char('\n')));
    viewer(Document::GeometryMotor)->setWarningText(m_document->winding()->windingWarningsText(true));
    viewer(Document::GeometryStator)->setErrorText(stator.join(QLatin1Char('\n')));
    viewer(Document::GeometryRotor)->setErrorText(rotor.join(QLatin1Char('\n')));
}

void DocumentWindow::addModifiedLabel(GeometryViewer *viewer)
{
    GeometryScene *scene = viewer->scene();
    auto *label = new ModifiedFadeLabel(viewer);
    static_cast<QVBoxLayout *>(viewer->layout())->insertWidget(0, label, 0, Qt::AlignHCenter);
    connect(label, &ModifiedFadeLabel::buttonClicked, scene, &GeometryScene::applyChanges);
    connect(scene, &GeometryScene::outOfDateChanged, label, &QWidget::setVisible);
    MainWindow *main = MainWindow::instance();
    if (!main) {
        connect(label, &ModifiedFadeLabel::rightAwayToggled, scene, &GeometryScene::setApplyRightAway);
        label->setRightAway(true);
        return;
    }
    // One choice for every view of every document: the main window keeps it.
    label->setRightAway(main->rightAwayApplyChangesGeometry());
    scene->setApplyRightAway(main->rightAwayApplyChangesGeometry());
    connect(label, &ModifiedFadeLabel::rightAwayToggled, main, &MainWindow::setRightAwayApplyChangesGeometry);
    connect(main, &MainWindow::rightAwayApplyChangesGeometryChanged, label, &ModifiedFadeLabel::setRightAway);
    connect(main, &MainWindow::rightAwayApplyChangesGeometryChanged, scene, &GeometryScene::setApplyRightAway);
}

void DocumentWindow::showViewerOf(Document::Mode mode)
{
    QWidget *page = m_pageOfMode.value(mode);
    m_viewers->setCurrentWidget(page ? page : m_viewers->widget(0));
}

GeometryViewer *DocumentWindow::viewer(Document::Mode mode) const
{
    return m_viewerOfMode.value(mode);
}

ZoomableView *DocumentWindow::zoomableView(Document::Mode mode) const
{
    if (GeometryViewer *shown = viewer(mode))
        return shown;
    if (auto *page = qobject_cast<PageViewer *>(m_pageOfMode.value(mode)))
        return page->zoomableView();
    return nullptr;
}

void DocumentWindow::addEditorPage(const char *name, const QString &text, const QString &icon, Document::Mode mode,
                                   const std::function<QWidget *(QWidget *)> &makeEditor)
{
    auto *page = new QWidget(m_toolBoxEditors);
    page->setObjectName(QLatin1String(name));
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    QWidget *editor = makeEditor(page);
    layout->addWidget(editor);
    m_toolBoxEditors->addItem(page, QIcon(icon), text);
    m_pageIcons.append(icon);
    // The tool box scrolls a long page; it is as wide as the editors' rows need, up to a
    // third of a usual screen, beyond which a page scrolls sideways too.
    const int width = editor->minimumSizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 8;
    m_toolBoxEditors->setMinimumWidth(qMin(qMax(m_toolBoxEditors->minimumWidth(), width), 420));
    m_pageModes.append(mode);
}

bool DocumentWindow::pageHasErrors(Document::Mode mode) const
{
    switch (mode) {
    case Document::GeometryMotor:
        return !m_document->stator()->scriptErrorText().isEmpty() || !m_document->rotor()->scriptErrorText().isEmpty()
               || m_document->hasGeometryErrors() || m_document->hasMaterialErrors();
    case Document::Winding:
        return m_document->winding()->windingErrors() != WindingErrors();
    case Document::Mesh2D:
        return m_document->mesh()->meshErrors() != MeshErrors();
    default:
        return false;
    }
}

void DocumentWindow::updateEditorExclamation()
{
    for (int index = 0; index < m_pageModes.size(); ++index) {
        const bool errors = pageHasErrors(m_pageModes.at(index));
        QIcon icon(m_pageIcons.at(index));
        if (errors) {
            QPixmap marked(16, 16);
            marked.fill(Qt::transparent);
            QPainter painter(&marked);
            painter.drawPixmap(marked.rect(), icon.pixmap(16, 16));
            painter.drawPixmap(marked.rect(), QPixmap(QStringLiteral(":/exclamation.png")));
            painter.end();
            icon = QIcon(marked);
        }
        m_toolBoxEditors->setItemIcon(index, icon);
        m_toolBoxEditors->setItemToolTip(index, errors ? tr("Editor contains erroneous settings") : QString());
    }
}

void DocumentWindow::documentModeChanged(Document::Mode mode)
{
    if (m_document->isProtectedFile())
        return;
    showViewerOf(mode);
    Document::Mode pageMode = mode;
    if (mode == Document::GeometryStator || mode == Document::GeometryRotor)
        pageMode = Document::GeometryMotor;
    else if (mode == Document::Mesh3D)
        pageMode = Document::Mesh2D;
    const int index = m_pageModes.indexOf(pageMode);
    if (index >= 0) {
        const QSignalBlocker blocker(m_toolBoxEditors);
        m_toolBoxEditors->setCurrentIndex(index);
    }
    QString geometryText = tr("Geometry Editor");
    if (mode == Document::GeometryStator)
        geometryText = tr("Geometry Editor (Stator)");
    else if (mode == Document::GeometryRotor)
        geometryText = tr("Geometry Editor (Rotor)");
    m_toolBoxEditors->setItemText(0, geometryText);
    followModeInConsole(mode);
    emit aboutToUpdateUI();
}

void DocumentWindow::toolBoxPageChanged(int index)
{
    const Document::Mode mode = m_pageModes.value(index, Document::UnknownMode);
    const Document::Mode current = m_document->mode();
    if (mode == Document::Mesh2D && (current == Document::Mesh2D || current == Document::Mesh3D))
        return;
    if (mode != Document::UnknownMode)
        m_document->setMode(mode);
}

void DocumentWindow::documentReady()
{
    if (m_document->isProtectedFile()) {
        m_splitterHorizontal->hide();
        auto *banner = new ProtectedBanner(m_document->previewImage(), m_document->isSlave(), this);
        layout()->addWidget(banner);
        if (m_document->isSlave()) {
            connect(banner, &QLabel::linkActivated, this, [] {
                if (MainWindow *main = MainWindow::instance())
                    main->close();
            });
        }
        return;
    }
    if (!m_deferredPreparation)
        prepareData();
    m_deferredPreparation = false;
    updateEditorExclamation();
    m_document->setPreparing(false);
    m_document->setModified(false);
    documentModeChanged(m_document->mode());
}

void DocumentWindow::prepareData()
{
    QWidget *page = m_viewers->currentWidget();
    page->hide();
    const GlassWidget overlay(tr("Preparing..."), this);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_document->ensureData();
    page->show();
}

bool DocumentWindow::load(const QString &path, Document::Mode mode)
{
    m_document->start();
    if (!m_document->load(path))
        return false;
    if (!m_document->isReadonly() && !m_document->isProtectedFile() && !m_fileLock.lock(path)) {
        MessageBox::information(
            this, QCoreApplication::applicationName(),
            tr("%1 is open for editing in another window of the program (process %2).\n"
               "It is opened here view only: close it there to change it here.")
                .arg(QDir::toNativeSeparators(path))
                .arg(m_fileLock.holderProcess()));
        m_document->setReadonly(true);
    }
    makeFileCurrent(path);
    if (mode != Document::UnknownMode)
        m_document->setMode(mode);
    m_document->setModified(false);
    return true;
}

void DocumentWindow::newDocument()
{
    m_newFile = true;
    m_deferredPreparation = true;
    m_document->setFilePath(QStringLiteral("new_motor_%1.%2").arg(nextNewDocumentNumber()).arg(zvaSuffix()));
    m_document->markAsMade();
    m_document->setModified(false);
    updateTab();
}

void DocumentWindow::makeFileCurrent(const QString &path)
{
    QString canonical = QFileInfo(path).canonicalFilePath();
    const QString protectedEnd = QLatin1Char('.') + zvapSuffix();
    if (canonical.endsWith(protectedEnd, Qt::CaseInsensitive))
        canonical = canonical.left(canonical.size() - protectedEnd.size()) + QLatin1Char('.') + zvaSuffix();
    m_document->setFilePath(canonical);
    m_newFile = false;
    m_document->setModified(false);
    setWindowModified(false);
    updateTab();
}

void DocumentWindow::updateTab()
{
    QString title = QFileInfo(m_document->filePath()).completeBaseName();
    if (m_document->isModified())
        title.prepend(QStringLiteral("● "));
    setWindowTitle(title);
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->setToolTip(m_document->filePath());
}

void DocumentWindow::documentWasModified()
{
    setWindowModified(m_document->isModified());
    updateTab();
    emit aboutToUpdateTitle();
    emit aboutToUpdateUI();
}

bool DocumentWindow::save()
{
    return m_newFile ? saveAs() : saveToPath(m_document->filePath());
}

void DocumentWindow::connectAnalysisOverlay()
{
    MagnetostaticAnalysis *analysis = m_document->analysis();
    connect(analysis, &MagnetostaticAnalysis::analysisStarted, this, [this] {
        delete m_overlay;
        m_overlay = new GlassWidget(tr("Analysis running..."), this);
        QPushButton *stop = m_overlay->addButton(tr("Stop analysis"));
        stop->setObjectName(QStringLiteral("buttonStopAnalysis"));
        connect(stop, &QPushButton::clicked, m_document->analysis(), &MagnetostaticAnalysis::stop);
        updateTab();
        emit aboutToUpdateUI();
    });
    connect(analysis, &MagnetostaticAnalysis::analysisProgressMessage, this, [this](const QString &text) {
        if (m_overlay)
            m_overlay->setNote(text);
    });
    connect(analysis, &MagnetostaticAnalysis::analysisProgress, this, [this](const QString &text) {
        if (m_overlay)
            m_overlay->setStatus(text);
    });
    connect(analysis, &MagnetostaticAnalysis::analysisStoped, this, [this] {
        delete m_overlay;
        updateTab();
        emit aboutToUpdateUI();
        if (m_closeAfterRun)
            QTimer::singleShot(0, this, &QWidget::close);
    });
}

void DocumentWindow::runAnalysis()
{
    if (save())
        m_document->analysis()->run();
}

bool DocumentWindow::saveToPath(const QString &path)
{
    const QString title = QCoreApplication::applicationName();
    const QFileInfo info(path);
    if (info.exists() && !info.isWritable()) {
        const auto answer = MessageBox::question(
            this, title,
            tr("<b>File %1 is write protected.\nAllow writing to the file and continue?</b>")
                .arg(QDir::toNativeSeparators(path)));
        if (answer != QMessageBox::Yes)
            return true;
        QFile file(path);
        if (!file.setPermissions(file.permissions() | QFileDevice::WriteUser)) {
            MessageBox::critical(this, title,
                                 tr("Can't set write permission for file %1.").arg(QDir::toNativeSeparators(path)));
            return false;
        }
    }

    // Another window may have the target open: writing over it there would lose its work.
    DesignFileLock targetLock;
    const bool sameDesign = m_fileLock.isLocked() && QFileInfo(path).canonicalFilePath() == m_fileLock.designPath();
    if (!sameDesign && !targetLock.lock(path)) {
        MessageBox::warning(this, title,
                            tr("Can't write file %1: it is open for editing in another window of the program.")
                                .arg(QDir::toNativeSeparators(path)));
        return false;
    }

    QApplication::setOverrideCursor(Qt::WaitCursor);
    bool saved = true;
    if (info.suffix().toLower() == zvapSuffix()) {
        const QImage picture;
        saved = m_document->save(path, &picture);
    } else if (m_document->isModified() || m_document->modeChangedSinceSave()) {
        saved = m_document->save(path, nullptr);
    }
    QApplication::restoreOverrideCursor();
    if (!saved) {
        MessageBox::warning(this, title, tr("Can't write file %1.").arg(QDir::toNativeSeparators(path)));
        return false;
    }
    if (!sameDesign)
        m_fileLock = std::move(targetLock);
    makeFileCurrent(path);
    return true;
}

bool DocumentWindow::saveAs()
{
    QString proposal = m_document->filePath();
    if (QFileInfo(proposal).path() == QLatin1String(".")) {
        QSettings settings;
        settings.remove(QStringLiteral("PathProject"));
        QString folder = settings.value(keyPathProject).toString();
        if (folder.isEmpty())
            folder = FileDialog::rootPath();
        if (!folder.isEmpty())
            folder += QDir::separator();
        proposal = folder + QFileInfo(proposal).completeBaseName();
    }
    const QString filter = tr("%1 file (*.%2)").arg(QCoreApplication::applicationName(), zvaSuffix());
    QString path = FileDialog::getSaveFileName(this, tr("Save As"), proposal, filter);
    if (path.isEmpty())
        return false;
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != zvaSuffix() && suffix != zvapSuffix())
        path += QLatin1Char('.') + zvaSuffix();
    QSettings().setValue(keyPathProject, QFileInfo(path).absolutePath());
    {
        // A save under a new name writes even an unchanged design.
        const QSignalBlocker blocker(m_document);
        m_document->setModified(true);
    }
    return saveToPath(path);
}

bool DocumentWindow::exportToJSON(const QString &name)
{
    const ExportRecipe recipe{QStringLiteral("Settings/PathExportJSON"), QStringLiteral("/SimFiles"),
                              tr("JSON file (*.json)"), tr("Export to JSON"), QStringLiteral(".json"), QString()};
    return exportFile(recipe, name, [this](const QString &path) { return m_document->exportToJson(path); });
}

bool DocumentWindow::exportToMAT(const QString &name)
{
    const ExportRecipe recipe{QStringLiteral("Settings/PathExportMAT"), QStringLiteral("/SimFiles"),
                              tr("MAT file (*.mat)"), tr("Export to MAT"), QStringLiteral(".mat"), QString()};
    return exportFile(recipe, name, [this](const QString &path) { return m_document->writeExchangeFile(path); });
}

bool DocumentWindow::exportToSTEP(const QString &name)
{
    GeometryViewer *shown = viewer(m_document->mode());
    if (!shown)
        return false;
    static const QHash<Document::Mode, QString> nameSuffix{{Document::GeometryStator, QStringLiteral("_stator")},
                                                            {Document::GeometryRotor, QStringLiteral("_rotor")},
                                                            {Document::Winding, QStringLiteral("_winding")}};
    const ExportRecipe recipe{QStringLiteral("Settings/PathExportSTEP"), QStringLiteral("/STEP"),
                              tr("STEP file (*.step)"), tr("Export to STEP"), QStringLiteral(".step"),
                              nameSuffix.value(m_document->mode())};
    return exportFile(recipe, name, [shown](const QString &path) { return shown->scene()->exportToSTEP(path); });
}

bool DocumentWindow::exportFile(const ExportRecipe &recipe, const QString &name,
                                const std::function<bool(const QString &)> &write)
{
    QSettings settings;
    const QString stored = settings.value(recipe.settingsKey).toString();
    QString folder = stored;
    if (folder.isEmpty()) {
        folder = FileDialog::rootPath() + recipe.folderBelowRoot;
        QDir().mkpath(folder);
    }
    const QString base = name.isEmpty() ? m_document->filePath() : name;
    const QString proposal = folder + (stored.isEmpty() ? QString() : QString(QDir::separator()))
                             + QFileInfo(base).completeBaseName() + recipe.nameSuffix;
    QString path = FileDialog::getSaveFileName(this, recipe.title, proposal, recipe.filter);
    if (path.isEmpty())
        return false;
    settings.setValue(recipe.settingsKey, QFileInfo(path).absolutePath());
    if (QLatin1Char('.') + QFileInfo(path).suffix().toLower() != recipe.forcedSuffix)
        path += recipe.forcedSuffix;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool written = write(path);
    QApplication::restoreOverrideCursor();
    if (!written) {
        MessageBox::warning(this, QCoreApplication::applicationName(),
                            tr("Cannot write file %1.").arg(QDir::toNativeSeparators(path)));
        return false;
    }
    return true;
}

QString DocumentWindow::mimeType(Element element)
{
    switch (element) {
    case StatorElement:
        return QStringLiteral("application/zolvane-ds-stator");
    case RotorElement:
        return QStringLiteral("application/zolvane-ds-rotor");
    case WindingElement:
        return QStringLiteral("application/zolvane-ds-windings");
    case MeshElement:
        return QStringLiteral("application/zolvane-ds-mesh");
    }
    return QString();
}

QObject *DocumentWindow::element(Element element) const
{
    switch (element) {
    case StatorElement:
        return m_document->stator();
    case RotorElement:
        return m_document->rotor();
    case WindingElement:
        return m_document->winding();
    case MeshElement:
        return m_document->mesh();
    }
    return nullptr;
}

void DocumentWindow::copyProperties(Element which) const
{
    const QVariantMap properties = element(which)->property("properties").toMap();
    auto *data = new QMimeData;
    data->setData(mimeType(which), QJsonDocument(QJsonObject::fromVariantMap(properties)).toJson());
    QApplication::clipboard()->setMimeData(data);
}

void DocumentWindow::pasteProperties(Element which)
{
    const QMimeData *data = QApplication::clipboard()->mimeData();
    if (!data || !data->hasFormat(mimeType(which)))
        return;
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(data->data(mimeType(which)), &error);
    if (error.error != QJsonParseError::NoError)
        return;
    const QVariantMap map = json.object().toVariantMap();
    qDebug() << "Paste properties" << map;
    QObject *target = element(which);
    // Equal properties would only add a step that changes nothing.
    if (map == target->property("properties").toMap())
        return;
    m_document->execCommand(new CommandSetPropertyObject(target, "properties", map));
}

void DocumentWindow::zoomIn()
{
    if (ZoomableView *shown = zoomableView(m_document->mode()))
        shown->zoomIn();
}

void DocumentWindow::zoomOut()
{
    if (ZoomableView *shown = zoomableView(m_document->mode()))
        shown->zoomOut();
}

void DocumentWindow::setZoomAutoFit(bool on)
{
    if (ZoomableView *shown = zoomableView(m_document->mode()))
        shown->setAutoFit(on);
}

void DocumentWindow::undo()
{
    m_document->undo();
}

void DocumentWindow::redo()
{
    m_document->redo();
}

bool DocumentWindow::canUndo() const
{
    return m_document->undoStack()->canUndo() && !m_document->isReadonly()
           && !m_document->isLockedBySimulationData();
}

bool DocumentWindow::canRedo() const
{
    return m_document->undoStack()->canRedo() && !m_document->isReadonly()
           && !m_document->isLockedBySimulationData();
}

void DocumentWindow::closeEvent(QCloseEvent *event)
{
    // The run holds the document until its steps end: the window closes after it.
    MagnetostaticAnalysis *analysis = m_document->analysis();
    if (analysis->isRunning()) {
        event->ignore();
        const auto answer = MessageBox::question(
            this, QCoreApplication::applicationName(),
            tr("<b>The analysis of '%1' is running.\nStop it and close the design?</b>")
                .arg(QFileInfo(m_document->filePath()).completeBaseName()));
        if (answer != QMessageBox::Yes)
            return;
        m_closeAfterRun = true;
        analysis->stop();
        return;
    }
    bool close = true;
    if (m_document->isModified()) {
        const auto answer = MessageBox::warning(
            this, QCoreApplication::applicationName(),
            tr("<b>'%1' has been modified.\nDo you want to save your changes?</b>")
                .arg(QFileInfo(m_document->filePath()).completeBaseName()),
            QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        if (answer == QMessageBox::Cancel)
            close = false;
        else if (answer == QMessageBox::Save)
            close = save();
    } else if (m_document->modeChangedSinceSave() && !m_newFile) {
        close = saveToPath(m_document->filePath());
    }
    if (!close) {
        event->ignore();
        return;
    }
    QSettings settings;
    settings.setValue(keyHorizontalSplitter, m_splitterHorizontal->saveState());
    settings.setValue(keyVerticalSplitter, m_splitterVertical->saveState());
    event->accept();
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget())) {
        if (QMdiArea *area = sub->mdiArea())
            area->activatePreviousSubWindow();
    }
}
