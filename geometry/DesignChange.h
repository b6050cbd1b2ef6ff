#pragma once

#include <cmath>

class Document;

// User lengths keep 5 decimals: a change below that is no change. A value beyond 2^53
// hundred-thousandths has no fifth decimal to keep, and an infinite or undefined one
// none at all: they stay as they are rather than overflow an integer on the way.
inline double roundLength(double value)
{
    const double scaled = value * 100000;
    if (!(std::abs(scaled) < 9.0e15))
        return value;
    return std::floor(scaled + 0.5) / 100000.0;
}

// After a change of the solids: the document is modified and its geometry must be rebuilt.
void markGeometryModified(Document *document);
