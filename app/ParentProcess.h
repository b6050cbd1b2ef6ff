#pragma once

#include <QString>

// The program that started this process, as far as the process cares.
enum class ParentProcessKind : qint32 {
    None = 0,
    Matlab = 1,
    Orvane = 2,
};

// File name of the parent's executable, empty when it can't be read.
QString parentProcessFileName();

// Compared in lower case, with or without the Windows suffix.
ParentProcessKind parentProcessKindOf(const QString &fileName);
