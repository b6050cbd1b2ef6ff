#pragma once

#include <QObject>

#include "analysis/MCRCtrl/MCRCtrlInterface.h"

// Stands in for the solver: each step reports one info and one error. A MAT
// exchange file is answered as the solver does, with the variables of its step or
// with `Error` when an input is missing; any other file gets the step's name
// appended as a line, so a test sees which step ran on what. The environment
// variable ZDS_TEST_SOLVER makes a step misbehave: "error" answers with `Error`,
// "no-RadMesh" leaves that variable out, "sleep" waits a minute before answering,
// "exit" ends the process with the exit code 3.
class TestMCRCtrlPlugin : public QObject, public MCRCtrlInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.zolvane.MCRCtrl")
    Q_INTERFACES(MCRCtrlInterface)
public:
    void setConsole(MCRCtrlInterface::Console *console) override;
    void runMStimestepping(const QString &exchangeFile) override;
    void runAssembleZVA(const QString &exchangeFile) override;

private:
    void runStep(const QString &step, const QString &exchangeFile);

    MCRCtrlInterface::Console *m_console = nullptr;
};
