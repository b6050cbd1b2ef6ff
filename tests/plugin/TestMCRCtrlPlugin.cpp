#include "TestMCRCtrlPlugin.h"

#include <QFile>

void TestMCRCtrlPlugin::setConsole(MCRCtrlInterface::Console *console)
{
    m_console = console;
}

void TestMCRCtrlPlugin::runMStimestepping(const QString &exchangeFile)
{
    runStep(QStringLiteral("runMStimestepping"), exchangeFile);
}

void TestMCRCtrlPlugin::runAssembleZVA(const QString &exchangeFile)
{
    runStep(QStringLiteral("runAssembleZVA"), exchangeFile);
}

void TestMCRCtrlPlugin::runStep(const QString &step, const QString &exchangeFile)
{
    if (m_console) {
        m_console->info(step + QLatin1String(" started"));
        m_console->error(step + QLatin1String(" on ") + exchangeFile);
    }
    QFile file(exchangeFile);
    if (file.open(QIODevice::Append | QIODevice::Text))
        file.write(step.toUtf8() + '\n');
}
