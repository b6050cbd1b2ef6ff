#include "app/SolverStep.h"

#include "analysis/MCRCtrl/MCRCtrlInterface.h"
#include "analysis/MCRCtrlPlugin.h"
#include "app/RemoteConsoleClient.h"

#include <memory>

void runSolverStep(SolverStep step, const QString &exchangeFile, const QString &remoteConsoleName,
                   const QString &pluginFolder)
{
    MCRCtrlPlugin plugin(pluginFolder);
    MCRCtrlInterface *solver = plugin.load();
    if (!solver)
        return;

    std::unique_ptr<RemoteConsoleClient> client;
    if (!remoteConsoleName.isEmpty()) {
        client = std::make_unique<RemoteConsoleClient>(remoteConsoleName);
        solver->setConsole(client.get());
    }

    switch (step) {
    case SolverStep::AssembleZVA:
        solver->runAssembleZVA(exchangeFile);
        break;
    case SolverStep::MStimestepping:
        solver->runMStimestepping(exchangeFile);
        break;
    }

    client.reset();
    plugin.unload();
}
