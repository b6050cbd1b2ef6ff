#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <cstdio>

#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SolverSteps.h"

// The solver's steps as the program runs them, reporting to standard error.
inline mcrctrl::SolverSteps exampleSolverSteps()
{
    const QString program = QStringLiteral(ZDS_EXECUTABLE);
    const auto report = [](const QString &text) { std::fprintf(stderr, "%s\n", qPrintable(text)); };
    return mcrctrl::SolverSteps(program, QFileInfo(program).absolutePath() + QStringLiteral("/assets/materials"),
                                report, report);
}

// The bundled example's exchange file after the solver's first step, in a folder of
// the caller's: the common start of the reference programs. Empty when the step fails.
inline QString assembledExample(const mcrctrl::SolverSteps &steps, const QString &folder)
{
    using namespace mcrctrl;
    QDir().mkpath(folder);
    const QString exchange = folder + QStringLiteral("/exchange.mat");
    writeMatFile(exchange, {mat::text(QStringLiteral("file"), QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva")),
                            mat::number(QStringLiteral("motorProps"), 0.0)});
    return steps.assemble(exchange) ? exchange : QString();
}
