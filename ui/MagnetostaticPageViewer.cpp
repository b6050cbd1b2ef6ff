#include "ui/MagnetostaticPageViewer.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QSplitter>

#include "analysis/MagnetostaticAnalysis.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "ui/MagnetostaticControlWidget.h"
#include "ui/MagnetostaticResultWidget.h"
#include "ui/TimePlotView.h"

MagnetostaticView::MagnetostaticView(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_results(new MagnetostaticResultWidget(document))
    , m_timePlots(new TimePlotView)
{
    setObjectName(QStringLiteral("MagnetostaticView"));
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    auto *scroll = new QScrollArea(splitter);
    scroll->setWidgetResizable(true);
    scroll->setWidget(m_results);
    splitter->addWidget(scroll);
    splitter->addWidget(m_timePlots);
    splitter->setStretchFactor(1, 1);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
}

MagnetostaticPageViewer::MagnetostaticPageViewer(Document *document, QWidget *parent)
    : PageViewer(QStringLiteral("MagnetostaticPageViewer"), parent)
    , m_document(document)
    , m_view(new MagnetostaticView(document))
    , m_control(new MagnetostaticControlWidget(document))
{
    viewLayout()->addWidget(m_view);
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setWidget(m_control);
    controlLayout()->addWidget(scroll);
    connect(m_control, &MagnetostaticControlWidget::timePlotRequested, this, &MagnetostaticPageViewer::plotTime);
    restoreSplitterState();
}

void MagnetostaticPageViewer::plotTime()
{
    MagnetostaticAnalysis *analysis = m_document->analysis();
    const QStringList errors = m_view->timePlots()->plot(analysis->solverOutput(QStringLiteral("Timesteppingdata")),
                                                         m_control->timePlot()->checkedRows(),
                                                         m_control->timePlotOptions());
    for (const QString &error : errors)
        analysis->console()->error(error);
}
