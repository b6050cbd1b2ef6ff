// The undo history of a document: compact JSON whose commands carry values in the
// stream form of QVariant, replayed on the design.
#include <QApplication>
#include <QDataStream>

#include "FuzzInput.h"
#include "document/Document.h"
#include "document/DocumentTypes.h"
#include "document/UndoStack.h"

namespace {
Document *document = nullptr;
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication application(*argc, *argv);
    registerDocumentTypes();
    silenceLog();
    static Document design(nullptr);
    design.start();
    document = &design;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray stored;
    {
        QDataStream out(&stored, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_5_13);
        out << QByteArray(reinterpret_cast<const char *>(data), int(size));
    }
    QDataStream in(stored);
    in.setVersion(QDataStream::Qt_5_13);
    document->undoStack()->clear();
    document->undoStack()->restore(in, document);
    return 0;
}
