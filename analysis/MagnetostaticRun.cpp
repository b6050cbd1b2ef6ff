#include "analysis/MagnetostaticRun.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include "analysis/MagnetostaticAnalysis.h"
#include "analysis/MatExchangeFile.h"
#include "base/ExchangePath.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"

namespace {

// What the first step assembles and the second reads again.
const QStringList assembledNames{"Geometry", "Mesh", "Windings", "RadMesh", "Materials", "SubdomainProperty"};

MatVarPointer stored(const QVariantMap &data, const QString &name)
{
    return MAT_Converter::fromByteArray(data.value(name).toByteArray(), name);
}

MatVarPointer emptyVariable(const QString &name)
{
    return MatVarPointer(MAT_Converter::empty(name));
}

// The solver reads the design from a file of its own.
QString copyOfDocumentFile(const Document *document)
{
    const QString suffix = QFileInfo(document->filePath()).suffix().toLower() == zvapSuffix() ? zvapSuffix()
                                                                                               : zvaSuffix();
    const QString copy = getPathFileExchange(suffix);
    if (!copy.isEmpty() && !QFile::copy(document->filePath(), copy))
        qWarning() << "Can't copy document file" << document->filePath() << "to" << copy;
    return copy;
}

} // namespace

MagnetostaticRun::MagnetostaticRun(MagnetostaticAnalysis *analysis, const QString &program)
    : m_analysis(analysis)
    , m_document(analysis->document())
    , m_console(analysis->console())
    , m_parcer(analysis->document())
    , m_process(program)
{
}

void MagnetostaticRun::exec()
{
    const bool preparing = m_document->isPreparing();
    m_document->setPreparing(true);
    m_document->ensureData();
    m_document->setPreparing(preparing);
    if (m_stopped)
        return;

    const QString path = getPathFileExchange(QStringLiteral("mat"));
    if (path.isEmpty())
        return;

    for (auto signal : {&ScriptConsole::signalLog, &ScriptConsole::signalError, &ScriptConsole::signalWarn,
                        &ScriptConsole::signalInfo}) {
        connect(m_console, signal, this, [this](ScriptConsole::Scope, const QString &text) {
            emit m_analysis->analysisProgressMessage(QStringLiteral("<br>") + text);
        });
    }

    m_server = std::make_unique<RemoteConsoleServer>(remoteConsoleServerName(), m_console);
    const bool assembled = m_analysis->dataSimulation().isEmpty();
    if (!assembled || assemble(path))
        timestep(path, assembled);
    m_server.reset();
    QFile::remove(path);
}

void MagnetostaticRun::stop()
{
    if (m_stopped)
        return;
    m_stopped = true;
    m_console->warn(tr("Analysis stopped"));
    m_process.kill();
}

bool MagnetostaticRun::assemble(const QString &path)
{
    const QString copy = copyOfDocumentFile(m_document);
    const bool written = MatExchangeFile::write(
        path, {{QStringLiteral("file"), MatVarPointer(MAT_Converter::matVar(copy, QStringLiteral("file")))},
               {QStringLiteral("motorProps"), m_parcer.motorPropertiesToMAT()}});
    if (!written) {
        QFile::remove(copy);
        return false;
    }
    m_console->info(tr("Call assembleZVA..."));
    emit m_analysis->analysisProgress(tr("assembleZVA (1/2)"));
    const bool ran = runStep(QStringLiteral("runAssembleZVA"), path);
    QFile::remove(copy);
    if (!ran)
        return false;

    const std::optional<Variables> answer = readAnswer(path);
    if (!answer)
        return false;
    QVariantMap data;
    for (const QString &name : assembledNames) {
        if (answer->contains(name))
            data.insert(name, MAT_Converter::toByteArray(answer->value(name).data()));
        else
            fail(tr("runAssembleZVA results not contains var '%1'").arg(name));
    }
    if (data.size() != assembledNames.size())
        return false;
    m_analysis->setDataSimulation(data);
    return true;
}

void MagnetostaticRun::timestep(const QString &path, bool assembled)
{
    const QVariantMap data = m_analysis->dataSimulation();
    const bool written = MatExchangeFile::write(path, {
        {QStringLiteral("Private"), stored(data, QStringLiteral("Private"))},
        {QStringLiteral("Geometry"), stored(data, QStringLiteral("Geometry"))},
        {QStringLiteral("Mesh"), stored(data, QStringLiteral("Mesh"))},
        {QStringLiteral("Windings"), stored(data, QStringLiteral("Windings"))},
        {QStringLiteral("settingsMagnetostatic"), m_parcer.settingsMagnetostaticToMAT()},
        {QStringLiteral("RadMesh"), stored(data, QStringLiteral("RadMesh"))},
        {QStringLiteral("Materials"), stored(data, QStringLiteral("Materials"))},
        {QStringLiteral("SubdomainProperty"), stored(data, QStringLiteral("SubdomainProperty"))},
        {QStringLiteral("SwitchDutyCycle"), emptyVariable(QStringLiteral("SwitchDutyCycle"))},
        {QStringLiteral("Coefs3D"), emptyVariable(QStringLiteral("Coefs3D"))},
    });
    if (!written)
        return;
    m_console->info(tr("Call runMStimestepping..."));
    emit m_analysis->analysisProgress(assembled ? tr("runMStimestepping (2/2)") : tr("runMStimestepping"));
    if (!runStep(QStringLiteral("runMStimestepping"), path))
        return;

    const std::optional<Variables> answer = readAnswer(path);
    if (!answer)
        return;
    QVariantMap results = data;
    const MatVarPointer privateOut = answer->value(QStringLiteral("Private_out"));
    if (privateOut && !results.contains(QStringLiteral("Private"))) {
        // Stored under the name the next run hands back to the solver.
        const MatVarPointer renamed(MAT_Converter::renamed(privateOut.data(), QStringLiteral("Private")));
        results.insert(QStringLiteral("Private"), MAT_Converter::toByteArray(renamed.data()));
    }
    QVariantMap magnetostatic;
    for (const QString &name : {QStringLiteral("Timesteppingdata"), QStringLiteral("Results")}) {
        if (answer->contains(name))
            magnetostatic.insert(name, MAT_Converter::toByteArray(answer->value(name).data()));
        else
            fail(tr("runMStimestepping results not contains var '%1'").arg(name));
    }
    const bool complete = magnetostatic.size() == 2;
    if (complete)
        results.insert(QStringLiteral("Magnetostatic"), magnetostatic);
    m_analysis->setDataSimulation(results);
    if (complete)
        m_document->loadDataSimulationFromFile(path);
}

bool MagnetostaticRun::runStep(const QString &operation, const QString &path)
{
    const bool ended = m_process.run(operation, path, remoteConsoleServerName());
    m_server->receivePending();
    if (m_stopped)
        return false;
    if (!ended)
        fail(m_process.errorText());
    return true;
}

std::optional<MagnetostaticRun::Variables> MagnetostaticRun::readAnswer(const QString &path)
{
    const std::optional<Variables> answer = MatExchangeFile::read(path);
    if (!answer)
        return std::nullopt;
    const MatVarPointer error = answer->value(QStringLiteral("Error"));
    const QString text = error ? MAT_Converter::toVariant(error.data()).toString() : QString();
    if (text.isEmpty())
        return answer;
    fail(text);
    return std::nullopt;
}

void MagnetostaticRun::fail(const QString &text)
{
    qCritical().noquote() << text;
    m_console->error(text);
}
