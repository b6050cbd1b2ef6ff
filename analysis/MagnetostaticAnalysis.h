#pragma once

#include <QPair>
#include <QString>
#include <QVariantMap>

#include "document/CoreMotorElement.h"

class MagnetostaticRun;
class QDataStream;
class ScriptConsole;

// The settings of a magnetostatic analysis and what the solver returned for the
// present design. Results don't outlive a change of the design.
class MagnetostaticAnalysis : public CoreMotorElement
{
    Q_OBJECT
    Q_PROPERTY(SolverType solverType READ solverType WRITE setSolverType NOTIFY solverTypeChanged)
    Q_PROPERTY(Accuracy accuracy READ accuracy WRITE setAccuracy NOTIFY accuracyChanged)
    Q_PROPERTY(int numberPoints READ numberPoints WRITE setNumberPoints NOTIFY numberPointsChanged)
    Q_PROPERTY(TimePeriodMode timePeriodMode READ timePeriodMode WRITE setTimePeriodMode NOTIFY timePeriodModeChanged)
    Q_PROPERTY(QPair<double, double> timePeriod READ timePeriod WRITE setTimePeriod NOTIFY timePeriodChanged)
    Q_PROPERTY(double converganceTolerance READ converganceTolerance WRITE setConverganceTolerance NOTIFY converganceToleranceChanged)
    Q_PROPERTY(double advanceAngle READ advanceAngle WRITE setAdvanceAngle NOTIFY advanceAngleChanged)
    Q_PROPERTY(double mechanicalSpeed READ mechanicalSpeed WRITE setMechanicalSpeed NOTIFY mechanicalSpeedChanged)
    Q_PROPERTY(bool computeCoggingTorque READ computeCoggingTorque WRITE setComputeCoggingTorque NOTIFY computeCoggingTorqueChanged)
    Q_PROPERTY(bool saveEachFieldSolution READ saveEachFieldSolution WRITE setSaveEachFieldSolution NOTIFY saveEachFieldSolutionChanged)
    Q_PROPERTY(QString folderFieldsSolution READ folderFieldsSolution WRITE setFolderFieldsSolution NOTIFY folderFieldsSolutionChanged)
    Q_PROPERTY(bool clearConsoleOnRun READ clearConsoleOnRun WRITE setClearConsoleOnRun NOTIFY clearConsoleOnRunChanged)
    Q_PROPERTY(bool running READ isRunning NOTIFY runningChanged)
    Q_PROPERTY(QVariantMap dataSimulation READ dataSimulation WRITE setDataSimulation NOTIFY resultsChanged)

public:
    enum SolverType : int {
        Nonlinear = 1,
        Linear = 2,
    };
    Q_ENUM(SolverType)

    enum Accuracy : int {
        DefinePoint = -1,
        SinglePoint = 1,
        TwoPoint = 2,
        FourPoint = 4,
        EightPoint = 8,
    };
    Q_ENUM(Accuracy)

    enum TimePeriodMode : int {
        OneElecticalPeriod = 1,
        DefinePeriod = 2,
    };
    Q_ENUM(TimePeriodMode)

    // From and to.
    using TimePeriod = QPair<double, double>;

    explicit MagnetostaticAnalysis(Document *document);

    ScriptConsole *console() const { return m_console; }

    static QString solverTypeName(SolverType type);
    static QString accuracyName(Accuracy accuracy);
    static QString timePeriodModeName(TimePeriodMode mode);

    SolverType solverType() const { return m_solverType; }
    void setSolverType(SolverType type);
    Accuracy accuracy() const { return m_accuracy; }
    void setAccuracy(Accuracy accuracy);
    // Points per cogging period, or per electrical period when defined by the user.
    int numberPoints() const { return m_numberPoints; }
    void setNumberPoints(int points);
    // The count of rotor positions that the solver steps through.
    int solverNumberPoints() const;
    TimePeriodMode timePeriodMode() const { return m_timePeriodMode; }
    void setTimePeriodMode(TimePeriodMode mode);
    TimePeriod timePeriod() const { return m_timePeriod; }
    void setTimePeriod(const TimePeriod &period);
    double converganceTolerance() const { return m_converganceTolerance; }
    void setConverganceTolerance(double tolerance);
    // Degrees.
    double advanceAngle() const { return m_advanceAngle; }
    void setAdvanceAngle(double angle);
    // rpm.
    double mechanicalSpeed() const { return m_mechanicalSpeed; }
    void setMechanicalSpeed(double speed);
    bool computeCoggingTorque() const { return m_computeCoggingTorque; }
    void setComputeCoggingTorque(bool compute);
    bool saveEachFieldSolution() const { return m_saveEachFieldSolution; }
    void setSaveEachFieldSolution(bool save);
    QString folderFieldsSolution() const { return m_folderFieldsSolution; }
    void setFolderFieldsSolution(const QString &folder);
    bool clearConsoleOnRun() const { return m_clearConsoleOnRun; }
    void setClearConsoleOnRun(bool clear);
    bool isRunning() const { return m_running; }

    // The program whose copies run the solver steps: this program's own file unless
    // another one is set.
    QString solverProgram() const { return m_solverProgram; }
    void setSolverProgram(const QString &program) { m_solverProgram = program; }

    // The whole analysis of the design, from its meshes to the results; returns
    // when it has ended. The event loop runs meanwhile. A second call while a run
    // is going on does nothing.
    void run();
    // Ends a run: the running solver step is killed and the results stay as they
    // were before the run.
    void stop();

    // What the solver returned: one-variable MAT files as bytes, by variable name.
    QVariantMap dataSimulation() const { return m_dataSimulation; }
    void setDataSimulation(const QVariantMap &data);
    // The solver's answer of the last run, by the name it gave ("Results",
    // "Timesteppingdata"), as Qt values; empty without results or when they can't be read.
    QVariantMap solverOutput(const QString &name) const;

    // The analysis's block of a document file: the settings and the results. load
    // returns false, having changed nothing, for a version newer than this program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

signals:
    void solverTypeChanged();
    void accuracyChanged();
    void numberPointsChanged();
    void timePeriodModeChanged();
    void timePeriodChanged();
    void converganceToleranceChanged();
    void advanceAngleChanged();
    void mechanicalSpeedChanged();
    void computeCoggingTorqueChanged();
    void saveEachFieldSolutionChanged();
    void folderFieldsSolutionChanged();
    void clearConsoleOnRunChanged();
    void runningChanged();
    void changed();
    void resultsChanged();
    void dataSimulationChanged();
    void analysisStarted();
    void analysisProgressMessage(QString message);
    void analysisProgress(QString progress);
    void analysisStoped();

private:
    template <typename T, typename Signal>
    void assign(T &field, const T &value, Signal signal);
    void dropResults();
    void setRunning(bool running);

    ScriptConsole *m_console;
    SolverType m_solverType = Nonlinear;
    Accuracy m_accuracy = SinglePoint;
    int m_numberPoints = 1;
    // The user's count, kept while another accuracy fixes the points.
    int m_keptNumberPoints = 1;
    // Carried from file to file unread.
    qint32 m_reserved = 0;
    TimePeriodMode m_timePeriodMode = OneElecticalPeriod;
    TimePeriod m_timePeriod = TimePeriod(0.0, 1.0);
    double m_converganceTolerance = 0.001;
    double m_advanceAngle = 0.0;
    double m_mechanicalSpeed = 1000.0;
    bool m_computeCoggingTorque = false;
    bool m_saveEachFieldSolution = false;
    QString m_folderFieldsSolution;
    bool m_clearConsoleOnRun = true;
    bool m_running = false;
    QVariantMap m_dataSimulation;
    QString m_solverProgram;
    MagnetostaticRun *m_run = nullptr;
};

// Makes the enumerations of the analysis and of the drive known to QVariant by
// name, stored as their 32-bit value, so that files and the undo history carry them.
void registerAnalysisTypes();
