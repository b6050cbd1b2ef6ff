#pragma once

#include <QObject>

#include "analysis/MCRCtrl/MCRCtrlInterface.h"

// Stands in for the solver: each step reports one info and one error and appends
// its name as a line to the exchange file, so a test sees which step ran on what.
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
