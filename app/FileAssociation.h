#pragma once

#include <QString>

// Associates a document suffix with this program for the current user: a MIME type
// and a desktop entry under the user's data folder. Best effort: whatever can't be
// written is passed over without a message.
void registerFileType(const QString &exeFileName, const QString &description, const QString &suffix, int iconIndex);
