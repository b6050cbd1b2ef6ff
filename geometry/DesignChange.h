#pragma once

#include <QtGlobal>

class Document;

// User lengths keep 5 decimals: a change below that is no change.
inline double roundLength(double value)
{
    return qRound64(value * 100000) / 100000.0;
}

// After a change of the solids: the document is modified and its geometry must be rebuilt.
void markGeometryModified(Document *document);
