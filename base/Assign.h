#pragma once

#include <QtGlobal>
#include <type_traits>

// The first half of every setter: an equal value is a no-op (floating point values
// compare fuzzily), a different one is stored. True when the field changed.
template <typename T>
bool assignChanged(T &field, const T &value)
{
    if constexpr (std::is_floating_point_v<T>) {
        if (qFuzzyCompare(field, value))
            return false;
    } else {
        if (field == value)
            return false;
    }
    field = value;
    return true;
}
