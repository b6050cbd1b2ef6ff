// The MAT exchange file that a solver step answers in: every variable it holds is read
// and turned into values, as the program does with an answer, and must be read or
// refused, never crash, hang or leak.
#include <QCoreApplication>

#include "FuzzInput.h"
#include "analysis/MAT_Converter.h"
#include "analysis/MatExchangeFile.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    silenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto variables = MatExchangeFile::read(writeFuzzInput("mat", data, size));
    if (!variables)
        return 0;
    for (const MatVarPointer &variable : *variables)
        MAT_Converter::toVariant(variable.data());
    return 0;
}
