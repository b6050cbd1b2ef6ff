#pragma once

#include <string>
#include <vector>

#include "geometry/servoce/shape.h"

namespace servoce {

// Sets the STEP translators' global parameters and keeps the kernel's messages
// off the console. The layer calls it before its first STEP transfer; the
// program calls it at start-up, before threads share the layer.
void initialize();

shape read_step(const std::string &path);
bool write_step(const shape &model, const std::string &path);

// A body of an exported scene with its colour, each part from 0 to 1.
struct coloured_shape
{
    shape body;
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
};

// Each body a shape of its own in the file, with its colour. A null body is logged and
// left out; without bodies the file holds none. The file is written beside the path
// first and takes its place only when complete.
bool write_step(const std::vector<coloured_shape> &bodies, const std::string &path);

} // namespace servoce
