#pragma once

// Registers the program's own value types under the names that document files
// store inside QVariants. Safe to call more than once; the document does it before
// anything is read.
void registerDocumentTypes();
