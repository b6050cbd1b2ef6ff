#pragma once

#include <QStringList>
#include <QVariantMap>
#include <QWidget>

#include "ui/MagnetostaticTimePlotWidget.h"

class QCustomPlot;

struct TimePlotOptions
{
    bool legend = true;
    // All subplots show the x range of the first.
    bool synchronizeX = false;
    // Of a smoothed waveform, in the units of its x variable.
    double averagingInterval = 0.0;
};

// The time plots of an analysis's time-stepping data, one subplot per request, one
// above the other.
class TimePlotView : public QWidget
{
    Q_OBJECT
public:
    explicit TimePlotView(QWidget *parent = nullptr);

    // Draws the requests anew; a request that can't be drawn gives its subplot no
    // curve and one text of the returned list.
    QStringList plot(const QVariantMap &data, const QVector<TimePlotRequest> &requests,
                     const TimePlotOptions &options);

    int subplotCount() const;
    int curveCount() const;

private:
    QCustomPlot *m_plot;
};
