#include "ui/MeshPageViewer.h"

#include <QGridLayout>
#include <QLabel>
#include <QTabWidget>

#include "document/Document.h"
#include "ui/MeshViewer.h"
#include "ui/RuleZoomViewer.h"

MeshPageViewer::MeshPageViewer(Document *document, QWidget *parent)
    : PageViewer(QStringLiteral("MeshPageViewer"), parent)
    , m_tabs(new QTabWidget)
    , m_meshViewer(new MeshViewer(document))
{
    m_tabs->setObjectName(QStringLiteral("tabWidgetMesh"));
    m_tabs->addTab(m_meshViewer, tr("2D mesh"));
    auto *volume = new QLabel(tr("The 3D mesh is made with the exchange file's export; it has no view yet."));
    volume->setAlignment(Qt::AlignCenter);
    volume->setWordWrap(true);
    m_tabs->addTab(volume, tr("3D mesh"));
    viewLayout()->addWidget(m_tabs);
    controlLayout()->addWidget(m_meshViewer->switches());

    connect(m_tabs, &QTabWidget::currentChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_meshViewer->view(), &RuleZoomViewer::zoomAutoFitChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_meshViewer->view(), &RuleZoomViewer::scaleChanged, this, &PageViewer::aboutToUpdateUI);
    restoreSplitterState();
}

ZoomableView *MeshPageViewer::zoomableView()
{
    if (m_tabs->currentWidget() == m_meshViewer)
        return m_meshViewer->view();
    return &m_noZoom;
}
