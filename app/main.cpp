#include <QtGlobal>
#include <unistd.h>

#include "app/CrashHandler.h"
#include "app/SafeMain.h"

// Without a display the program runs on the offscreen platform instead of failing.
static void chooseHeadlessPlatform()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

int main(int argc, char *argv[])
{
    installCrashHandler();
    chooseHeadlessPlatform();
    const int result = safeMain(argc, argv);
    if (terminateAtExit)
        _exit(result);
    return result;
}
