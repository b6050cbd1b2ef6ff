#pragma once

#include <QVector>
#include <QtCharts/QChartView>

class QLabel;

namespace QtCharts {
class QBarCategoryAxis;
class QBarSeries;
class QBarSet;
class QValueAxis;
} // namespace QtCharts

// A bar chart of values by harmonic order, one bar set; hovering a bar shows its value.
class HarmonicBarChart : public QtCharts::QChartView
{
    Q_OBJECT
public:
    HarmonicBarChart(const QString &setName, const QString &orderTitle, const QString &valueTitle,
                     QWidget *parent = nullptr);

    // One bar per order, labelled with the order.
    void setBars(const QVector<int> &orders, const QVector<double> &values);

    QtCharts::QBarSeries *series() const { return m_series; }
    QtCharts::QBarSet *barSet() const { return m_set; }
    QtCharts::QBarCategoryAxis *orderAxis() const { return m_orderAxis; }
    QtCharts::QValueAxis *valueAxis() const { return m_valueAxis; }

private:
    void showValue(bool status, int index);

    QtCharts::QBarSeries *m_series = nullptr;
    QtCharts::QBarSet *m_set = nullptr;
    QtCharts::QBarCategoryAxis *m_orderAxis = nullptr;
    QtCharts::QValueAxis *m_valueAxis = nullptr;
    QLabel *m_valueLabel = nullptr;
};
