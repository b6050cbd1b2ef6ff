#include "geometry/DesignChange.h"

#include "document/Document.h"

void markGeometryModified(Document *document)
{
    document->setModified(true);
    document->setGeometryModified(true);
}
