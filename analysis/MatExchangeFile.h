#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <QVector>
#include <optional>

#include "analysis/MAT_Converter.h"

// The MAT file that a solver step reads and answers in: named variables written
// in a given order, and read back all at once.
class MatExchangeFile
{
public:
    using Variable = QPair<QString, MatVarPointer>;

    // A new file at the path; each variable is written under the name beside it.
    static bool write(const QString &path, const QVector<Variable> &variables);
    // Every variable of the file by its name; nothing when the file can't be read.
    static std::optional<QHash<QString, MatVarPointer>> read(const QString &path);
};
