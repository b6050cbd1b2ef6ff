#pragma once

#include <QColor>
#include <QWidget>

#include "materials/SplineSampler.h"

class QCustomPlot;
class QPen;
class QVBoxLayout;

// A window with one plot of a material's data: a title in bold, both axis pairs
// linked, dragging and wheel zoom, and the tool buttons "Zoom fit", "Zoom in" and
// "Zoom out". It deletes itself when closed.
class MaterialPlotWindow : public QWidget
{
    Q_OBJECT
public:
    int graphCount() const;
    QString graphName(int index) const;
    int graphPointCount(int index) const;
    bool graphInLegend(int index) const;
    Qt::PenStyle graphLineStyle(int index) const;

    // The whole data with a margin of 5 % around it.
    void zoomFit();
    // Both ranges about their centres: below 1 zooms in.
    void zoomBy(double factor);

protected:
    MaterialPlotWindow(const QString &windowTitle, const QString &plotTitle, QWidget *parent);

    QCustomPlot *plot() const { return m_plot; }
    // Rows above and below the plot, for what a window shows beside its curves.
    void addAbovePlot(QWidget *widget);
    void addBelowPlot(QWidget *widget);

    // The colour of the next curve: the shared palette, in turn by the count of graphs.
    QColor nextColor() const;
    // The spline through the points, or the points themselves where they allow none.
    static SampledCurve curveThrough(const QVector<double> &x, const QVector<double> &y, int intervals);
    void addLine(const SampledCurve &curve, const QString &name, const QPen &pen);
    // Measured points as filled discs, without a legend entry.
    void addMarks(const QVector<double> &x, const QVector<double> &y, const QColor &color);

private:
    QCustomPlot *m_plot;
    QVBoxLayout *m_layout;
};
