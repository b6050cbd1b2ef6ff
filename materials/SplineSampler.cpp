#include "materials/SplineSampler.h"

#include <algorithm>

#include <libalglib/interpolation.h>

namespace {

alglib::real_1d_array toArray(const QVector<double> &values)
{
    alglib::real_1d_array array;
    array.setcontent(values.size(), values.constData());
    return array;
}

} // namespace

SampledCurve sampleAkimaSpline(const QVector<double> &x, const QVector<double> &y, int intervals)
{
    if (x.size() != y.size() || x.size() < 2 || intervals < 1)
        throw SplineError("a spline needs two points or more, with as many x as y");
    alglib::spline1dinterpolant spline;
    try {
        alglib::spline1dbuildakima(toArray(x), toArray(y), spline);
    } catch (const alglib::ap_error &error) {
        throw SplineError(error.msg);
    }
    const auto [lowest, highest] = std::minmax_element(x.cbegin(), x.cend());
    const double step = (*highest - *lowest) / intervals;
    SampledCurve curve;
    curve.x.reserve(intervals + 1);
    curve.y.reserve(intervals + 1);
    double at = *lowest;
    for (int i = 0; i <= intervals; ++i, at += step) {
        curve.x.append(at);
        curve.y.append(alglib::spline1dcalc(spline, at));
    }
    return curve;
}
