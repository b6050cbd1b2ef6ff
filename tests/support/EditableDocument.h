#pragma once

#include "document/Document.h"

// A document ready to record changes, as after "new" or a load.
inline void makeEditable(Document &doc)
{
    doc.start();
    doc.markAsMade();
    doc.setPreparing(false);
}
