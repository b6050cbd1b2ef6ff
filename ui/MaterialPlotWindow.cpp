#include "ui/MaterialPlotWindow.h"

#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>
#include <qcustomplot.h>

namespace {

const QVector<QColor> curvePalette{QColor(0, 0, 255),     QColor(255, 0, 0),     QColor(0, 128, 0),
                                   QColor(128, 128, 0),   QColor(128, 0, 128),   QColor(0, 128, 128),
                                   QColor(128, 128, 128), QColor(0, 0, 192),     QColor(0, 204, 0),
                                   QColor(204, 0, 0),     QColor(0, 204, 204),   QColor(204, 0, 204),
                                   QColor(204, 204, 0)};

QFont plotFont(bool bold = false)
{
    QFont font(QStringLiteral("sans"), 10);
    if (bold)
        font.setWeight(QFont::Bold);
    return font;
}

} // namespace

MaterialPlotWindow::MaterialPlotWindow(const QString &windowTitle, const QString &plotTitle, QWidget *parent)
    : QWidget(parent, Qt::Window), m_plot(new QCustomPlot(this)), m_layout(new QVBoxLayout(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(windowTitle);
    resize(800, 600);

    auto *tools = new QHBoxLayout;
    const auto addTool = [this, tools](const char *name, const QString &text, const QString &icon,
                                       const std::function<void()> &action) {
        auto *button = new QToolButton(this);
        button->setObjectName(QLatin1String(name));
        button->setToolTip(text);
        button->setIcon(QIcon(icon));
        connect(button, &QToolButton::clicked, this, action);
        tools->addWidget(button);
    };
    addTool("buttonZoomFit", tr("Zoom fit"), QStringLiteral(":/zoom_fit.png"), [this] { zoomFit(); });
    addTool("buttonZoomIn", tr("Zoom in (Scroll)"), QStringLiteral(":/zoom_in.png"), [this] { zoomBy(0.9); });
    addTool("buttonZoomOut", tr("Zoom out (Scroll)"), QStringLiteral(":/zoom_out.png"), [this] { zoomBy(1.1); });
    tools->addStretch();
    m_layout->addLayout(tools);
    m_layout->addWidget(m_plot, 1);

    m_plot->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom | QCP::iSelectPlottables | QCP::iSelectAxes |
                            QCP::iSelectLegend);
    m_plot->plotLayout()->insertRow(0);
    m_plot->plotLayout()->addElement(0, 0, new QCPTextElement(m_plot, plotTitle, plotFont(true)));
    m_plot->xAxis2->setVisible(true);
    m_plot->yAxis2->setVisible(true);
    m_plot->xAxis2->setTickLabels(false);
    m_plot->yAxis2->setTickLabels(false);
    for (QCPAxis *axis : m_plot->axisRect()->axes())
        axis->setTickLabelFont(plotFont());
    connect(m_plot->xAxis, qOverload<const QCPRange &>(&QCPAxis::rangeChanged), m_plot->xAxis2,
            qOverload<const QCPRange &>(&QCPAxis::setRange));
    connect(m_plot->yAxis, qOverload<const QCPRange &>(&QCPAxis::rangeChanged), m_plot->yAxis2,
            qOverload<const QCPRange &>(&QCPAxis::setRange));
    m_plot->legend->setVisible(true);
    m_plot->legend->setFont(plotFont());
}

int MaterialPlotWindow::graphCount() const
{
    return m_plot->graphCount();
}

QString MaterialPlotWindow::graphName(int index) const
{
    return m_plot->graph(index)->name();
}

int MaterialPlotWindow::graphPointCount(int index) const
{
    return m_plot->graph(index)->data()->size();
}

bool MaterialPlotWindow::graphInLegend(int index) const
{
    return m_plot->legend->hasItemWithPlottable(m_plot->graph(index));
}

Qt::PenStyle MaterialPlotWindow::graphLineStyle(int index) const
{
    const QCPGraph *graph = m_plot->graph(index);
    return graph->lineStyle() == QCPGraph::lsNone ? Qt::NoPen : graph->pen().style();
}

void MaterialPlotWindow::zoomFit()
{
    m_plot->rescaleAxes();
    m_plot->xAxis->scaleRange(1.05);
    m_plot->yAxis->scaleRange(1.05);
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

void MaterialPlotWindow::zoomBy(double factor)
{
    m_plot->xAxis->scaleRange(factor);
    m_plot->yAxis->scaleRange(factor);
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

void MaterialPlotWindow::addAbovePlot(QWidget *widget)
{
    m_layout->insertWidget(m_layout->indexOf(m_plot), widget);
}

void MaterialPlotWindow::addBelowPlot(QWidget *widget)
{
    m_layout->addWidget(widget);
}

QColor MaterialPlotWindow::nextColor() const
{
    return curvePalette.at(m_plot->graphCount() % curvePalette.size());
}

SampledCurve MaterialPlotWindow::curveThrough(const QVector<double> &x, const QVector<double> &y, int intervals)
{
    try {
        return sampleAkimaSpline(x, y, intervals);
    } catch (const SplineError &) {
        return {x, y};
    }
}

void MaterialPlotWindow::addLine(const SampledCurve &curve, const QString &name, const QPen &pen)
{
    QCPGraph *graph = m_plot->addGraph();
    graph->setData(curve.x, curve.y);
    graph->setName(name);
    graph->setPen(pen);
}

void MaterialPlotWindow::addMarks(const QVector<double> &x, const QVector<double> &y, const QColor &color)
{
    QCPGraph *graph = m_plot->addGraph();
    graph->setData(x, y);
    graph->setPen(QPen(color));
    graph->setLineStyle(QCPGraph::lsNone);
    graph->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 6));
    graph->removeFromLegend();
}
