#pragma once

#include <QVector>

// What a time plot makes of a sampled waveform.
namespace Waveform {

// The mean of the samples whose x lies within half the interval on either side; the
// waveform as it is for an interval of zero or less.
QVector<double> smoothed(const QVector<double> &x, const QVector<double> &y, double interval);

// The amplitudes of the harmonics 0 (the mean) to n/2 of samples that cover one
// period evenly, the last sample not repeating the first.
QVector<double> harmonicAmplitudes(const QVector<double> &y);

} // namespace Waveform
