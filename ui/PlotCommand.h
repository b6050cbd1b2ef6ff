#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// The plot expressions that the program evaluates itself: one plot() of pairs of
// variable names, x then y, and an optional legend() of quoted texts, e.g.
// plot(time,Ia,time,Ib);legend('Ia, A','Ib, A'); Anything else is refused with a
// reason, since no general evaluator stands behind the time plots.
class PlotCommand
{
public:
    struct Series
    {
        QString x;
        QString y;
        QString legend;
    };

    static PlotCommand parse(const QString &text);

    bool isValid() const { return m_error.isEmpty(); }
    QString error() const { return m_error; }
    const QVector<Series> &series() const { return m_series; }

private:
    QVector<Series> m_series;
    QString m_error;
};

// Axis limits as typed: two numbers, with or without brackets, by spaces or a comma.
struct AxisLimits
{
    bool valid = false;
    double lower = 0.0;
    double upper = 0.0;

    static AxisLimits parse(const QString &text);
};
