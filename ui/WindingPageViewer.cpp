#include "ui/WindingPageViewer.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QSplitter>

#include "document/Document.h"
#include "ui/MmfSpectrumView.h"
#include "ui/Viewer/WindingScene.h"
#include "ui/Viewer/WindingViewer.h"
#include "winding/LayoutText.h"
#include "winding/WindingObject.h"

WindingLayoutView::WindingLayoutView(WindingObject *winding, QWidget *parent)
    : QWidget(parent)
    , m_winding(winding)
{
    setObjectName(QStringLiteral("WindingLayoutView"));
    connect(m_winding, &WindingObject::layoutsChanged, this, qOverload<>(&QWidget::update));
    connect(m_winding, &WindingObject::windingChanged, this, qOverload<>(&QWidget::update));
}

void WindingLayoutView::setLayoutIndex(int index)
{
    m_layoutIndex = index;
    update();
}

void WindingLayoutView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    const QVector<Winding::SlotMark> marks = m_winding->slotMarks(m_layoutIndex);
    const int layers = qMax(1, m_winding->effectiveNumberLayers());
    const int slotCount = marks.size() / layers;
    if (slotCount == 0) {
        painter.drawText(rect(), Qt::AlignCenter, tr("No winding layout"));
        return;
    }
    const double margin = 8.0;
    const double cellWidth = (width() - 2 * margin) / slotCount;
    const double cellHeight = qMin(40.0, (height() - 2 * margin - 20.0) / layers);
    QFont font = painter.font();
    font.setPixelSize(int(qBound(7.0, qMin(cellWidth, cellHeight) * 0.4, 14.0)));
    painter.setFont(font);
    for (int slot = 0; slot < slotCount; ++slot) {
        const double x = margin + slot * cellWidth;
        for (int layer = 0; layer < layers; ++layer) {
            const Winding::SlotMark &mark = marks.at(layers * slot + layer);
            const QRectF cell(x, margin + layer * cellHeight, cellWidth, cellHeight);
            painter.setPen(QPen(QColor(150, 150, 150), 1.0));
            painter.setBrush(mark.isEmpty() ? QColor(245, 245, 245) : mark.color);
            painter.drawRect(cell.adjusted(1, 1, -1, -1));
            if (!mark.isEmpty()) {
                painter.setPen(Winding::phaseTextColor(mark.phase));
                painter.drawText(cell, Qt::AlignCenter, mark.text);
            }
        }
        painter.setPen(Qt::black);
        painter.drawText(QRectF(x, margin + layers * cellHeight, cellWidth, 20.0), Qt::AlignCenter,
                         QString::number(slot + 1));
    }
}

WindingPageViewer::WindingPageViewer(Document *document, QWidget *parent)
    : PageViewer(QStringLiteral("WindingPageViewer"), parent)
    , m_document(document)
    , m_layouts(new QComboBox)
    , m_layoutView(new WindingLayoutView(document->winding()))
    , m_spectrum(new MmfSpectrumView)
{
    auto *splitter = new QSplitter(Qt::Vertical);
    if (occ::View::isAvailable()) {
        m_viewer = new WindingViewer(new WindingScene(document));
        m_viewer->setObjectName(QStringLiteral("viewerWinding"));
        splitter->addWidget(m_viewer);
    }
    auto *top = new QWidget;
    auto *topLayout = new QGridLayout(top);
    topLayout->setContentsMargins(4, 4, 4, 0);
    topLayout->addWidget(new QLabel(tr("Slot layout of stator face:")), 0, 0);
    m_layouts->setObjectName(QStringLiteral("comboBoxLayoutView"));
    topLayout->addWidget(m_layouts, 0, 1);
    topLayout->setColumnStretch(2, 1);
    topLayout->addWidget(m_layoutView, 1, 0, 1, 3);
    splitter->addWidget(top);
    splitter->addWidget(m_spectrum);
    viewLayout()->addWidget(splitter);
    controlLayout()->parentWidget()->hide();

    WindingObject *winding = document->winding();
    connect(m_layouts, qOverload<int>(&QComboBox::currentIndexChanged), m_layoutView,
            [this](int index) { m_layoutView->setLayoutIndex(qMax(0, index)); });
    connect(winding, &WindingObject::windingChanged, this, &WindingPageViewer::updateUI);
    connect(winding, &WindingObject::layoutsChanged, this, &WindingPageViewer::updateUI);
    connect(winding, &WindingObject::countLayoutsChanged, this, &WindingPageViewer::updateUI);
    connect(document, &Document::documentLoaded, this, &WindingPageViewer::updateUI);
    updateUI();
    restoreSplitterState();
}

ZoomableView *WindingPageViewer::zoomableView()
{
    if (m_viewer)
        return m_viewer;
    return &m_noZoom;
}

void WindingPageViewer::updateUI()
{
    WindingObject *winding = m_document->winding();
    {
        const QSignalBlocker blocker(m_layouts);
        const int current = m_layouts->currentIndex();
        m_layouts->clear();
        for (int i = 1; i <= winding->countLayouts(); ++i)
            m_layouts->addItem(QStringLiteral("#%1").arg(i));
        m_layouts->setCurrentIndex(qBound(0, current, m_layouts->count() - 1));
    }
    m_layoutView->setLayoutIndex(qMax(0, m_layouts->currentIndex()));
    // A unit current: the spectrum's shape is what tells.
    m_spectrum->setWinding(winding->layoutSettings(), winding->layout(), winding->numberTurns(), 1.0);
}
