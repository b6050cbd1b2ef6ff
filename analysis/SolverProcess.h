#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

class QEventLoop;

// One solver step in a child process: a copy of the program started with an
// operation, the exchange file and the name of the console server that hears it.
// The solver runs out of this process so that its runtime can't harm the design.
class SolverProcess : public QObject
{
    Q_OBJECT
public:
    explicit SolverProcess(const QString &program, QObject *parent = nullptr);

    // Returns when the child has ended; a nested event loop keeps this process
    // alive meanwhile, so that the console's messages arrive. False when the child
    // couldn't start, crashed, was killed or ended with an exit code other than 0.
    bool run(const QString &operation, const QString &exchangeFile, const QString &consoleName);
    // Ends a running child at once.
    void kill();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    // Why the last run failed; empty after a good one.
    QString errorText() const { return m_errorText; }

private:
    void quitLoop();

    QString m_program;
    QProcess m_process;
    QEventLoop *m_loop = nullptr;
    QString m_errorText;
};
