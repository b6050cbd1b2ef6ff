#pragma once

#include <QString>

#include "base/ParentProcessKind.h"

// File name of the parent's executable, empty when it can't be read.
QString parentProcessFileName();

// Compared in lower case, with or without the Windows suffix.
ParentProcessKind parentProcessKindOf(const QString &fileName);
