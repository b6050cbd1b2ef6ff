#pragma once

#include <QtGlobal>

// The program that started this process, as far as the process cares.
enum class ParentProcessKind : qint32 {
    None = 0,
    Matlab = 1,
    Orvane = 2,
};

// The parent found at start-up, for every layer of the process; None until then.
ParentProcessKind parentProcessKind();
void setParentProcessKind(ParentProcessKind kind);
