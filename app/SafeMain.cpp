#include "app/SafeMain.h"

#include <BOPAlgo_Options.hxx>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <iostream>
#include <memory>

#include "app/Application.h"
#include "app/FileAssociation.h"
#include "app/Logging.h"
#include "app/QDebugStream.h"
#include "document/Document.h"
#include "geometry/servoce/step.h"
#include "meshing/NetgenMesher.h"
#include "ui/MainWindow.h"
#include "ui/MessageBox.h"

volatile char terminateAtExit = 0;

namespace {

bool isInteractive(const CommandLineParcer &parser)
{
    if (!parser.hasOptions())
        return true;
    return parser.isExecute() && parser.page().toLower() != QLatin1String("hidden");
}

int runInteractive(const Application &application)
{
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    registerFileType(program, QCoreApplication::applicationName(), zvaSuffix(), 0);
    registerFileType(program, QCoreApplication::applicationName(), zvapSuffix(), 1);
    const CommandLineParcer &parser = application.parser();
    WindowStart start;
    const QString document = application.documentArgument();
    if (!document.isEmpty())
        start.files = QStringList{document};
    start.slave = parser.isExecute();
    start.editable = parser.isEditEnabled();
    start.exchangeFile = parser.exchangeFile();
    start.caption = parser.caption();
    start.page = parser.page();
    MainWindow window(start);
    window.show();
    // The exit code of an interactive session is always 0.
    QApplication::exec();
    return 0;
}

// Straight to the process's standard output: std::cout goes to the log by now.
void printToTerminal(const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace

int safeMain(int argc, char *argv[])
{
    auto application = std::make_unique<Application>(argc, argv);
    BOPAlgo_Options::SetParallelMode(true);
    servoce::initialize();
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    QDir().mkpath(logsPath());
    removeOldLogs();
    const CommandLineParcer &parser = application->parser();
    setLogOperationName(parser.operation());
    qSetMessagePattern(QStringLiteral("%{message}"));
    auto coutStream = std::make_unique<QDebugStream>(std::cout, QStringLiteral("std::cout:"));
    auto cerrStream = std::make_unique<QDebugStream>(std::cerr, QStringLiteral("std::cerr:"));
    qInstallMessageHandler(messageHandler);

    qInfo() << " *** Start application ***";
    qInfo() << "args:" << QCoreApplication::arguments();
    qInfo().noquote() << "app module, last modified:"
            << QFileInfo(QCoreApplication::applicationFilePath())
                   .lastModified()
                   .toString(QStringLiteral("d.MM.yyyy h:mm:ss"));

    int result = 0;
    if (parser.isHelpSet()) {
        // Whoever typed the option in a terminal reads it there too.
        printToTerminal(parser.helpText());
        MessageBox::information(nullptr, QCoreApplication::applicationName(), parser.helpText(), QMessageBox::Ok);
    } else if (parser.isVersionSet()) {
        printToTerminal(QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion()
                        + QLatin1Char('\n'));
    } else {
        {
            const NetgenSession netgen;
            result = isInteractive(parser) ? runInteractive(*application) : application->runHeadless();
        }
        qInfo() << " *** Application finished, result:" << result << "***\n";
    }

    cerrStream.reset();
    coutStream.reset();
    application.reset();
    return result;
}
