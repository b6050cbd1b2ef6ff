#pragma once

#include <QString>

// The path of a new exchange file in the application's data folder, unique in this
// process; empty when a stale file of that name can't be removed.
QString getPathFileExchange(const QString &suffix);
