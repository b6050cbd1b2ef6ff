// The JSON catalogue of a script folder.
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "FuzzInput.h"
#include "QmlScripting/ScriptDescribeList.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    silenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QFileInfo file(writeFuzzInput("json", data, size));
    ScriptDescribeList catalogue(file.absolutePath());
    catalogue.load(file.fileName());
    for (const ScriptDescribe &entry : catalogue)
        catalogue.findScript(entry.script());
    return 0;
}
