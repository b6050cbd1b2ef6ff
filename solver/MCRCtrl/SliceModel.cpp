#include "solver/MCRCtrl/SliceModel.h"

#include "solver/MCRCtrl/SliceTopology.h"
#include "solver/ReluctivityCurve.h"

#include <QRegularExpression>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace mcrctrl {

namespace {

// Coordinates come in metres from millimetres rounded at 1e-7 mm.
constexpr double tolerance = 1e-8;

QString textOf(const MatValue &value)
{
    return value.kind == MatValue::Text ? value.text : QString();
}

double numberOr(const MatValue *value, double fallback)
{
    return value && value->kind == MatValue::Numbers && value->numbers.size() == 1 ? value->numbers.front() : fallback;
}

const MatValue &sliceEntry(const MatValue &cell, int slice, const QString &where)
{
    if (cell.kind != MatValue::Cell || slice >= int(cell.items.size()))
        throw StepError(QStringLiteral("The exchange file has no slice %1 in '%2'").arg(slice + 1).arg(where));
    return cell.items[std::size_t(slice)];
}

// One coil side per row of a phase's coil table that starts or ends in the slot and layer.
struct CoilTable
{
    int phase = 0;
    int layout = 1;
    std::vector<double> values;
    int rows = 0;
    int columns = 0;
};

std::vector<CoilTable> coilTables(const MatValue &windings)
{
    std::vector<CoilTable> tables;
    for (int phase = 0; phase < 3; ++phase) {
        const MatValue &layouts = windings.field(QStringLiteral("layout%1").arg(phase + 1), QStringLiteral("Windings"));
        std::vector<const MatValue *> entries;
        if (layouts.kind == MatValue::Cell) {
            for (const MatValue &item : layouts.items)
                entries.push_back(&item);
        } else {
            entries.push_back(&layouts);
        }
        for (std::size_t layout = 0; layout < entries.size(); ++layout) {
            const MatValue &table = *entries[layout];
            if (table.kind != MatValue::Numbers || table.numbers.empty())
                continue;
            tables.push_back({phase, int(layout) + 1, table.numbers, table.rows, table.columns});
        }
    }
    return tables;
}

// The sides of the coils in a slot and layer: +1 where a coil starts, -1 where it ends.
std::vector<std::pair<int, double>> coilSidesAt(const std::vector<CoilTable> &tables, int layout, int slot, int layer)
{
    std::vector<std::pair<int, double>> found;
    for (const CoilTable &table : tables) {
        if (table.layout != layout)
            continue;
        const bool layered = table.columns >= 6;
        const auto at = [&](int row, int column) { return int(std::lround(table.values[std::size_t(row + column * table.rows)])); };
        for (int row = 0; row < table.rows; ++row) {
            const int from = at(row, 1);
            const int fromLayer = layered ? at(row, 2) : layer;
            const int to = at(row, layered ? 3 : 2);
            const int toLayer = layered ? at(row, 4) : layer;
            if (from == slot && fromLayer == layer)
                found.emplace_back(table.phase, 1.0);
            if (to == slot && toLayer == layer)
                found.emplace_back(table.phase, -1.0);
        }
    }
    return found;
}

double stackingOf(const MatValue &materials, const QString &side)
{
    const double stacking = numberOr(materials.findField(QStringLiteral("k_st_") + side), 1.0);
    return stacking > 0.0 && stacking <= 1.0 ? stacking : 1.0;
}

std::optional<solver::ReluctivityCurve> ironCurve(const MatValue &materials, const QString &side, double &linearPermeability)
{
    const MatValue *table = materials.findField(side + QStringLiteral("ironBH"));
    if (!table || table->kind != MatValue::Numbers || table->rows != 2 || table->columns < 2)
        return std::nullopt;
    std::vector<double> h;
    std::vector<double> b;
    linearPermeability = 1.0;
    for (int column = 0; column < table->columns; ++column) {
        h.push_back(table->at(0, column));
        b.push_back(table->at(1, column));
        if (h.back() > 0.0)
            linearPermeability = std::max(linearPermeability, b.back() / (solver::mu0 * h.back()));
    }
    return solver::ReluctivityCurve::fromBH(h, b, stackingOf(materials, side));
}

IronLossSide ironLossSide(const MatValue &materials, const QString &side)
{
    IronLossSide iron;
    const MatValue *name = materials.findField(side + QStringLiteral("ironmaterial"));
    iron.material = name ? textOf(*name) : QString();
    iron.stacking = stackingOf(materials, side);
    iron.massDensity = numberOr(materials.findField(side + QStringLiteral("ironDensity")), 0.0);
    const MatValue *coefficients = materials.findField(side + QStringLiteral("ironLoss"));
    if (coefficients && coefficients->kind == MatValue::Numbers && coefficients->numbers.size() == 4 && iron.massDensity > 0.0) {
        const std::vector<double> &c = coefficients->numbers;
        iron.coefficients = IronLossCoefficients{c[0], c[1], c[2], c[3]};
    }
    return iron;
}

// The magnets' intrinsic coercivity at their temperature.
std::optional<double> magnetCoercivity(const MatValue &materials)
{
    const double coercivity = numberOr(materials.findField(QStringLiteral("magnetHcj")), 0.0);
    if (!(coercivity > 0.0))
        return std::nullopt;
    const double coefficient = numberOr(materials.findField(QStringLiteral("magnetAlphaHcj")), 0.0);
    const double temperature = numberOr(materials.findField(QStringLiteral("Tpm")), 20.0);
    return coercivity * (1.0 + coefficient * (temperature - 20.0));
}

// From a machine type such as "stator-rotor-stator".
std::vector<Body> stackOf(const QString &type)
{
    std::vector<Body> stack;
    for (const QString &body : type.split(QLatin1Char('-'))) {
        if (body == QLatin1String("stator"))
            stack.push_back(Body::Stator);
        else if (body == QLatin1String("rotor"))
            stack.push_back(Body::Rotor);
        else
            return {};
    }
    return stack;
}

// The layouts in one series branch of a connection such as "1-2" or "(1-2)||(3-4)".
int windingsInSeries(const QString &connection)
{
    const QString branch = connection.split(QStringLiteral("||")).first();
    const int layouts = int(branch.count(QRegularExpression(QStringLiteral("\\d+"))));
    return std::max(1, layouts);
}

std::vector<int> rowNodes(const MatValue &rows, int gap, const QString &where)
{
    const MatValue &row = rows.kind == MatValue::Cell ? sliceEntry(rows, gap, where) : rows;
    std::vector<int> nodes;
    for (const double number : row.numbers)
        nodes.push_back(int(std::lround(number)) - 1);
    return nodes;
}

} // namespace

double SliceModel::bandSegment() const
{
    double segment = 0.0;
    for (const GapBand &band : bands) {
        if (band.rotorRow.size() != band.statorRow.size())
            return 0.0;
        const double length = width / double(band.statorRow.size() - 1);
        for (const std::vector<int> *row : {&band.rotorRow, &band.statorRow}) {
            for (std::size_t i = 1; i < row->size(); ++i) {
                const double step = base.mesh.nodes[std::size_t((*row)[i])].x() - base.mesh.nodes[std::size_t((*row)[i - 1])].x();
                if (std::abs(step - length) > 1e-6 * length)
                    return 0.0;
            }
        }
        if (segment > 0.0 && std::abs(segment - length) > 1e-6 * length)
            return 0.0;
        segment = length;
    }
    return segment;
}

double SliceModel::bandOffset() const
{
    if (bands.empty())
        return 0.0;
    const GapBand &band = bands.front();
    return base.mesh.nodes[std::size_t(band.rotorRow.front())].x() - base.mesh.nodes[std::size_t(band.statorRow.front())].x();
}

double SliceModel::copies() const
{
    return 2.0 * M_PI * radius / width;
}

solver::Problem SliceModel::problemAt(double shift, const std::array<double, 3> &currents) const
{
    solver::Problem problem = base;
    for (std::size_t node = 0; node < moving.size(); ++node) {
        if (moving[node])
            problem.mesh.nodes[node].x() += shift;
    }
    for (const GapBand &band : bands)
        closeBand(problem, band.statorRow, band.rotorRow, width, seamSign, band.region);
    if (!problem.remanence.empty())
        problem.remanence.resize(problem.mesh.triangles.size(), Eigen::Vector2d::Zero());
    for (const PhaseSide &side : sides) {
        const double area = regionArea[std::size_t(side.region)];
        problem.regions[std::size_t(side.region)].currentDensity += side.sign * turnsPerCoil * currents[std::size_t(side.phase)] / area;
    }
    return problem;
}

MachineData readMachine(const ExchangeData &data, bool linear)
{
    const QString windings = QStringLiteral("Windings");
    MachineData machine;
    machine.linear = linear;
    const MatValue *type = data.geometry.findField(QStringLiteral("motortype"));
    machine.stack = stackOf(type ? textOf(*type) : QString());
    machine.polePairs = int(std::lround(data.windings.field(QStringLiteral("nPolePairs"), windings).number(windings + ".nPolePairs")));
    const double layers = textOf(data.geometry.field(QStringLiteral("slotlayertype"), QStringLiteral("Geometry"))).startsWith(QLatin1String("Double")) ? 2.0 : 1.0;
    const double turns = data.windings.field(QStringLiteral("W"), windings).number(windings + ".W");
    machine.turnsPerCoil = turns / layers;
    machine.parallelPaths = std::max(1, int(std::lround(numberOr(data.windings.findField(QStringLiteral("Npp")), 1.0))));
    machine.strands = std::max(1, int(std::lround(numberOr(data.windings.findField(QStringLiteral("nstrands")), 1.0))));
    machine.strandDiameter = std::max(0.0, numberOr(data.windings.findField(QStringLiteral("strandDiameter")), 0.0));
    machine.delta = textOf(data.windings.field(QStringLiteral("statorcircuit"), windings)) == QLatin1String("DeltaConnection");
    machine.phaseResistance = numberOr(data.windings.findField(QStringLiteral("Rs")), 0.0);
    const MatValue *connection = data.windings.findField(QStringLiteral("statorconnection"));
    machine.windingsInSeries = windingsInSeries(connection ? textOf(*connection) : QString());
    machine.statorIron = ironLossSide(data.materials, QStringLiteral("stator"));
    machine.rotorIron = ironLossSide(data.materials, QStringLiteral("rotor"));
    machine.magnetCoercivity = magnetCoercivity(data.materials);
    const double resistivity = numberOr(data.materials.findField(QStringLiteral("magnetResistivity")), 0.0);
    if (resistivity > 0.0)
        machine.magnetResistivity = resistivity;
    if (machine.polePairs < 1)
        throw StepError(QStringLiteral("The winding has no pole pairs"));
    if (!(machine.turnsPerCoil > 0.0))
        throw StepError(QStringLiteral("The winding is empty: it has no turns"));
    return machine;
}

namespace {

Eigen::Vector2d centroidOf(const solver::TriangleMesh &mesh, const solver::Triangle &triangle)
{
    return (mesh.nodes[std::size_t(triangle.nodes[0])] + mesh.nodes[std::size_t(triangle.nodes[1])]
            + mesh.nodes[std::size_t(triangle.nodes[2])]) / 3.0;
}

// The far end, from the row at y in the direction `away`, of the triangles that pass the
// test and lie on that side: y itself when there are none.
template<typename Test>
double farEnd(const solver::Problem &problem, double y, double away, Test test)
{
    double end = y;
    for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
        const solver::Triangle &triangle = problem.mesh.triangles[e];
        if (!test(e, triangle) || (centroidOf(problem.mesh, triangle).y() - y) * away <= 0.0)
            continue;
        for (const int node : triangle.nodes) {
            const double reach = problem.mesh.nodes[std::size_t(node)].y();
            end = away > 0.0 ? std::max(end, reach) : std::min(end, reach);
        }
    }
    return end;
}

// The triangles that carry a remanence.
std::vector<int> magnetElementsOf(const solver::Problem &problem)
{
    std::vector<int> elements;
    for (std::size_t e = 0; e < problem.remanence.size(); ++e) {
        if (problem.remanence[e].squaredNorm() > 0.0)
            elements.push_back(int(e));
    }
    return elements;
}

// The zones of the iron elements. From each air gap, the stator's iron out to the far
// end of the coil sides behind the gap is teeth, and the rotor's iron out to the far
// end of the magnets behind it is no back iron; the rest of each core is back iron.
void findIronZones(SliceModel &slice)
{
    const solver::Problem &problem = slice.base;
    std::vector<char> coil(problem.regions.size(), 0);
    for (const PhaseSide &side : slice.sides)
        coil[std::size_t(side.region)] = 1;
    const auto isCoil = [&](std::size_t, const solver::Triangle &triangle) { return coil[std::size_t(triangle.region)] != 0; };
    const auto isMagnet = [&](std::size_t e, const solver::Triangle &) {
        return !problem.remanence.empty() && problem.remanence[e].squaredNorm() > 0.0;
    };
    std::vector<std::pair<double, double>> toothSpans;
    std::vector<std::pair<double, double>> poleSpans;
    for (const GapBand &band : slice.bands) {
        const double stator = problem.mesh.nodes[std::size_t(band.statorRow.front())].y();
        const double rotor = problem.mesh.nodes[std::size_t(band.rotorRow.front())].y();
        const double intoStator = band.rotorAbove ? -1.0 : 1.0;
        toothSpans.push_back(std::minmax(stator, farEnd(problem, stator, intoStator, isCoil)));
        poleSpans.push_back(std::minmax(rotor, farEnd(problem, rotor, -intoStator, isMagnet)));
    }
    const auto within = [](const std::vector<std::pair<double, double>> &spans, double y) {
        return std::any_of(spans.begin(), spans.end(),
                           [y](const std::pair<double, double> &span) { return y > span.first && y < span.second; });
    };
    slice.ironZones.clear();
    std::vector<int> toothElements;
    for (const int e : slice.ironElements) {
        const solver::Triangle &triangle = problem.mesh.triangles[std::size_t(e)];
        const double y = centroidOf(problem.mesh, triangle).y();
        if (slice.regionIron[std::size_t(triangle.region)] == IronPart::Stator) {
            slice.ironZones.push_back(within(toothSpans, y) ? IronZone::Tooth : IronZone::StatorBackIron);
            if (slice.ironZones.back() == IronZone::Tooth)
                toothElements.push_back(e);
        } else {
            slice.ironZones.push_back(within(poleSpans, y) ? IronZone::Other : IronZone::RotorBackIron);
        }
    }
    const std::vector<int> groups = groupsOf(problem, toothElements);
    slice.teeth.clear();
    std::size_t next = 0;
    for (const IronZone zone : slice.ironZones)
        slice.teeth.push_back(zone == IronZone::Tooth ? groups[next++] : -1);
}

// Makes the slice models of an exchange file, one step of a model per method; what all
// slices share is read once.
class SliceReader
{
public:
    SliceReader(const ExchangeData &data, const MachineData &machine)
        : m_machine(machine)
        , m_points(data.mesh.field(QStringLiteral("p"), QStringLiteral("Mesh")))
        , m_triangles(data.mesh.field(QStringLiteral("t"), QStringLiteral("Mesh")))
        , m_rotorRows(data.mesh.field(QStringLiteral("ipslid_rotor"), QStringLiteral("Mesh")))
        , m_statorRows(data.mesh.field(QStringLiteral("ipslid_stator"), QStringLiteral("Mesh")))
        , m_radii(data.mesh.field(QStringLiteral("Rcs"), QStringLiteral("Mesh")))
        , m_widths(data.mesh.field(QStringLiteral("L"), QStringLiteral("Mesh")))
        , m_properties(data.subdomains.field(QStringLiteral("Properties"), QStringLiteral("SubdomainProperty")))
        , m_types(data.subdomains.field(QStringLiteral("MaterialType"), QStringLiteral("SubdomainProperty")))
        , m_condition(textOf(data.mesh.field(QStringLiteral("perbndcnd"), QStringLiteral("Mesh"))))
        , m_tables(coilTables(data.windings))
        , m_statorCurve(ironCurve(data.materials, QStringLiteral("stator"), m_statorPermeability))
        , m_rotorCurve(ironCurve(data.materials, QStringLiteral("rotor"), m_rotorPermeability))
        , m_remanence(data.materials.findField(QStringLiteral("magnetBr")))
        , m_recoil(numberOr(data.materials.findField(QStringLiteral("magnetMur")), 1.0))
    {
        if (m_tables.empty())
            throw StepError(QStringLiteral("The winding is empty: its layouts have no coils"));
        const double coefficient = numberOr(data.materials.findField(QStringLiteral("magnetAlphaBr")), 0.0);
        const double temperature = numberOr(data.materials.findField(QStringLiteral("Tpm")), 20.0);
        m_temperatureFactor = 1.0 + coefficient * (temperature - 20.0);
        const int slices = count();
        if (slices == 0 || int(m_radii.numbers.size()) < slices || int(m_widths.numbers.size()) < slices)
            throw StepError(QStringLiteral("The exchange file has no slice meshes"));
    }

    int count() const { return m_points.kind == MatValue::Cell ? int(m_points.items.size()) : 0; }

    SliceModel read(int s) const
    {
        SliceModel slice;
        slice.index = s;
        slice.radius = m_radii.numbers[std::size_t(s)];
        slice.length = m_widths.numbers[std::size_t(s)];
        slice.turnsPerCoil = m_machine.turnsPerCoil / m_machine.parallelPaths;
        const QString name = QStringLiteral("slice %1").arg(s + 1);
        const MatValue &types = sliceEntry(m_types, s, QStringLiteral("SubdomainProperty.MaterialType"));
        readMesh(slice, s, int(types.items.size()), name);
        readRegions(slice, sliceEntry(m_properties, s, QStringLiteral("SubdomainProperty.Properties")), types, name);
        const std::vector<char> rowNodes = cutBands(slice, s, name);
        closeSeams(slice, rowNodes, types, name);
        finish(slice, name);
        return slice;
    }

private:
    void readMesh(SliceModel &slice, int s, int regionCount, const QString &name) const
    {
        const MatValue &p = sliceEntry(m_points, s, QStringLiteral("Mesh.p"));
        const MatValue &t = sliceEntry(m_triangles, s, QStringLiteral("Mesh.t"));
        if (p.rows != 2 || t.rows != 4 || p.columns == 0 || t.columns == 0)
            throw StepError(QStringLiteral("The mesh of %1 is empty").arg(name));
        solver::TriangleMesh &mesh = slice.base.mesh;
        for (int n = 0; n < p.columns; ++n)
            mesh.nodes.emplace_back(p.at(0, n), p.at(1, n));
        for (int e = 0; e < t.columns; ++e) {
            solver::Triangle triangle;
            for (int k = 0; k < 3; ++k) {
                const int node = int(std::lround(t.at(k, e))) - 1;
                if (node < 0 || node >= p.columns)
                    throw StepError(QStringLiteral("A triangle of %1 names no node").arg(name));
                triangle.nodes[std::size_t(k)] = node;
            }
            triangle.region = int(std::lround(t.at(3, e)));
            if (triangle.region < 0 || triangle.region > regionCount)
                throw StepError(QStringLiteral("A triangle of %1 names no region").arg(name));
            mesh.triangles.push_back(triangle);
        }
    }

    // Region 0 is the air of faces without a region; then the regions of the file.
    void readRegions(SliceModel &slice, const MatValue &properties, const MatValue &types, const QString &name) const
    {
        solver::Problem &problem = slice.base;
        const int regionCount = int(types.items.size());
        problem.regions.assign(std::size_t(regionCount) + 1, solver::Region{});
        slice.regionIron.assign(std::size_t(regionCount) + 1, IronPart::None);
        std::vector<Eigen::Vector2d> remanence(std::size_t(regionCount) + 1, Eigen::Vector2d::Zero());
        std::vector<std::optional<Eigen::Vector2d>> radialCentre(std::size_t(regionCount) + 1);
        if (m_statorCurve)
            problem.curves.push_back(*m_statorCurve);
        if (m_rotorCurve)
            problem.curves.push_back(*m_rotorCurve);
        bool magnets = false;
        for (int r = 1; r <= regionCount; ++r) {
            const QString type = textOf(types.items[std::size_t(r - 1)]);
            if (int(properties.elements.size()) < r)
                throw StepError(QStringLiteral("Region %1 of %2 has no properties").arg(r).arg(name));
            const std::map<QString, MatValue> &fields = properties.elements[std::size_t(r - 1)];
            const auto field = [&](const char *fieldName) -> const MatValue * {
                const auto found = fields.find(QString::fromLatin1(fieldName));
                return found == fields.end() ? nullptr : &found->second;
            };
            const QString position = field("position") ? textOf(*field("position")) : QString();
            const QString regionName = QStringLiteral("region %1 (%2, %3) of %4").arg(r).arg(type, position, name);
            solver::Region &region = problem.regions[std::size_t(r)];
            if (type == QLatin1String("Iron")) {
                const bool stator = position.startsWith(QLatin1String("stator"));
                if (!(stator ? m_statorCurve : m_rotorCurve))
                    throw StepError(QStringLiteral("The iron of %1 has no B-H curve").arg(regionName));
                region.curve = stator ? 0 : (m_statorCurve ? 1 : 0);
                region.relativePermeability = stator ? m_statorPermeability : m_rotorPermeability;
                slice.regionIron[std::size_t(r)] = stator ? IronPart::Stator : IronPart::Rotor;
            } else if (type == QLatin1String("Magnet")) {
                if (!m_remanence || m_remanence->kind != MatValue::Numbers || m_remanence->numbers.size() != 1)
                    throw StepError(QStringLiteral("The magnet of %1 has no remanence data").arg(regionName));
                const double br = m_remanence->numbers.front() * m_temperatureFactor;
                region.relativePermeability = m_recoil;
                magnets = true;
                const QString magnetization = field("magnetization") ? textOf(*field("magnetization")) : QString();
                if (magnetization == QLatin1String("Radial")) {
                    const bool toward = field("direction") && textOf(*field("direction")) == QLatin1String("Toward");
                    radialCentre[std::size_t(r)] =
                        Eigen::Vector2d(numberOr(field("center_x"), 0.0), numberOr(field("center_y"), 0.0)) / 1000.0;
                    remanence[std::size_t(r)] = Eigen::Vector2d(toward ? -br : br, 0.0);
                } else if (magnetization == QLatin1String("Parallel")) {
                    const double angle = qDegreesToRadians(numberOr(field("angle"), 0.0));
                    remanence[std::size_t(r)] = br * Eigen::Vector2d(std::cos(angle), std::sin(angle));
                } else {
                    throw StepError(QStringLiteral("The magnet of %1 has no magnetisation direction").arg(regionName));
                }
            } else if (type == QLatin1String("Winding")) {
                const int slot = int(std::lround(numberOr(field("slot"), 0.0)));
                const int layer = int(std::lround(numberOr(field("layer"), 0.0)));
                const int layout = int(std::lround(numberOr(field("nlayout"), 1.0)));
                for (const auto &[phase, sign] : coilSidesAt(m_tables, std::max(1, layout), slot, std::max(1, layer)))
                    slice.sides.push_back({phase, r, sign});
            } else if (type == QLatin1String("General") || type == QLatin1String("Conductor") || type == QLatin1String("EndTurn")) {
                // Air to the field: conductors carry no current in a magnetostatic step.
            } else {
                throw StepError(QStringLiteral("%1 has no material").arg(regionName.at(0).toUpper() + regionName.mid(1)));
            }
        }
        if (!magnets)
            return;
        problem.remanence.reserve(problem.mesh.triangles.size());
        for (const solver::Triangle &triangle : problem.mesh.triangles) {
            const std::size_t r = std::size_t(triangle.region);
            const Eigen::Vector2d &br = remanence[r];
            problem.remanence.push_back(radialCentre[r] ? Eigen::Vector2d(br.x() * (centroidOf(problem.mesh, triangle) - *radialCentre[r]).normalized())
                                                        : br);
        }
    }

    // The bands: their triangles leave the model, and each gets a region of its own.
    // Gives which nodes lie on the bands' rows.
    std::vector<char> cutBands(SliceModel &slice, int s, const QString &name) const
    {
        solver::Problem &problem = slice.base;
        const MatValue &rotorRows = sliceEntry(m_rotorRows, s, QStringLiteral("Mesh.ipslid_rotor"));
        const MatValue &statorRows = sliceEntry(m_statorRows, s, QStringLiteral("Mesh.ipslid_stator"));
        const int gapCount = rotorRows.kind == MatValue::Cell ? int(rotorRows.items.size()) : 0;
        std::vector<char> rowNode(problem.mesh.nodes.size(), 0);
        std::vector<char> inBand(problem.mesh.triangles.size(), 0);
        const auto x = [&](int node) { return problem.mesh.nodes[std::size_t(node)].x(); };
        for (int g = 0; g < gapCount; ++g) {
            GapBand band;
            band.rotorRow = rowNodes(rotorRows, g, QStringLiteral("Mesh.ipslid_rotor"));
            band.statorRow = rowNodes(statorRows, g, QStringLiteral("Mesh.ipslid_stator"));
            for (std::vector<int> *row : {&band.rotorRow, &band.statorRow}) {
                const bool fit = row->size() >= 3 && std::all_of(row->begin(), row->end(), [&](int node) {
                                     return node >= 0 && node < int(rowNode.size());
                                 });
                if (!fit)
                    throw StepError(QStringLiteral("The air gap %1 of %2 has no moving band").arg(g + 1).arg(name));
                for (const int node : *row)
                    rowNode[std::size_t(node)] = 1;
                std::sort(row->begin(), row->end(), [&](int a, int b) { return x(a) < x(b); });
            }
            const double span = x(band.statorRow.back()) - x(band.statorRow.front());
            if (std::abs(x(band.rotorRow.back()) - x(band.rotorRow.front()) - span) > tolerance
                || (slice.width > 0.0 && std::abs(slice.width - span) > tolerance))
                throw StepError(QStringLiteral("The rows of the air gap %1 of %2 do not span one period").arg(g + 1).arg(name));
            slice.width = span;
            const double yRotor = problem.mesh.nodes[std::size_t(band.rotorRow.front())].y();
            const double yStator = problem.mesh.nodes[std::size_t(band.statorRow.front())].y();
            band.rotorAbove = yRotor > yStator;
            band.height = std::abs(yRotor - yStator);
            band.region = int(problem.regions.size());
            problem.regions.push_back(solver::Region{});
            const double low = std::min(yRotor, yStator) + tolerance;
            const double high = std::max(yRotor, yStator) - tolerance;
            for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
                const double y = centroidOf(problem.mesh, problem.mesh.triangles[e]).y();
                if (y > low && y < high)
                    inBand[e] = 1;
            }
            slice.bands.push_back(std::move(band));
        }
        if (slice.bands.empty())
            throw StepError(QStringLiteral("The mesh of %1 has no air gap band").arg(name));
        std::vector<solver::Triangle> kept;
        std::vector<Eigen::Vector2d> keptRemanence;
        for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
            if (inBand[e])
                continue;
            kept.push_back(problem.mesh.triangles[e]);
            if (!problem.remanence.empty())
                keptRemanence.push_back(problem.remanence[e]);
        }
        problem.mesh.triangles = std::move(kept);
        problem.remanence = std::move(keptRemanence);
        return rowNode;
    }

    // The number of poles in the period tells periodic from antiperiodic seams, unless
    // the mesh's condition names one.
    void closeSeams(SliceModel &slice, const std::vector<char> &rowNodes, const MatValue &types, const QString &name) const
    {
        const double poles = 2.0 * m_machine.polePairs * slice.width / (2.0 * M_PI * slice.radius);
        const bool odd = int(std::lround(poles)) % 2 == 1;
        if (m_condition.compare(QLatin1String("Periodic"), Qt::CaseInsensitive) == 0)
            slice.seamSign = 1.0;
        else if (m_condition.compare(QLatin1String("Antiperiodic"), Qt::CaseInsensitive) == 0)
            slice.seamSign = -1.0;
        else
            slice.seamSign = odd ? -1.0 : 1.0;
        solver::Problem &problem = slice.base;
        const Seams seams = findSeams(problem.mesh, slice.width, slice.seamSign, rowNodes, tolerance);
        if (!seams.holeRegions.empty()) {
            const int r = seams.holeRegions.front();
            const QString where = r > 0 && r <= int(types.items.size())
                                      ? QStringLiteral("beside region %1 (%2)").arg(r).arg(textOf(types.items[std::size_t(r - 1)]))
                                      : QStringLiteral("at its seams");
            throw StepError(QStringLiteral("The mesh of %1 has a hole %2").arg(name, where));
        }
        problem.pairs = seams.pairs;
        for (const int node : seams.flux)
            problem.fixed.push_back({node, 0.0});
    }

    // What moves with the rotor, the areas of the coil sides, and a last check.
    void finish(SliceModel &slice, const QString &name) const
    {
        solver::Problem &problem = slice.base;
        std::vector<int> rotorSeeds;
        for (const GapBand &band : slice.bands)
            rotorSeeds.insert(rotorSeeds.end(), band.rotorRow.begin(), band.rotorRow.end());
        slice.moving = partsHolding(problem.mesh, rotorSeeds);
        for (const GapBand &band : slice.bands) {
            for (const int node : band.statorRow) {
                if (slice.moving[std::size_t(node)])
                    throw StepError(QStringLiteral("The rotor and the stator of %1 touch across the air gap").arg(name));
            }
        }
        slice.regionIron.resize(problem.regions.size(), IronPart::None);
        for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
            if (slice.regionIron[std::size_t(problem.mesh.triangles[e].region)] != IronPart::None)
                slice.ironElements.push_back(int(e));
        }
        findIronZones(slice);
        slice.magnetElements = magnetElementsOf(problem);
        slice.regionArea.assign(problem.regions.size(), 0.0);
        for (const solver::Triangle &triangle : problem.mesh.triangles)
            slice.regionArea[std::size_t(triangle.region)] += solver::ElementShape(problem.mesh, triangle).area();
        for (const PhaseSide &side : slice.sides) {
            if (!(slice.regionArea[std::size_t(side.region)] > 0.0))
                throw StepError(QStringLiteral("The coil side in region %1 of %2 has no area").arg(side.region).arg(name));
        }
        const QStringList errors = solver::problemErrors(problem);
        if (!errors.isEmpty())
            throw StepError(QStringLiteral("The model of %1 is unfit: %2").arg(name, errors.first()));
    }

    const MachineData &m_machine;
    const MatValue &m_points;
    const MatValue &m_triangles;
    const MatValue &m_rotorRows;
    const MatValue &m_statorRows;
    const MatValue &m_radii;
    const MatValue &m_widths;
    const MatValue &m_properties;
    const MatValue &m_types;
    QString m_condition;
    std::vector<CoilTable> m_tables;
    double m_statorPermeability = 1.0;
    double m_rotorPermeability = 1.0;
    std::optional<solver::ReluctivityCurve> m_statorCurve;
    std::optional<solver::ReluctivityCurve> m_rotorCurve;
    const MatValue *m_remanence;
    double m_recoil;
    double m_temperatureFactor = 1.0;
};

} // namespace

namespace {

// For each node, the node one period on along x, or -1: only nodes on the seams and
// on the flux faces can have one.
std::vector<int> nodesOnePeriodOn(const SliceModel &slice)
{
    const std::vector<Eigen::Vector2d> &nodes = slice.base.mesh.nodes;
    std::vector<int> edge;
    for (const solver::NodePair &pair : slice.base.pairs)
        edge.insert(edge.end(), {pair.slave, pair.master});
    for (const solver::FixedPotential &fixed : slice.base.fixed)
        edge.push_back(fixed.node);
    std::sort(edge.begin(), edge.end());
    edge.erase(std::unique(edge.begin(), edge.end()), edge.end());
    std::sort(edge.begin(), edge.end(), [&](int a, int b) { return nodes[std::size_t(a)].y() < nodes[std::size_t(b)].y(); });
    std::vector<int> next(nodes.size(), -1);
    for (auto node = edge.begin(); node != edge.end(); ++node) {
        const Eigen::Vector2d &p = nodes[std::size_t(*node)];
        for (auto other = node + 1; other != edge.end() && nodes[std::size_t(*other)].y() <= p.y() + tolerance; ++other) {
            const Eigen::Vector2d &q = nodes[std::size_t(*other)];
            if (std::abs(q.x() - p.x() - slice.width) <= tolerance)
                next[std::size_t(*node)] = *other;
            else if (std::abs(p.x() - q.x() - slice.width) <= tolerance)
                next[std::size_t(*other)] = *node;
        }
    }
    return next;
}

// The slice and its image one period on as one model: nodes on the seam between them
// are shared, the old seam pairs tie the image's far side to the near side with the
// square of the seam sign, and the coil sides of the image get regions of their own so
// that their current and flux linkage keep their sign, as its magnets do, whose eddy
// currents close within each piece.
SliceModel twoPeriods(const SliceModel &slice)
{
    SliceModel doubled = slice;
    solver::Problem &problem = doubled.base;
    const double sign = slice.seamSign;
    const std::size_t nodeCount = slice.base.mesh.nodes.size();
    std::vector<int> image = nodesOnePeriodOn(slice);
    for (std::size_t node = 0; node < nodeCount; ++node) {
        if (image[node] >= 0)
            continue;
        image[node] = int(problem.mesh.nodes.size());
        problem.mesh.nodes.push_back(slice.base.mesh.nodes[node] + Eigen::Vector2d(slice.width, 0.0));
    }

    std::vector<int> regionImage(slice.base.regions.size());
    std::iota(regionImage.begin(), regionImage.end(), 0);
    const auto imageRegion = [&](int region) {
        if (regionImage[std::size_t(region)] == region) {
            regionImage[std::size_t(region)] = int(problem.regions.size());
            problem.regions.push_back(slice.base.regions[std::size_t(region)]);
            doubled.regionIron.push_back(IronPart::None);
        }
    };
    for (const PhaseSide &side : slice.sides) {
        imageRegion(side.region);
        doubled.sides.push_back({side.phase, regionImage[std::size_t(side.region)], sign * side.sign});
    }
    for (const int e : slice.magnetElements)
        imageRegion(slice.base.mesh.triangles[std::size_t(e)].region);
    for (std::size_t e = 0; e < slice.base.mesh.triangles.size(); ++e) {
        solver::Triangle triangle = slice.base.mesh.triangles[e];
        for (int &node : triangle.nodes)
            node = image[std::size_t(node)];
        triangle.region = regionImage[std::size_t(triangle.region)];
        problem.mesh.triangles.push_back(triangle);
        if (!slice.base.remanence.empty())
            problem.remanence.push_back(sign * slice.base.remanence[e]);
    }

    problem.pairs.clear();
    for (const solver::NodePair &pair : slice.base.pairs)
        problem.pairs.push_back({image[std::size_t(pair.slave)], pair.master, pair.sign * sign});
    std::vector<char> fixed(problem.mesh.nodes.size(), 0);
    for (const solver::FixedPotential &potential : slice.base.fixed)
        fixed[std::size_t(potential.node)] = 1;
    for (const solver::FixedPotential &potential : slice.base.fixed) {
        const int node = image[std::size_t(potential.node)];
        if (!fixed[std::size_t(node)])
            problem.fixed.push_back({node, sign * potential.value});
        fixed[std::size_t(node)] = 1;
    }

    std::vector<int> rotorSeeds;
    for (GapBand &band : doubled.bands) {
        for (std::vector<int> *row : {&band.statorRow, &band.rotorRow}) {
            const std::size_t count = row->size();
            for (std::size_t i = 1; i < count; ++i)
                row->push_back(image[std::size_t((*row)[i])]);
        }
        rotorSeeds.insert(rotorSeeds.end(), band.rotorRow.begin(), band.rotorRow.end());
    }
    doubled.moving = partsHolding(problem.mesh, rotorSeeds);
    doubled.width = 2.0 * slice.width;
    doubled.seamSign = sign * sign;
    doubled.ironElements.clear();
    doubled.regionArea.assign(problem.regions.size(), 0.0);
    for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
        const solver::Triangle &triangle = problem.mesh.triangles[e];
        if (doubled.regionIron[std::size_t(triangle.region)] != IronPart::None)
            doubled.ironElements.push_back(int(e));
        doubled.regionArea[std::size_t(triangle.region)] += solver::ElementShape(problem.mesh, triangle).area();
    }
    findIronZones(doubled);
    doubled.magnetElements = magnetElementsOf(problem);
    return doubled;
}

} // namespace

std::vector<SliceModel> readSlices(const ExchangeData &data, const MachineData &machine, ModelSpan span)
{
    const SliceReader reader(data, machine);
    std::vector<SliceModel> slices;
    bool anySide = false;
    for (int s = 0; s < reader.count(); ++s) {
        slices.push_back(span == ModelSpan::TwoPeriods ? twoPeriods(reader.read(s)) : reader.read(s));
        anySide = anySide || !slices.back().sides.empty();
    }
    if (!anySide)
        throw StepError(QStringLiteral("The winding is empty: no coil side lies in the slices"));
    return slices;
}

} // namespace mcrctrl
