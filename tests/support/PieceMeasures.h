#pragma once

#include <cmath>

#include "geometry/Piece.h"

// Closed forms and sums that body tests measure pieces against.

// The area of the annulus between r0 and r1 within |y| < a: the cross-section of a
// parallel-sided slot 2a wide.
inline double annulusStripArea(double a, double r0, double r1)
{
    const auto half = [a](double r) { return a * std::sqrt(r * r - a * a) + r * r * std::asin(a / r); };
    return half(r1) - half(r0);
}

inline double volumeOf(const PieceList &pieces)
{
    double volume = 0.0;
    for (const Piece &piece : pieces)
        volume += piece.shape().volume();
    return volume;
}
