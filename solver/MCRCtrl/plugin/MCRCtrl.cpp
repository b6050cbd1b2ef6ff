#include "MCRCtrl.h"

#include <QCoreApplication>
#include <QDebug>

#include "solver/MCRCtrl/SolverSteps.h"

namespace {

// The plug-in lies beside the program, and the material library beside both.
mcrctrl::SolverSteps steps(MCRCtrlInterface::Console *console)
{
    const auto info = [console](const QString &text) {
        qInfo().noquote() << text;
        if (console)
            console->info(text);
    };
    const auto error = [console](const QString &text) {
        qCritical().noquote() << text;
        if (console)
            console->error(text);
    };
    return mcrctrl::SolverSteps(QCoreApplication::applicationFilePath(),
                                QCoreApplication::applicationDirPath() + QStringLiteral("/assets/materials"), info, error);
}

} // namespace

void MCRCtrl::setConsole(MCRCtrlInterface::Console *console)
{
    m_console = console;
}

void MCRCtrl::runMStimestepping(const QString &exchangeFile)
{
    steps(m_console).timestep(exchangeFile);
}

void MCRCtrl::runAssembleZVA(const QString &exchangeFile)
{
    steps(m_console).assemble(exchangeFile);
}
