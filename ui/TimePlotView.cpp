#include "ui/TimePlotView.h"

#include <QVBoxLayout>
#include <qcustomplot.h>

#include "ui/PlotCommand.h"
#include "ui/Waveform.h"

namespace {

const QList<QColor> curveColours = {QColor(0, 114, 189), QColor(217, 83, 25), QColor(237, 177, 32),
                                    QColor(126, 47, 142), QColor(119, 172, 48), QColor(77, 190, 238)};

QVector<double> numbers(const QVariant &value)
{
    QVector<double> result;
    if (value.type() == QVariant::List) {
        for (const QVariant &item : value.toList())
            result.append(item.toDouble());
    } else if (value.canConvert<double>()) {
        result.append(value.toDouble());
    }
    return result;
}

// The curves of one request in one axis rect; an empty text when drawn.
QString drawRequest(QCustomPlot *plot, QCPAxisRect *rect, const QVariantMap &data, const TimePlotRequest &request,
                    const TimePlotOptions &options)
{
    const PlotCommand command = PlotCommand::parse(request.expression);
    if (!command.isValid())
        return command.error();
    const bool spectrum = request.type == QLatin1String("spectrum");
    int colour = 0;
    for (const PlotCommand::Series &series : command.series()) {
        for (const QString &name : {series.x, series.y}) {
            if (!data.contains(name))
                return QCoreApplication::translate("TimePlotView", "Unknown variable '%1'").arg(name);
        }
        QVector<double> x = numbers(data.value(series.x));
        QVector<double> y = numbers(data.value(series.y));
        if (x.size() != y.size() || x.isEmpty())
            return QCoreApplication::translate("TimePlotView", "'%1' and '%2' differ in length").arg(series.x, series.y);
        if (spectrum) {
            y = Waveform::harmonicAmplitudes(y);
            x.resize(y.size());
            for (int k = 0; k < x.size(); ++k)
                x[k] = k;
        } else if (request.type == QLatin1String("smoothed waveform")) {
            y = Waveform::smoothed(x, y, options.averagingInterval);
        }
        const QColor color = curveColours.at(colour++ % curveColours.size());
        if (spectrum) {
            auto *bars = new QCPBars(rect->axis(QCPAxis::atBottom), rect->axis(QCPAxis::atLeft));
            bars->setData(x, y, true);
            bars->setName(series.legend);
            bars->setPen(QPen(color));
            bars->setBrush(color.lighter(130));
            bars->setWidth(0.6);
        } else {
            QCPGraph *graph = plot->addGraph(rect->axis(QCPAxis::atBottom), rect->axis(QCPAxis::atLeft));
            graph->setData(x, y, true);
            graph->setName(series.legend);
            graph->setPen(QPen(color, 1.5));
        }
    }
    rect->axis(QCPAxis::atBottom)->setLabel(spectrum ? QCoreApplication::translate("TimePlotView", "Harmonic order")
                                                     : command.series().first().x);
    rect->axis(QCPAxis::atBottom)->rescale();
    rect->axis(QCPAxis::atLeft)->rescale();
    const AxisLimits xLimits = AxisLimits::parse(request.xLimits);
    if (xLimits.valid)
        rect->axis(QCPAxis::atBottom)->setRange(xLimits.lower, xLimits.upper);
    const AxisLimits yLimits = AxisLimits::parse(request.yLimits);
    if (yLimits.valid)
        rect->axis(QCPAxis::atLeft)->setRange(yLimits.lower, yLimits.upper);
    else
        rect->axis(QCPAxis::atLeft)->scaleRange(1.1);
    return QString();
}

} // namespace

TimePlotView::TimePlotView(QWidget *parent)
    : QWidget(parent)
    , m_plot(new QCustomPlot(this))
{
    setObjectName(QStringLiteral("TimePlotView"));
    m_plot->setObjectName(QStringLiteral("timePlot"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_plot);
    m_plot->plotLayout()->clear();
}

QStringList TimePlotView::plot(const QVariantMap &data, const QVector<TimePlotRequest> &requests,
                               const TimePlotOptions &options)
{
    m_plot->clearPlottables();
    m_plot->plotLayout()->clear();
    QStringList errors;
    QCPAxisRect *first = nullptr;
    for (int i = 0; i < requests.size(); ++i) {
        auto *rect = new QCPAxisRect(m_plot);
        m_plot->plotLayout()->addElement(i, 0, rect);
        const QString error = drawRequest(m_plot, rect, data, requests.at(i), options);
        if (!error.isEmpty())
            errors.append(QCoreApplication::translate("TimePlotView", "Subplot %1: %2").arg(i + 1).arg(error));
        if (options.legend && rect->plottables().size() > 0) {
            auto *legend = new QCPLegend;
            rect->insetLayout()->addElement(legend, Qt::AlignTop | Qt::AlignRight);
            legend->setLayer(QStringLiteral("legend"));
            for (QCPAbstractPlottable *plottable : rect->plottables())
                plottable->addToLegend(legend);
        }
        if (!first)
            first = rect;
        else if (options.synchronizeX)
            rect->axis(QCPAxis::atBottom)->setRange(first->axis(QCPAxis::atBottom)->range());
    }
    m_plot->replot();
    return errors;
}

int TimePlotView::subplotCount() const
{
    return m_plot->axisRects().size();
}

int TimePlotView::curveCount() const
{
    return m_plot->plottableCount();
}
