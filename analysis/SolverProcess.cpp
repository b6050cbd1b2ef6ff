#include "analysis/SolverProcess.h"

#include <QEventLoop>

SolverProcess::SolverProcess(const QString &program, QObject *parent)
    : QObject(parent)
    , m_program(program)
{
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &SolverProcess::quitLoop);
    connect(&m_process, &QProcess::errorOccurred, this, &SolverProcess::quitLoop);
}

bool SolverProcess::run(const QString &operation, const QString &exchangeFile, const QString &consoleName)
{
    const QStringList arguments{QStringLiteral("--operation=%1").arg(operation),
                                QStringLiteral("--exchange-file=%1").arg(exchangeFile),
                                QStringLiteral("--remoteconsole=%1").arg(consoleName)};
    m_errorText.clear();
    QEventLoop loop;
    m_loop = &loop;
    m_process.start(m_program, arguments, QIODevice::ReadWrite);
    // A start that failed at once has already told so and left nothing to wait for.
    if (m_process.state() != QProcess::NotRunning)
        loop.exec();
    m_loop = nullptr;
    // An error can end the loop before the child is reaped.
    if (m_process.state() != QProcess::NotRunning)
        m_process.waitForFinished(-1);

    if (m_process.error() == QProcess::FailedToStart || m_process.exitStatus() == QProcess::CrashExit)
        m_errorText = tr("%1 process ended abnormally: %2").arg(operation, m_process.errorString());
    else if (m_process.exitCode() != 0)
        m_errorText = tr("%1 process ended with exit code %2").arg(operation).arg(m_process.exitCode());
    return m_errorText.isEmpty();
}

void SolverProcess::kill()
{
    if (isRunning())
        m_process.kill();
}

void SolverProcess::quitLoop()
{
    if (m_loop)
        m_loop->quit();
}
