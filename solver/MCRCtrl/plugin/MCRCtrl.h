#pragma once

#include <QObject>

#include "analysis/MCRCtrl/MCRCtrlInterface.h"

// Our magnetostatic solver as the plug-in that the program's solver steps load.
class MCRCtrl : public QObject, public MCRCtrlInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.zolvane.MCRCtrl")
    Q_INTERFACES(MCRCtrlInterface)
public:
    void setConsole(MCRCtrlInterface::Console *console) override;
    void runMStimestepping(const QString &exchangeFile) override;
    void runAssembleZVA(const QString &exchangeFile) override;

private:
    MCRCtrlInterface::Console *m_console = nullptr;
};
