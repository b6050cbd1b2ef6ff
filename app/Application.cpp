#include "app/Application.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include "app/ExchangeFile.h"
#include "app/SafeMain.h"
#include "app/SolverStep.h"
#include "base/UserMessage.h"
#include "analysis/MAT_Parcer.h"
#include "document/Document.h"
#include "document/UndoStack.h"
#include "winding/WindingObject.h"
#include "ui/MessageBox.h"

namespace {

bool isDocumentSuffix(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == zvaSuffix() || suffix == zvapSuffix();
}

// The checks of a document argument; false after telling the user what is wrong.
bool checkDocumentFile(const QString &path)
{
    if (!isDocumentSuffix(path)) {
        MessageBox::warning(nullptr, QCoreApplication::applicationName(),
                            QCoreApplication::translate("Application", "Can't open file %1. Unsupported file type!")
                                .arg(path));
        return false;
    }
    if (!QFileInfo::exists(path)) {
        MessageBox::warning(nullptr, QCoreApplication::applicationName(),
                            QCoreApplication::translate("Application", "File %1 does not exist").arg(path));
        return false;
    }
    return true;
}

} // namespace

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setParentProcessKind(ParentProcessKind::None);
    setOrganizationName(QStringLiteral("Quorlan"));
    setApplicationName(QStringLiteral("Zolvane Design Studio"));
    setApplicationVersion(QStringLiteral(ZDS_VERSION));
    UserMessage::setCriticalPresenter(
        [](const QString &text) { MessageBox::critical(nullptr, QCoreApplication::applicationName(), text); });

    const QString parentName = parentProcessFileName().toLower();
    qInfo() << "Parent process:" << parentName;
    setParentProcessKind(parentProcessKindOf(parentName));
}

Application::~Application() = default;

QString Application::documentArgument() const
{
    const QStringList positional = m_parser.positionalArguments();
    return positional.isEmpty() ? QString() : resolveShellLink(m_parser.callerPath(positional.first()));
}

bool Application::loadDocument(Document &document, const QString &path)
{
    document.start();
    return document.load(path);
}

int Application::runHeadless()
{
    if (m_parser.isWrite())
        return runWrite();
    if (m_parser.isRunAssembleZVA() || m_parser.isRunMStimestepping()) {
        if (m_parser.isRunAssembleZVA())
            runAssembleZVA(m_parser.exchangeFile());
        else
            runMStimestepping(m_parser.exchangeFile());
        terminateAtExit = 1;
        return 0;
    }
    return runDocumentOperation();
}

int Application::runWrite()
{
    if (m_parser.exchangeFile().isEmpty()) {
        MessageBox::critical(nullptr, applicationName(), tr("Exchange file is not defined"));
        return -1;
    }
    const QString path = documentArgument();
    if (path.isEmpty()) {
        qCritical() << "Error: no file option";
        return -1;
    }
    Document document;
    if (!loadDocument(document, path))
        return -1;
    handleCmdWrite(document, m_parser.exchangeFile(), path);
    return 0;
}

int Application::runDocumentOperation()
{
    const QString path = documentArgument();
    if (path.isEmpty()) {
        qCritical() << "Error: no file option";
        return -1;
    }
    if (!checkDocumentFile(path) || !m_parser.checkOptions())
        return -1;
    Document document;
    if (!loadDocument(document, path))
        return -1;
    // Without an operation the checked options leave only the export.
    if (m_parser.operation().isEmpty()) {
        document.exportToJson(m_parser.jsonFile());
        return 0;
    }
    const QString exchangeFile = m_parser.exchangeFile();
    if (m_parser.isExecute())
        handleCmdExecute(document, exchangeFile);
    else if (m_parser.isRead())
        handleCmdRead(document, exchangeFile);
    else if (m_parser.isGetProps())
        handleCmdGetProps(document, exchangeFile);
    else if (m_parser.isCalculate())
        handleCmdCalculate(document, exchangeFile);
    else if (m_parser.isSaveZVA())
        handleCmdSaveZVA(document, exchangeFile, m_parser.fileSaveTo());
    else
        return -1;
    return 0;
}

void Application::handleCmdExecute(Document &document, const QString &exchangeFile)
{
    // The parent asked for the design, not for the end turns' warning.
    document.winding()->setEndturnShapeGenerated(true, false);
    QElapsedTimer timer;
    timer.start();
    const bool result = document.writeExchangeFile(exchangeFile);
    qInfo() << "Export data at" << timer.elapsed() << "ms, result:" << result;
}

void Application::handleCmdRead(Document &document, const QString &exchangeFile)
{
    QElapsedTimer timer;
    timer.start();
    const bool result = document.saveDataSimulationToFile(exchangeFile);
    qInfo() << "Read simulation data at" << timer.elapsed() << "ms, result:" << result;
}

void Application::handleCmdGetProps(Document &document, const QString &exchangeFile)
{
    const bool result = MAT_Parcer(&document).saveMotorProperties(exchangeFile);
    qInfo() << "handleCmdGetProps, result:" << result;
}

void Application::handleCmdCalculate(Document &document, const QString &exchangeFile)
{
    if (!MAT_Parcer(&document).loadMotorProperties(exchangeFile))
        return;
    const bool result = document.writeExchangeFile(exchangeFile);
    qDebug() << "handleCmdCalculate, result:" << result;
}

void Application::handleCmdSaveZVA(Document &document, const QString &exchangeFile, const QString &fileToSave)
{
    if (!MAT_Parcer(&document).loadMotorProperties(exchangeFile)) {
        qCritical() << "Load motor properties failed";
        return;
    }
    document.undoStack()->clear();
    document.clearSimulationData();
    document.setPreparing(false);
    document.setModified(true);
    const bool result = document.save(fileToSave, nullptr);
    qInfo() << "handleCmdSaveZVA, result:" << result;
}

void Application::handleCmdWrite(Document &document, const QString &exchangeFile, const QString &documentFile)
{
    if (!checkDocumentFile(documentFile))
        return;
    QElapsedTimer timer;
    timer.start();
    if (!document.loadDataSimulationFromFile(exchangeFile)) {
        qCritical() << "Load simulation data failed";
        return;
    }
    const QImage picture = document.isProtectedFile() ? document.previewImage() : QImage();
    document.setPreparing(false);
    document.setModified(true);

    QFileInfo info(documentFile);
    if (!info.isWritable() || !info.permission(QFileDevice::WriteOwner)) {
        // The parent asked for this write: the owner's protection is lifted, and said so.
        qWarning().noquote() << "Warning: the read-only file" << QDir::toNativeSeparators(documentFile)
                             << "is made writable for the write operation";
        QFile file(documentFile);
        if (!file.setPermissions(file.permissions() | QFileDevice::WriteUser)) {
            MessageBox::critical(nullptr, applicationName(),
                                 tr("Can't open file %1 for writing. You may not have write permission.")
                                     .arg(QDir::toNativeSeparators(documentFile)));
            return;
        }
    }
    const bool result = document.save(documentFile, &picture);
    qInfo() << "Write simulation data at" << timer.elapsed() << "ms, result:" << result;
}

void Application::runAssembleZVA(const QString &exchangeFile)
{
    runSolverStep(SolverStep::AssembleZVA, exchangeFile, m_parser.remoteConsoleName());
}

void Application::runMStimestepping(const QString &exchangeFile)
{
    runSolverStep(SolverStep::MStimestepping, exchangeFile, m_parser.remoteConsoleName());
}
