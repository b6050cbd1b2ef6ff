#include "ui/MeshPageViewer.h"

#include <QGridLayout>
#include <QLabel>
#include <QTabWidget>

#include "document/Document.h"
#include "ui/MeshNetgenViewer.h"
#include "ui/MeshViewer.h"
#include "ui/RuleZoomViewer.h"
#include "ui/Viewer/Mesh3DScene.h"
#include "ui/Viewer/Mesh3DViewer.h"

MeshPageViewer::MeshPageViewer(Document *document, QWidget *parent)
    : PageViewer(QStringLiteral("MeshPageViewer"), parent)
    , m_tabs(new QTabWidget)
    , m_meshViewer(new MeshViewer(document))
    , m_volumeScene(new Mesh3DScene(document, this))
    , m_volumeTabs(new QTabWidget)
    , m_flatViewer(new MeshNetgenViewer(m_volumeScene))
{
    m_tabs->setObjectName(QStringLiteral("tabWidgetMesh"));
    m_tabs->addTab(m_meshViewer, tr("2D mesh"));
    m_volumeTabs->setObjectName(QStringLiteral("tabWidgetMesh3D"));
    m_volumeTabs->addTab(m_flatViewer, tr("Flat view"));
    if (occ::View::isAvailable()) {
        m_volumeViewer = new Mesh3DViewer(m_volumeScene);
        m_volumeTabs->addTab(m_volumeViewer, tr("3D view"));
        connect(m_volumeViewer, &occ::View::zoomAutoFitChanged, this, &PageViewer::aboutToUpdateUI);
    } else {
        auto *unavailable = new QLabel(tr("The 3D view needs an X display."));
        unavailable->setAlignment(Qt::AlignCenter);
        m_volumeTabs->addTab(unavailable, tr("3D view"));
    }
    m_tabs->addTab(m_volumeTabs, tr("3D mesh"));
    viewLayout()->addWidget(m_tabs);
    controlLayout()->addWidget(m_meshViewer->switches());

    connect(m_tabs, &QTabWidget::currentChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_volumeTabs, &QTabWidget::currentChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_meshViewer->view(), &RuleZoomViewer::zoomAutoFitChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_meshViewer->view(), &RuleZoomViewer::scaleChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_flatViewer, &RuleZoomViewer::zoomAutoFitChanged, this, &PageViewer::aboutToUpdateUI);
    connect(m_flatViewer, &RuleZoomViewer::scaleChanged, this, &PageViewer::aboutToUpdateUI);
    restoreSplitterState();
}

ZoomableView *MeshPageViewer::zoomableView()
{
    if (m_tabs->currentWidget() == m_meshViewer)
        return m_meshViewer->view();
    if (m_volumeTabs->currentWidget() == m_flatViewer)
        return m_flatViewer;
    if (m_volumeViewer && m_volumeTabs->currentWidget() == m_volumeViewer)
        return m_volumeViewer;
    return &m_noZoom;
}
