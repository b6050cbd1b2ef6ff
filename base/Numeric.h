#pragma once

// The tolerances and angle rules that every layer of the design shares.
namespace Numeric {

// A value is zero to the program when its size is at most this.
constexpr double zeroTolerance = 1e-7;

bool isZero(double value);

// Degrees into [0, 360); a value of at most zeroTolerance in size is 0.
double normalizeAngle(double degrees);

} // namespace Numeric
