#pragma once

#include <QString>

// A ".lnk" argument is a link to the real file; any other path passes unchanged.
QString resolveShellLink(const QString &path);
