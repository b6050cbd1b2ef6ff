#pragma once

#include <QString>

// The material library: the parent installation's "materials" folder where its
// settings name one, else "assets/materials" beside the program.
QString materialsFolder();
