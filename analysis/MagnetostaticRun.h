#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <memory>
#include <optional>

#include "analysis/MAT_Converter.h"
#include "analysis/MAT_Parcer.h"
#include "analysis/RemoteConsoleServer.h"
#include "analysis/SolverProcess.h"

class Document;
class MagnetostaticAnalysis;
class ScriptConsole;

// One run of the solver for an analysis: the exchange file, the two steps in child
// processes, the console server that hears them, and what their answers change.
// Whatever goes wrong, the design and the results of an earlier run stay as they were.
class MagnetostaticRun : public QObject
{
    Q_OBJECT
public:
    using Variables = QHash<QString, MatVarPointer>;

    MagnetostaticRun(MagnetostaticAnalysis *analysis, const QString &program);

    // Returns when the run has ended.
    void exec();
    // Ends the running step at once; no further step starts.
    void stop();

private:
    bool assemble(const QString &path);
    void timestep(const QString &path, bool assembled);
    // False when the run was stopped; a step that failed otherwise is reported and
    // its exchange file read back as it was left.
    bool runStep(const QString &operation, const QString &path);
    // The answer of a step, unless it can't be read or is the solver's error.
    std::optional<Variables> readAnswer(const QString &path);
    void fail(const QString &text);

    MagnetostaticAnalysis *m_analysis;
    Document *m_document;
    ScriptConsole *m_console;
    MAT_Parcer m_parcer;
    SolverProcess m_process;
    std::unique_ptr<RemoteConsoleServer> m_server;
    bool m_stopped = false;
};
