#pragma once

namespace servoce {

// A point in model space, in the script's length unit.
struct point3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    point3() = default;
    point3(double x, double y, double z = 0.0)
        : x(x), y(y), z(z)
    {
    }
};

// A direction or displacement in model space.
struct vector3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    vector3() = default;
    vector3(double x, double y, double z = 0.0)
        : x(x), y(y), z(z)
    {
    }
};

// What an operation gives where it has no point: every coordinate is NaN.
point3 nowhere();

} // namespace servoce
