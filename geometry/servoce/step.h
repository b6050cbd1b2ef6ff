#pragma once

#include <string>

#include "geometry/servoce/shape.h"

namespace servoce {

// Sets the STEP translators' global parameters and keeps the kernel's messages
// off the console. The layer calls it before its first STEP transfer; the
// program calls it at start-up, before threads share the layer.
void initialize();

shape read_step(const std::string &path);
bool write_step(const shape &model, const std::string &path);

} // namespace servoce
