#pragma once

#include <QString>
#include <functional>

namespace mcrctrl {

// The two steps of the solver on an exchange file. Each reads the file and replaces it
// with its answer; on failure the answer is the variable Error with the text, which
// also goes to the error report.
class SolverSteps
{
public:
    using Report = std::function<void(const QString &)>;

    // The program writes a design's exchange file; the material library files lie in
    // the folder.
    SolverSteps(QString program, QString materialsFolder, Report info, Report error);

    // In: file (a design), motorProps. Out: Geometry, Mesh, Windings (with the strands'
    // diameter), RadMesh, Materials (with the B-H tables and magnet data),
    // SubdomainProperty.
    bool assemble(const QString &exchangeFile) const;
    // In: what assemble gave and settingsMagnetostatic. Out: Timesteppingdata, Results,
    // Private_out.
    bool timestep(const QString &exchangeFile) const;

private:
    void assembleOrThrow(const QString &exchangeFile) const;
    void timestepOrThrow(const QString &exchangeFile) const;
    bool guarded(const QString &exchangeFile, const std::function<void()> &step) const;

    QString m_program;
    QString m_materialsFolder;
    Report m_info;
    Report m_error;
};

} // namespace mcrctrl
