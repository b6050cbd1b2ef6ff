#pragma once

#include <QObject>
#include <QString>

// The solver plug-in as the program sees it. The plug-in is built from this header
// alone, so it names nothing of the program but Qt.
class MCRCtrlInterface
{
public:
    // Where the plug-in sends its progress and its errors.
    class Console
    {
    public:
        virtual void info(const QString &text) = 0;
        virtual void error(const QString &text) = 0;

    protected:
        // The plug-in never owns its console.
        ~Console() = default;
    };

    virtual ~MCRCtrlInterface() = default;

    virtual void setConsole(MCRCtrlInterface::Console *console) = 0;
    // Both steps read the exchange file and write their results into it.
    virtual void runMStimestepping(const QString &exchangeFile) = 0;
    virtual void runAssembleZVA(const QString &exchangeFile) = 0;
};

Q_DECLARE_INTERFACE(MCRCtrlInterface, "org.zolvane.MCRCtrl")
