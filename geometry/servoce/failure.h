#pragma once

#include <string>

namespace servoce {

// The layer never lets an exception out: a failed operation logs a warning and
// gives an empty result (a null shape, -1 for a measure, NaN for a point).
// Callers that relay the reason to a user read it here: the message of the
// latest failure on the calling thread, or an empty text when the latest
// operation of the layer on this thread went through.
std::string last_failure();

} // namespace servoce
