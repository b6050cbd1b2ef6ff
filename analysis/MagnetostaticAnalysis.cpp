#include "analysis/MagnetostaticAnalysis.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDebug>

#include "analysis/DriveSettings.h"
#include "analysis/MAT_Converter.h"
#include "analysis/MagnetostaticRun.h"
#include "base/Assign.h"
#include "base/ScriptConsole.h"
#include "base/StreamChecks.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

namespace {

// Version of the analysis's block in a document file.
const qint32 streamVersion = 2;
// The most points the editor offers.
const int maxNumberPoints = 100000;

} // namespace

MagnetostaticAnalysis::MagnetostaticAnalysis(Document *document)
    : CoreMotorElement(document)
    , m_console(new ScriptConsole(ScriptConsole::Magnitostatic, this))
    , m_solverProgram(QCoreApplication::applicationFilePath())
{
    setObjectName(QStringLiteral("magnetostaticAnalysis"));
    // The property system finds the pair's type by its name.
    qRegisterMetaType<TimePeriod>();

    // Results belong to the design they were computed for.
    connect(document->stator(), &Stator::statorChanged, this, &MagnetostaticAnalysis::dropResults);
    connect(document->rotor(), &Rotor::rotorChanged, this, &MagnetostaticAnalysis::dropResults);
    for (int id = Airgap::ID1; id <= Airgap::ID4; ++id)
        connect(document->airgap(id), &Airgap::airgapChanged, this, &MagnetostaticAnalysis::dropResults);
    connect(document->winding(), &WindingObject::windingChanged, this, &MagnetostaticAnalysis::dropResults);
    connect(document->mesh(), &Mesh::meshChanged, this, &MagnetostaticAnalysis::dropResults);
    connect(this, &MagnetostaticAnalysis::changed, this, &MagnetostaticAnalysis::dropResults);
    // The document holds the solver's file of the last run.
    connect(document, &Document::dataSimulationChanged, this, &MagnetostaticAnalysis::dataSimulationChanged);
}

QString MagnetostaticAnalysis::solverTypeName(SolverType type)
{
    switch (type) {
    case Nonlinear:
        return QStringLiteral("Nonlinear");
    case Linear:
        return QStringLiteral("Linear");
    }
    return QStringLiteral("UnknownSolverType");
}

QString MagnetostaticAnalysis::accuracyName(Accuracy accuracy)
{
    switch (accuracy) {
    case SinglePoint:
        return QStringLiteral("Single point (FEA + D-Q based) - fastest");
    case TwoPoint:
        return QStringLiteral("2 points per cogging - low accuracy");
    case FourPoint:
        return QStringLiteral("4 points per cogging - medium accuracy");
    case EightPoint:
        return QStringLiteral("8 points per cogging - high accuracy");
    case DefinePoint:
        return QStringLiteral("Define number of points per electrical period");
    }
    return QStringLiteral("UnknownAccuracy");
}

QString MagnetostaticAnalysis::timePeriodModeName(TimePeriodMode mode)
{
    switch (mode) {
    case OneElecticalPeriod:
        return QStringLiteral("One electrical period");
    case DefinePeriod:
        return QStringLiteral("Define time period");
    }
    return QStringLiteral("UnknownTimePeriodMode");
}

template <typename T, typename Signal>
void MagnetostaticAnalysis::assign(T &field, const T &value, Signal signal)
{
    if (!assignChanged(field, value))
        return;
    emit(this->*signal)();
    emit changed();
}

void MagnetostaticAnalysis::setSolverType(SolverType type)
{
    assign(m_solverType, type, &MagnetostaticAnalysis::solverTypeChanged);
}

void MagnetostaticAnalysis::setAccuracy(Accuracy accuracy)
{
    if (accuracy == m_accuracy)
        return;
    if (m_accuracy == DefinePoint)
        m_keptNumberPoints = m_numberPoints;
    m_accuracy = accuracy;
    emit accuracyChanged();
    emit changed();
    // The fixed accuracies are named by their number of points.
    const int points = accuracy == DefinePoint ? m_keptNumberPoints : int(accuracy);
    assign(m_numberPoints, points, &MagnetostaticAnalysis::numberPointsChanged);
}

void MagnetostaticAnalysis::setNumberPoints(int points)
{
    if (m_accuracy != DefinePoint) {
        qCritical() << "setNumberPoints for only Accuracy::DefinePoint";
        return;
    }
    assign(m_numberPoints, points, &MagnetostaticAnalysis::numberPointsChanged);
}

int MagnetostaticAnalysis::solverNumberPoints() const
{
    if (m_accuracy == SinglePoint || m_accuracy == DefinePoint)
        return m_numberPoints;
    // Per cogging period: one period for each slot.
    return m_numberPoints * document()->stator()->numberSlots();
}

void MagnetostaticAnalysis::setTimePeriodMode(TimePeriodMode mode)
{
    assign(m_timePeriodMode, mode, &MagnetostaticAnalysis::timePeriodModeChanged);
}

void MagnetostaticAnalysis::setTimePeriod(const TimePeriod &period)
{
    if (qFuzzyCompare(period.first, m_timePeriod.first) && qFuzzyCompare(period.second, m_timePeriod.second))
        return;
    m_timePeriod = period;
    emit timePeriodChanged();
    emit changed();
}

void MagnetostaticAnalysis::setConverganceTolerance(double tolerance)
{
    assign(m_converganceTolerance, tolerance, &MagnetostaticAnalysis::converganceToleranceChanged);
}

void MagnetostaticAnalysis::setAdvanceAngle(double angle)
{
    assign(m_advanceAngle, angle, &MagnetostaticAnalysis::advanceAngleChanged);
}

void MagnetostaticAnalysis::setMechanicalSpeed(double speed)
{
    assign(m_mechanicalSpeed, speed, &MagnetostaticAnalysis::mechanicalSpeedChanged);
}

void MagnetostaticAnalysis::setComputeCoggingTorque(bool compute)
{
    assign(m_computeCoggingTorque, compute, &MagnetostaticAnalysis::computeCoggingTorqueChanged);
}

void MagnetostaticAnalysis::setSaveEachFieldSolution(bool save)
{
    assign(m_saveEachFieldSolution, save, &MagnetostaticAnalysis::saveEachFieldSolutionChanged);
}

void MagnetostaticAnalysis::setFolderFieldsSolution(const QString &folder)
{
    assign(m_folderFieldsSolution, folder, &MagnetostaticAnalysis::folderFieldsSolutionChanged);
}

void MagnetostaticAnalysis::setClearConsoleOnRun(bool clear)
{
    assign(m_clearConsoleOnRun, clear, &MagnetostaticAnalysis::clearConsoleOnRunChanged);
}

void MagnetostaticAnalysis::setDataSimulation(const QVariantMap &data)
{
    if (data == m_dataSimulation)
        return;
    m_dataSimulation = data;
    emit resultsChanged();
}

QVariantMap MagnetostaticAnalysis::solverOutput(const QString &name) const
{
    const QByteArray bytes =
        m_dataSimulation.value(QStringLiteral("Magnetostatic")).toMap().value(name).toByteArray();
    if (bytes.isEmpty())
        return {};
    const MatVarPointer variable = MAT_Converter::fromByteArray(bytes, name);
    return variable ? MAT_Converter::toVariant(variable.data()).toMap() : QVariantMap();
}

void MagnetostaticAnalysis::run()
{
    if (m_running) {
        qWarning() << "The analysis is running already";
        return;
    }
    if (m_clearConsoleOnRun)
        emit m_console->clear(m_console->scope());
    setRunning(true);
    emit analysisStarted();
    QCoreApplication::processEvents();
    {
        MagnetostaticRun run(this, m_solverProgram);
        m_run = &run;
        run.exec();
        m_run = nullptr;
    }
    setRunning(false);
    emit analysisStoped();
}

void MagnetostaticAnalysis::stop()
{
    if (m_run)
        m_run->stop();
}

void MagnetostaticAnalysis::setRunning(bool running)
{
    if (assignChanged(m_running, running))
        emit runningChanged();
}

void MagnetostaticAnalysis::dropResults()
{
    // A run freezes the design; what it computes on the way, such as automatic
    // overhangs, changes no value of the user.
    if (m_running)
        return;
    setDataSimulation(QVariantMap());
}

// Enumerations travel as their 32-bit value.
void MagnetostaticAnalysis::save(QDataStream &out) const
{
    out << streamVersion << m_solverType << m_accuracy << m_numberPoints << m_reserved << m_timePeriodMode
        << m_timePeriod.first << m_timePeriod.second << m_converganceTolerance << m_advanceAngle
        << m_mechanicalSpeed << m_computeCoggingTorque << m_saveEachFieldSolution << m_folderFieldsSolution
        << m_dataSimulation;
}

bool MagnetostaticAnalysis::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > streamVersion)
        return false;
    in >> m_solverType >> m_accuracy >> m_numberPoints >> m_reserved >> m_timePeriodMode >> m_timePeriod.first
        >> m_timePeriod.second >> m_converganceTolerance >> m_advanceAngle >> m_mechanicalSpeed
        >> m_computeCoggingTorque >> m_saveEachFieldSolution >> m_folderFieldsSolution;
    if (version >= 2)
        StreamChecks::readVariantMap(in, m_dataSimulation);
    // The editors and the solver's texts switch on these: damage must not reach them,
    // not even in an object whose load failed further on.
    using StreamChecks::checkEnumerator;
    checkEnumerator(in, m_solverType, Nonlinear, QStringLiteral("the solver type"));
    checkEnumerator(in, m_accuracy, SinglePoint, QStringLiteral("the accuracy"));
    checkEnumerator(in, m_timePeriodMode, OneElecticalPeriod, QStringLiteral("the time period mode"));
    if (in.status() != QDataStream::Ok)
        return true;
    // The solver takes this many positions, times the slots: a damaged count would run for days.
    if (m_numberPoints < 1 || m_numberPoints > maxNumberPoints) {
        StreamChecks::refuse(in, QStringLiteral("the number of points %1 is outside 1 to %2")
                                     .arg(m_numberPoints)
                                     .arg(maxNumberPoints));
        m_numberPoints = 1;
    }
    return true;
}

void registerAnalysisTypes()
{
    static const bool registered = [] {
        qRegisterMetaTypeStreamOperators<MagnetostaticAnalysis::SolverType>("MagnetostaticAnalysis::SolverType");
        qRegisterMetaTypeStreamOperators<MagnetostaticAnalysis::Accuracy>("MagnetostaticAnalysis::Accuracy");
        qRegisterMetaTypeStreamOperators<MagnetostaticAnalysis::TimePeriodMode>(
            "MagnetostaticAnalysis::TimePeriodMode");
        qRegisterMetaTypeStreamOperators<DriveSettings::WaveformCurrent>("DriveSettings::WaveformCurrent");
        qRegisterMetaTypeStreamOperators<DriveSettings::MethodInputCurrent>("DriveSettings::MethodInputCurrent");
        qRegisterMetaTypeStreamOperators<DriveSettings::DriveType>("DriveSettings::DriveType");
        qRegisterMetaTypeStreamOperators<DriveSettings::SwitchDutyCycle>("DriveSettings::SwitchDutyCycle");
        qRegisterMetaTypeStreamOperators<DriveSettings::SixStepOptions>("DriveSettings::SixStepOptions");
        return true;
    }();
    Q_UNUSED(registered)
}
