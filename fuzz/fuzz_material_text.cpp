// The text files of the material libraries, each of the three kinds: the first byte
// of an input chooses the kind, the rest is the file.
#include <QCoreApplication>

#include "FuzzInput.h"
#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    silenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QString path = writeFuzzInput("txt", data + 1, size - 1);
    switch (data[0] % 3) {
    case 0:
        MaterialIronEngine::readFromFile(path);
        break;
    case 1:
        MaterialMagnetEngine::readFromFile(path);
        break;
    default:
        MaterialConductorEngine::readFromFile(path);
        break;
    }
    return 0;
}
