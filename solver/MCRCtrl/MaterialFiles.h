#pragma once

#include "base/LossFit.h"

#include <QString>
#include <optional>
#include <vector>

namespace mcrctrl {

// What the solver needs of an iron: its B-H table, A/m and T.
struct IronData
{
    std::vector<double> h;
    std::vector<double> b;
};

// What the iron losses need of an iron: its loss equation and its mass density, kg/m^3.
struct IronLossData
{
    IronLossCoefficients coefficients;
    double massDensity = 0.0;
};

// What the solver needs of a magnet, at 20 degrees Celsius.
struct MagnetData
{
    double remanence = 0.0;
    double relativePermeability = 1.0;
    // Of the remanence, per kelvin (not percent).
    double remanenceCoefficient = 0.0;
    // A/m, and its change per kelvin; empty when the file gives none.
    std::optional<double> intrinsicCoercivity;
    double coercivityCoefficient = 0.0;
    // Ohm m; empty when the file gives none.
    std::optional<double> resistivity;
};

// The material library files beside the program: <folder>/<kind>/<group>/<name>.txt.
class MaterialFiles
{
public:
    explicit MaterialFiles(QString folder);

    // Empty when the file is not found or has no B-H table.
    std::optional<IronData> iron(const QString &name) const;
    // A measured loss table is fitted; coefficients of the file count only without one.
    // Empty when the file is not found or lacks loss data or a mass density.
    std::optional<IronLossData> ironLoss(const QString &name) const;
    // Empty when the file is not found or has no remanence.
    std::optional<MagnetData> magnet(const QString &name) const;

private:
    QString fileOf(const QString &kind, const QString &name) const;

    QString m_folder;
};

} // namespace mcrctrl
