#include "app/CommandLineParcer.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>

#include "ui/MessageBox.h"

namespace {

const QString operationExecute = QStringLiteral("execute");
const QString operationRead = QStringLiteral("read");
const QString operationWrite = QStringLiteral("write");
const QString operationGetProps = QStringLiteral("getProps");
const QString operationCalculate = QStringLiteral("calculate");
const QString operationSaveZVA = QStringLiteral("saveZVA");
const QString operationRunAssembleZVA = QStringLiteral("runAssembleZVA");
const QString operationRunMStimestepping = QStringLiteral("runMStimestepping");

} // namespace

CommandLineParcer::CommandLineParcer()
    : m_callerDirectory(QDir::currentPath())
    , m_optionHelp(QStringLiteral("help"))
    , m_optionVersion(QStringLiteral("version"))
    , m_optionOperation(QStringLiteral("operation"), QStringLiteral("Set operation"), QStringLiteral("operation"))
    , m_optionExchangeFile(QStringLiteral("exchange-file"), QStringLiteral("Exchange file data"),
                           QStringLiteral("exchange-file"))
    , m_optionCaption(QStringLiteral("caption"), QStringLiteral("Set caption"), QStringLiteral("caption"))
    , m_optionPage(QStringLiteral("page"), QStringLiteral("Show page of editor"), QStringLiteral("page"))
    , m_optionEnableEdit(QStringLiteral("edit"), QStringLiteral("Enable edit"))
    , m_optionExportToJson(QStringLiteral("export-json"), QStringLiteral("export data to json file"),
                           QStringLiteral("json-file"))
    , m_optionFileSaveTo(QStringLiteral("file-save-to"), QStringLiteral("file save to"), QStringLiteral("save-file"))
    , m_optionRemoteConsoleName(QStringLiteral("remoteconsole"), QStringLiteral("name remote console"),
                                QStringLiteral("remoteconsole"))
{
    addPositionalArgument(QStringLiteral("file"), QStringLiteral("Source file to open"));
    m_optionHelp = addHelpOption();
    m_optionVersion = addVersionOption();
    addChecked(m_optionExchangeFile, "m_optionExchangeFile");
    addChecked(m_optionCaption, "m_optionCaption");
    addChecked(m_optionPage, "m_optionPage");
    addChecked(m_optionEnableEdit, "m_optionEnableEdit");
    addChecked(m_optionOperation, "m_optionOperation");
    addChecked(m_optionExportToJson, "m_optionExportToJson");
    addChecked(m_optionFileSaveTo, "m_optionFileSaveTo");
    addChecked(m_optionRemoteConsoleName, "m_optionRemoteConsoleName");
    if (!parse(QCoreApplication::arguments()))
        qCritical() << "Error: application arguments parse with error!";
}

void CommandLineParcer::addChecked(const QCommandLineOption &option, const char *memberName)
{
    if (!addOption(option))
        qCritical().noquote() << QStringLiteral("Error: add option %1!").arg(QLatin1String(memberName));
}

const QStringList &CommandLineParcer::operations()
{
    static const QStringList names{operationExecute,  operationCalculate,      operationRead,
                                   operationWrite,    operationGetProps,       operationRunMStimestepping,
                                   operationRunAssembleZVA, operationSaveZVA};
    return names;
}

QString CommandLineParcer::callerPath(const QString &path) const
{
    return path.isEmpty() ? path : QDir::cleanPath(QDir(m_callerDirectory).absoluteFilePath(path));
}

bool CommandLineParcer::isExecute() const { return operation() == operationExecute; }
bool CommandLineParcer::isRead() const { return operation() == operationRead; }
bool CommandLineParcer::isWrite() const { return operation() == operationWrite; }
bool CommandLineParcer::isGetProps() const { return operation() == operationGetProps; }
bool CommandLineParcer::isCalculate() const { return operation() == operationCalculate; }
bool CommandLineParcer::isSaveZVA() const { return operation() == operationSaveZVA; }
bool CommandLineParcer::isRunAssembleZVA() const { return operation() == operationRunAssembleZVA; }
bool CommandLineParcer::isRunMStimestepping() const { return operation() == operationRunMStimestepping; }

bool CommandLineParcer::checkOptions() const
{
    auto refuse = [](const QString &text) {
        MessageBox::warning(nullptr, QCoreApplication::applicationName(), text);
        return false;
    };
    if (isSet(m_optionOperation)) {
        if (!operations().contains(operation()))
            return refuse(QCoreApplication::translate("CommandLineParcer", "Unknown operation '%1'").arg(operation()));
        if (exchangeFile().isEmpty())
            return refuse(QCoreApplication::translate("CommandLineParcer", "Exchange file is not defined"));
        if (isSaveZVA() && fileSaveTo().isEmpty())
            return refuse(QCoreApplication::translate("CommandLineParcer", "File to save is not defined"));
        return true;
    }
    if (isSet(m_optionExportToJson)) {
        if (jsonFile().isEmpty())
            return refuse(QCoreApplication::translate("CommandLineParcer", "JSON file is not defined"));
        return true;
    }
    return false;
}
