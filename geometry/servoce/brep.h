#pragma once

#include <string>

#include "geometry/servoce/shape.h"

namespace servoce {

// The kernel's own exact format, for handing a shape to a program that reads it.
// False, with the reason logged, when the file cannot be written.
bool write_brep(const shape &model, const std::string &path);

} // namespace servoce
