#pragma once

#include <QString>
#include <matio.h>

// What libmatio is given to read: a Level 5 MAT file whose variables each fit in the
// file, and whose arrays declare no more elements than they have bytes for; a
// compressed variable is inflated, up to a bound, and its array checked alike.
// libmatio takes the sizes it finds at their word, allocating and clearing what a
// damaged file declares, and hands the other forms of MAT file to readers of their
// own; such a file is refused before libmatio sees it.
namespace MatFileCheck {

// Empty when the file is fit to be read; otherwise what is wrong with it.
QString problem(const QString &path);

// Mat_Open for reading a file that passes the check; null, with the reason logged,
// for one that doesn't or that libmatio can't open.
mat_t *openForRead(const QString &path);

} // namespace MatFileCheck
