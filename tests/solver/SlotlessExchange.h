#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "solver/GridMesh.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SliceModel.h"

// Values of an exchange file built in memory, as the program's writer lays them out.
namespace mat_values {

inline mcrctrl::MatValue number(double value)
{
    mcrctrl::MatValue result;
    result.kind = mcrctrl::MatValue::Numbers;
    result.rows = result.columns = 1;
    result.numbers = {value};
    return result;
}

inline mcrctrl::MatValue matrix(int rows, int columns, std::vector<double> values)
{
    mcrctrl::MatValue result;
    result.kind = mcrctrl::MatValue::Numbers;
    result.rows = rows;
    result.columns = columns;
    result.numbers = std::move(values);
    return result;
}

inline mcrctrl::MatValue text(const QString &value)
{
    mcrctrl::MatValue result;
    result.kind = mcrctrl::MatValue::Text;
    result.text = value;
    return result;
}

inline mcrctrl::MatValue cell(std::vector<mcrctrl::MatValue> items)
{
    mcrctrl::MatValue result;
    result.kind = mcrctrl::MatValue::Cell;
    result.rows = 1;
    result.columns = int(items.size());
    result.items = std::move(items);
    return result;
}

inline mcrctrl::MatValue structure(std::vector<std::map<QString, mcrctrl::MatValue>> elements)
{
    mcrctrl::MatValue result;
    result.kind = mcrctrl::MatValue::Struct;
    result.elements = std::move(elements);
    return result;
}

} // namespace mat_values

// One slice of a slotless machine over one pole pitch, from the bottom: rotor iron, a
// magnet magnetised along +y, an air gap of three layers, a coil side over the whole
// pitch and stator iron. One pole in the period makes the seams antiperiodic. With a
// second rotor the stator iron is followed by its mirror image: a coil side, a gap, a
// magnet magnetised along +y and rotor iron.
struct SlotlessExchange
{
    enum Rotors { OneRotor, TwoRotors };

    static constexpr double radius = 0.1;
    static constexpr int polePairs = 2;
    static constexpr double rotorIron = 0.004;
    static constexpr double magnet = 0.003;
    static constexpr double gap = 0.001;
    static constexpr double statorIron = 0.004;
    static constexpr double coil = 0.001;
    static constexpr double remanence = 1.2;
    static constexpr double recoil = 1.05;

    static constexpr double length = 0.02;
    static constexpr double turns = 10.0;

    static double width() { return 3.14159265358979323846 * radius / polePairs; }
    static double gapBottom() { return rotorIron + magnet; }

    GridMesh grid;
    mcrctrl::ExchangeData data;

    // ironBH: the iron's B-H table as rows of H and B.
    explicit SlotlessExchange(const std::vector<double> &ironH, const std::vector<double> &ironB, int columns = 80,
                              Rotors rotors = OneRotor)
        : grid(GridMesh::lines({0.0, width()}, {columns}), rotors == OneRotor ? GridMesh::lines(layers(), {4, 3, 3, 1, 4})
                                                                             : GridMesh::lines(layers(), {4, 3, 3, 1, 4, 1, 3, 3, 4}))
    {
        using namespace mat_values;
        const double statorTop = gapBottom() + gap + coil + statorIron;
        solver::TriangleMesh mesh = grid.mesh([statorTop](const Eigen::Vector2d &centroid) {
            const double y = centroid.y();
            if (y > statorTop) {
                // The second rotor's side, from the top down.
                const double depth = statorTop + coil + gap + magnet + rotorIron - y;
                return depth < rotorIron ? 7 : depth < rotorIron + magnet ? 6 : depth < rotorIron + magnet + gap ? 0 : 5;
            }
            if (y < rotorIron)
                return 1;
            if (y < gapBottom())
                return 2;
            if (y < gapBottom() + gap)
                return 0;
            return y < gapBottom() + gap + coil ? 4 : 3;
        });
        mirrorRightHalf(mesh);
        std::vector<double> points;
        for (const Eigen::Vector2d &node : mesh.nodes) {
            points.push_back(node.x());
            points.push_back(node.y());
        }
        std::vector<double> triangles;
        for (const solver::Triangle &triangle : mesh.triangles) {
            for (const int node : triangle.nodes)
                triangles.push_back(node + 1);
            triangles.push_back(triangle.region);
        }
        // The gap's rows are grid rows 8 and 9: the rotor brings the lower.
        const auto row = [&](int index) {
            std::vector<double> numbers;
            for (const int node : grid.rowNodes(index))
                numbers.push_back(node + 1);
            return matrix(1, int(numbers.size()), numbers);
        };
        // The second gap's rows are grid rows 17 and 18: its rotor brings the upper.
        const bool two = rotors == TwoRotors;
        data.mesh = structure({{
            {"nAirGapLayers", number(3)},
            {"nSlices", number(1)},
            {"perbndcnd", text("Auto")},
            {"p", cell({matrix(2, int(mesh.nodes.size()), points)})},
            {"t", cell({matrix(4, int(mesh.triangles.size()), triangles)})},
            {"ipslid_rotor", cell({two ? cell({row(8), row(18)}) : cell({row(8)})})},
            {"ipslid_stator", cell({two ? cell({row(9), row(17)}) : cell({row(9)})})},
            {"Rcs", number(radius)},
            {"L", number(length)},
        }});
        data.geometry = structure({{{"slotlayertype", text("Single layer")}, {"Ns", number(6)}}});
        data.windings = structure({{
            {"nPolePairs", number(polePairs)},
            {"W", number(turns)},
            {"Npp", number(1)},
            {"statorcircuit", text("StarConnection")},
            {"Rs", number(0.1)},
            {"layout1", cell({matrix(1, 4, {1, 1, 2, 1})})},
            {"layout2", cell({matrix(0, 0, {})})},
            {"layout3", cell({matrix(0, 0, {})})},
        }});
        std::vector<double> table;
        for (std::size_t i = 0; i < ironH.size(); ++i) {
            table.push_back(ironH[i]);
            table.push_back(ironB[i]);
        }
        data.materials = structure({{
            {"statorironBH", matrix(2, int(ironH.size()), table)},
            {"rotorironBH", matrix(2, int(ironH.size()), table)},
            {"k_st_stator", number(1.0)},
            {"k_st_rotor", number(1.0)},
            {"magnetBr", number(remanence)},
            {"magnetMur", number(recoil)},
            {"magnetAlphaBr", number(0.0)},
            {"Tpm", number(20.0)},
        }});
        const auto region = [&](const QString &position, const QString &magnetization, double angle, int slot) {
            return std::map<QString, mcrctrl::MatValue>{
                {"magnetization", text(magnetization)}, {"angle", number(angle)}, {"layer", number(slot ? 1 : 0)},
                {"slot", number(slot)}, {"nlayout", number(slot ? 1 : 0)}, {"position", text(position)},
                {"center_x", number(0)}, {"center_y", number(0)}, {"direction", text("")}};
        };
        std::vector<std::map<QString, mcrctrl::MatValue>> properties{region("rotor1", "", 0, 0), region("rotor1", "Parallel", 90, 0),
                                                                     region("stator1", "", 0, 0), region("stator1", "", 0, 1)};
        std::vector<mcrctrl::MatValue> types{text("Iron"), text("Magnet"), text("Iron"), text("Winding")};
        if (two) {
            properties.insert(properties.end(), {region("stator1", "", 0, 1), region("rotor2", "Parallel", 90, 0), region("rotor2", "", 0, 0)});
            types.insert(types.end(), {text("Winding"), text("Magnet"), text("Iron")});
            data.geometry.elements.front()["motortype"] = text("rotor-stator-rotor");
        }
        data.subdomains = structure({{
            {"Properties", cell({structure(properties)})},
            {"MaterialType", cell({cell(types)})},
        }});
    }

    // The breaks between the layers from the bottom up, of a second rotor's side too.
    static std::vector<double> layers()
    {
        const double statorTop = gapBottom() + gap + coil + statorIron;
        return {0.0, rotorIron, gapBottom(), gapBottom() + gap, gapBottom() + gap + coil, statorTop,
                statorTop + coil, statorTop + coil + gap, statorTop + coil + gap + magnet, statorTop + coil + gap + magnet + rotorIron};
    }

    // The grid's cells are all cut along one diagonal; those of the right half are cut
    // along the other, so that the mesh is the mirror image of itself about the pole's
    // middle, as the program's meshes are.
    void mirrorRightHalf(solver::TriangleMesh &mesh) const
    {
        const int cellColumns = grid.columns() - 1;
        for (int row = 0; row + 1 < grid.rows(); ++row) {
            for (int column = cellColumns / 2; column < cellColumns; ++column) {
                const std::size_t first = std::size_t(2 * (row * cellColumns + column));
                const int a = grid.node(column, row);
                const int b = grid.node(column + 1, row);
                const int c = grid.node(column + 1, row + 1);
                const int d = grid.node(column, row + 1);
                mesh.triangles[first].nodes = {a, b, d};
                mesh.triangles[first + 1].nodes = {b, c, d};
            }
        }
    }

    // The torque on the rotor of a current in the coil, which spans the pitch under the
    // magnet: the Lorentz force on the coil's conductors, over the whole ring.
    static double lorentzTorque(double current)
    {
        return turns * current * gapFluxDensity() * length * 2 * polePairs * radius;
    }

    // The air-gap flux density of the closed form: the magnet's MMF over the magnet, the
    // gap and the coil.
    static double gapFluxDensity() { return remanence * magnet / (magnet + recoil * (gap + coil)); }

    mcrctrl::MatValue &field(mcrctrl::MatValue &value, const QString &name) { return value.elements.front()[name]; }
};
