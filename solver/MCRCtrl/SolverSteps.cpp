#include "solver/MCRCtrl/SolverSteps.h"

#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/MaterialFiles.h"
#include "solver/MCRCtrl/SliceModel.h"
#include "solver/MCRCtrl/TimeStepping.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <matio.h>

namespace mcrctrl {

namespace {

// A design of the example's size is written in seconds; a hung writer is not waited for.
constexpr int designTimeoutMs = 10 * 60 * 1000;

const QStringList passedOn{"Geometry", "Mesh", "Windings", "RadMesh"};

ExchangeData exchangeData(const MatReader &file)
{
    return {file.value(QStringLiteral("Geometry")), file.value(QStringLiteral("Mesh")),
            file.value(QStringLiteral("Windings")), file.value(QStringLiteral("Materials")),
            file.value(QStringLiteral("SubdomainProperty"))};
}

matvar_t *ironTable(const IronData &iron)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < iron.h.size(); ++i) {
        values.push_back(iron.h[i]);
        values.push_back(iron.b[i]);
    }
    return mat::matrix(QString(), 2, int(iron.h.size()), values);
}

using Fields = std::vector<std::pair<QString, matvar_t *>>;

// Copies of the fields of a struct, to be written with more of them.
Fields fieldsOf(const matvar_t *structure)
{
    Fields fields;
    const unsigned count = Mat_VarGetNumberOfFields(const_cast<matvar_t *>(structure));
    char *const *names = Mat_VarGetStructFieldnames(structure);
    for (unsigned f = 0; f < count; ++f) {
        const matvar_t *field = Mat_VarGetStructFieldByIndex(const_cast<matvar_t *>(structure), f, 0);
        if (field)
            fields.emplace_back(QString::fromUtf8(names[f]), mat::renamed(field, QString()));
    }
    return fields;
}

// The design's winding with the diameter of its strands, mm, which the program gives
// only among the properties of the winding.
matvar_t *assembledWindings(const MatReader &design)
{
    Fields fields = fieldsOf(design.raw(QStringLiteral("Windings")));
    const MatValue properties = design.contains(QStringLiteral("motorProps")) ? design.value(QStringLiteral("motorProps")) : MatValue();
    const MatValue *winding = properties.findField(QStringLiteral("windings"));
    const MatValue *diameter = winding ? winding->findField(QStringLiteral("strandDiameter")) : nullptr;
    if (diameter && diameter->kind == MatValue::Numbers && diameter->numbers.size() == 1 && diameter->numbers.front() > 0.0)
        fields.emplace_back(QStringLiteral("strandDiameter"), mat::number(QString(), diameter->numbers.front()));
    return mat::structure(QStringLiteral("Windings"), fields);
}

// The design's materials with what the solver needs of them from the library files.
matvar_t *assembledMaterials(const MatReader &design, const MaterialFiles &library, const SolverSteps::Report &info)
{
    const matvar_t *materials = design.raw(QStringLiteral("Materials"));
    const MatValue value = MatValue::from(materials);
    if (value.kind != MatValue::Struct)
        throw StepError(QStringLiteral("The design has no materials"));
    Fields fields = fieldsOf(materials);
    const auto nameOf = [&](const char *field) {
        const MatValue *text = value.findField(QString::fromLatin1(field));
        return text && text->kind == MatValue::Text ? text->text : QString();
    };
    for (const char *side : {"stator", "rotor"}) {
        const QString name = nameOf(side == QLatin1String("stator") ? "statorironmaterial" : "rotorironmaterial");
        if (name.isEmpty())
            continue;
        if (const std::optional<IronData> iron = library.iron(name))
            fields.emplace_back(QString::fromLatin1(side) + QStringLiteral("ironBH"), ironTable(*iron));
        else
            info(QStringLiteral("No B-H curve found for the iron '%1'").arg(name));
        if (const std::optional<IronLossData> loss = library.ironLoss(name)) {
            const IronLossCoefficients &c = loss->coefficients;
            fields.emplace_back(QString::fromLatin1(side) + QStringLiteral("ironLoss"), mat::row(QString(), {c.kh, c.ke, c.a, c.b}));
            fields.emplace_back(QString::fromLatin1(side) + QStringLiteral("ironDensity"), mat::number(QString(), loss->massDensity));
        } else {
            info(QStringLiteral("No iron loss data or mass density found for the iron '%1'").arg(name));
        }
    }
    const QString magnet = nameOf("magnetmaterial");
    if (!magnet.isEmpty()) {
        if (const std::optional<MagnetData> data = library.magnet(magnet)) {
            fields.emplace_back(QStringLiteral("magnetBr"), mat::number(QString(), data->remanence));
            fields.emplace_back(QStringLiteral("magnetMur"), mat::number(QString(), data->relativePermeability));
            fields.emplace_back(QStringLiteral("magnetAlphaBr"), mat::number(QString(), data->remanenceCoefficient));
            if (data->intrinsicCoercivity) {
                fields.emplace_back(QStringLiteral("magnetHcj"), mat::number(QString(), *data->intrinsicCoercivity));
                fields.emplace_back(QStringLiteral("magnetAlphaHcj"), mat::number(QString(), data->coercivityCoefficient));
            }
            if (data->resistivity)
                fields.emplace_back(QStringLiteral("magnetResistivity"), mat::number(QString(), *data->resistivity));
        } else {
            info(QStringLiteral("No remanence found for the magnet '%1'").arg(magnet));
        }
    }
    return mat::structure(QStringLiteral("Materials"), fields);
}

} // namespace

SolverSteps::SolverSteps(QString program, QString materialsFolder, Report info, Report error)
    : m_program(std::move(program))
    , m_materialsFolder(std::move(materialsFolder))
    , m_info(std::move(info))
    , m_error(std::move(error))
{
}

bool SolverSteps::assemble(const QString &exchangeFile) const
{
    return guarded(exchangeFile, [&] { assembleOrThrow(exchangeFile); });
}

bool SolverSteps::timestep(const QString &exchangeFile) const
{
    return guarded(exchangeFile, [&] { timestepOrThrow(exchangeFile); });
}

bool SolverSteps::guarded(const QString &exchangeFile, const std::function<void()> &step) const
{
    QString failure;
    try {
        step();
        return true;
    } catch (const StepError &error) {
        failure = error.text();
    } catch (const std::exception &error) {
        failure = QStringLiteral("The solver failed: %1").arg(QString::fromLocal8Bit(error.what()));
    }
    m_error(failure);
    try {
        writeMatFile(exchangeFile, {mat::text(QStringLiteral("Error"), failure)});
    } catch (const StepError &error) {
        m_error(error.text());
    }
    return false;
}

void SolverSteps::assembleOrThrow(const QString &exchangeFile) const
{
    const MatReader input(exchangeFile);
    const QString design = input.value(QStringLiteral("file")).text;
    if (design.isEmpty() || !QFileInfo::exists(design))
        throw StepError(QStringLiteral("There is no design at '%1'").arg(design));

    // The program writes the design's regions, meshes and winding; the plug-in knows
    // no more of it than that file.
    m_info(QStringLiteral("Writing the design's meshes..."));
    const QString written = exchangeFile + QStringLiteral(".design.mat");
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!environment.contains(QStringLiteral("QT_QPA_PLATFORM")))
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.setStandardOutputFile(QProcess::nullDevice());
    program.start(m_program, {design, QStringLiteral("--operation=execute"), QStringLiteral("--page=hidden"),
                              QStringLiteral("--exchange-file=") + written});
    const bool ended = program.waitForFinished(designTimeoutMs);
    if (!ended || program.exitStatus() != QProcess::NormalExit || !QFileInfo::exists(written)) {
        program.kill();
        QFile::remove(written);
        throw StepError(QStringLiteral("The design's meshes could not be written: %1").arg(program.errorString()));
    }
    const MatReader result(written);
    QFile::remove(written);
    const MatValue error = result.value(QStringLiteral("Error"));
    if (error.kind == MatValue::Text && !error.text.isEmpty())
        throw StepError(QStringLiteral("The design has errors: %1").arg(error.text));
    for (const QString &name : passedOn + QStringList{"cell_Properties", "cell_MaterialType", "Materials"}) {
        if (result.value(name).isEmpty())
            throw StepError(QStringLiteral("The design gives no '%1' (a protected design can't be analysed)").arg(name));
    }

    const MaterialFiles library(m_materialsFolder);
    std::vector<matvar_t *> answer;
    for (const QString &name : passedOn)
        answer.push_back(name == QLatin1String("Windings") ? assembledWindings(result) : mat::renamed(result.raw(name), name));
    answer.push_back(assembledMaterials(result, library, m_info));
    answer.push_back(mat::structure(QStringLiteral("SubdomainProperty"),
                                    {{QStringLiteral("Properties"), mat::renamed(result.raw(QStringLiteral("cell_Properties")), QString())},
                                     {QStringLiteral("MaterialType"), mat::renamed(result.raw(QStringLiteral("cell_MaterialType")), QString())}}));

    // The models are made once here, so that unfit input stops the run before the time steps.
    ExchangeData data{MatValue::from(answer[0]), MatValue::from(answer[1]), MatValue::from(answer[2]),
                      MatValue::from(answer[4]), MatValue::from(answer[5])};
    try {
        const std::vector<SliceModel> slices = readSlices(data, readMachine(data, false));
        std::size_t nodes = 0;
        std::size_t triangles = 0;
        for (const SliceModel &slice : slices) {
            nodes += slice.base.mesh.nodes.size();
            triangles += slice.base.mesh.triangles.size();
        }
        m_info(QStringLiteral("Assembled %1 slices: %2 nodes, %3 triangles").arg(slices.size()).arg(nodes).arg(triangles));
    } catch (...) {
        for (matvar_t *variable : answer)
            mat::release(variable);
        throw;
    }
    writeMatFile(exchangeFile, answer);
}

void SolverSteps::timestepOrThrow(const QString &exchangeFile) const
{
    QElapsedTimer timer;
    timer.start();
    const MatReader input(exchangeFile);
    const ExchangeData data = exchangeData(input);
    const RunSettings settings = RunSettings::from(input.value(QStringLiteral("settingsMagnetostatic")));
    const MachineData machine = readMachine(data, settings.linear);
    TimeStepping stepping(readSlices(data, machine), machine, settings);
    m_info(QStringLiteral("Solving %1 positions, %2").arg(settings.points).arg(settings.linear ? QStringLiteral("linear") : QStringLiteral("nonlinear")));
    stepping.run(m_info);
    m_info(QStringLiteral("Time stepping done in %1 s").arg(timer.elapsed() / 1000.0, 0, 'f', 1));
    writeMatFile(exchangeFile, {stepping.timesteppingData(), stepping.results(), mat::text(QStringLiteral("Private_out"), QStringLiteral("MCRCtrl"))});
}

} // namespace mcrctrl
