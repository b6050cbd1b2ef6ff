#pragma once

#include <QCoreApplication>
#include <QString>

enum class SolverStep {
    AssembleZVA,
    MStimestepping,
};

// Runs one step of the solver plug-in on the exchange file. With a console name the
// plug-in's messages go to that RemoteConsoleServer. A plug-in that can't be loaded
// leaves the file as it is; the reason is in the log.
void runSolverStep(SolverStep step, const QString &exchangeFile, const QString &remoteConsoleName,
                   const QString &pluginFolder = QCoreApplication::applicationDirPath());
