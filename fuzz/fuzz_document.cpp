// The document reader, both forms: a file must be read or refused, never crash,
// hang or leak.
#include <QApplication>
#include <cstdlib>

#include "FuzzInput.h"
#include "document/Document.h"
#include "document/DocumentTypes.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication application(*argc, *argv);
    registerDocumentTypes();
    silenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = writeFuzzInput("zva", data, size);
    // A refused load leaves its document half filled: each input gets a new one.
    Document document(nullptr);
    document.start();
    document.load(path);
    return 0;
}
