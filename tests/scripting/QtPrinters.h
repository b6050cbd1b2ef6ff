#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// Readable failure messages for Qt strings in expectations.
inline void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList &list, std::ostream *os)
{
    *os << '[';
    for (int i = 0; i < list.size(); ++i) {
        if (i)
            *os << ", ";
        PrintTo(list.at(i), os);
    }
    *os << ']';
}
