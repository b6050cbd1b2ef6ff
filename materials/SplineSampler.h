#pragma once

#include <QVector>
#include <stdexcept>

// Points of a curve drawn through measured values, ready to plot.
struct SampledCurve
{
    QVector<double> x;
    QVector<double> y;
};

// Where the points allow no spline: fewer than two, or two at the same x.
class SplineError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// An Akima spline through (x, y), which does not overshoot between measured points,
// sampled at intervals + 1 evenly spaced points from the smallest x to the largest.
SampledCurve sampleAkimaSpline(const QVector<double> &x, const QVector<double> &y, int intervals);
