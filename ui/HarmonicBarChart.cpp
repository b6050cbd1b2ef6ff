#include "ui/HarmonicBarChart.h"

#include <QCursor>
#include <QLabel>
#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QValueAxis>
#include <algorithm>
#include <cmath>

using namespace QtCharts;

namespace {

// Rounding noise of a cancelled harmonic reads as zero.
constexpr double negligible = 1e-7;

} // namespace

HarmonicBarChart::HarmonicBarChart(const QString &setName, const QString &orderTitle, const QString &valueTitle,
                                   QWidget *parent)
    : QChartView(parent)
    , m_series(new QBarSeries)
    , m_set(new QBarSet(setName))
    , m_orderAxis(new QBarCategoryAxis)
    , m_valueAxis(new QValueAxis)
    , m_valueLabel(new QLabel(this))
{
    setRenderHint(QPainter::Antialiasing);
    m_series->append(m_set);
    chart()->addSeries(m_series);
    chart()->legend()->hide();
    m_orderAxis->setTitleText(orderTitle);
    m_valueAxis->setTitleText(valueTitle);
    chart()->addAxis(m_orderAxis, Qt::AlignBottom);
    chart()->addAxis(m_valueAxis, Qt::AlignLeft);
    m_series->attachAxis(m_orderAxis);
    m_series->attachAxis(m_valueAxis);

    m_valueLabel->setObjectName(QStringLiteral("labelValue"));
    m_valueLabel->setFrameShape(QFrame::Box);
    m_valueLabel->setAutoFillBackground(true);
    m_valueLabel->hide();
    connect(m_set, &QBarSet::hovered, this, &HarmonicBarChart::showValue);
}

void HarmonicBarChart::setBars(const QVector<int> &orders, const QVector<double> &values)
{
    m_set->remove(0, m_set->count());
    QStringList categories;
    for (int order : orders)
        categories << QString::number(order);
    m_orderAxis->clear();
    m_orderAxis->append(categories);
    QList<qreal> bars;
    for (double value : values)
        bars << value;
    m_set->append(bars);
    const double top = values.isEmpty() ? 0.0 : *std::max_element(values.cbegin(), values.cend());
    m_valueAxis->setRange(0.0, top > negligible ? top : 1.0);
    m_valueAxis->applyNiceNumbers();
}

void HarmonicBarChart::showValue(bool status, int index)
{
    if (!status || index < 0 || index >= m_set->count()) {
        m_valueLabel->hide();
        return;
    }
    const double value = m_set->at(index);
    m_valueLabel->setText(QString::number(std::abs(value) <= negligible ? 0.0 : value, 'g', 6));
    m_valueLabel->adjustSize();
    m_valueLabel->move(mapFromGlobal(QCursor::pos()) + QPoint(12, -m_valueLabel->height() - 4));
    m_valueLabel->show();
    m_valueLabel->raise();
}
