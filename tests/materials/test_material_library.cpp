#include <QDirIterator>
#include <QMap>
#include <QSet>
#include <QTextStream>
#include <cmath>
#include <gtest/gtest.h>

#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"
#include "materials/Steinmetz.h"
#include "materials/TransistorDescriptorEngine.h"

// The library delivered with the program, read from the source tree through the
// program's own readers.
namespace {

const QString libraryPath = QStringLiteral(ZDS_SOURCE_DIR "/assets/materials");
const double mu0 = 4e-7 * M_PI;

QStringList filesOf(const QString &kind)
{
    QStringList files;
    QDirIterator it(libraryPath + "/" + kind, {"*.txt"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    files.sort();
    return files;
}

QStringList linesOf(const QString &filePath)
{
    QFile file(filePath);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    return QString::fromLatin1(file.readAll()).split('\n');
}

double interpolate(const QList<double> &x, const QList<double> &y, double at)
{
    for (int i = 1; i < x.size(); ++i) {
        if (x.at(i) >= at)
            return y.at(i - 1) + (y.at(i) - y.at(i - 1)) * (at - x.at(i - 1)) / (x.at(i) - x.at(i - 1));
    }
    return qQNaN();
}

// Every material of a catalogue, folders walked.
QStringList materialNames(const QAbstractItemModel &model, const QModelIndex &parent = {})
{
    QStringList names;
    // Row 0 of the top level is "Not assigned".
    for (int row = parent.isValid() ? 0 : 1; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (index.data(Qt::UserRole).isValid())
            names << index.data().toString();
        else
            names << materialNames(model, index);
    }
    return names;
}

// Losses of a table by frequency, in table order.
QMap<double, QList<QPair<double, double>>> lossCurves(const MaterialIronDescribe &iron)
{
    QMap<double, QList<QPair<double, double>>> curves;
    for (int i = 0; i < iron.lossFrequency.size(); ++i)
        curves[iron.lossFrequency.at(i)].append({iron.lossFluxDensity.at(i), iron.lossValue.at(i)});
    return curves;
}

} // namespace

TEST(MaterialLibrary, FilesArePlainTextThatEveryCodecReadsAlike)
{
    QDirIterator it(libraryPath, {"*.txt"}, QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    while (it.hasNext()) {
        QFile file(it.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        const QByteArray bytes = file.readAll();
        for (const char c : bytes)
            EXPECT_LT(static_cast<unsigned char>(c), 128) << file.fileName().toStdString();
        EXPECT_TRUE(bytes.startsWith("<Description>\n")) << file.fileName().toStdString();
        ++count;
    }
    EXPECT_GE(count, 20);
}

TEST(MaterialLibrary, EveryFileIsACatalogueEntryOfItsOwnName)
{
    const MaterialConductorEngine conductors(libraryPath);
    const MaterialIronEngine irons(libraryPath);
    const MaterialMagnetEngine magnets(libraryPath);
    const struct
    {
        const char *kind;
        const QAbstractItemModel &engine;
        int least;
    } kinds[] = {{"Conductor", conductors, 3}, {"Iron", irons, 11}, {"Magnet", magnets, 7}};
    for (const auto &kind : kinds) {
        SCOPED_TRACE(kind.kind);
        const QStringList names = materialNames(kind.engine);
        EXPECT_EQ(names.size(), filesOf(kind.kind).size());
        EXPECT_GE(names.size(), kind.least);
        // A second file of a name could never be chosen by name.
        EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size());
    }
}

TEST(MaterialLibrary, ConductorsArePlausible)
{
    for (const QString &file : filesOf("Conductor")) {
        SCOPED_TRACE(file.toStdString());
        const MaterialConductorDescribe conductor = MaterialConductorEngine::readFromFile(file);
        EXPECT_FALSE(conductor.name.isEmpty());
        EXPECT_TRUE(conductor.description.contains("Source:"));
        EXPECT_GT(conductor.electricResistivity, 1.5e-8);
        EXPECT_LT(conductor.electricResistivity, 1e-7);
        EXPECT_EQ(conductor.electricResistivityUnit, "Ohm*m");
        EXPECT_GT(conductor.temperatureCoefficient, 0.003);
        EXPECT_LT(conductor.temperatureCoefficient, 0.005);
        EXPECT_GT(conductor.massDensity, 2000.0);
        EXPECT_LT(conductor.massDensity, 11000.0);
        EXPECT_EQ(conductor.massDensityUnit, "kg/m^3");
    }
}

TEST(MaterialLibrary, IronCurvesRiseIntoDeepSaturationAtTheSlopeMu0)
{
    for (const QString &file : filesOf("Iron")) {
        SCOPED_TRACE(file.toStdString());
        const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(file);
        EXPECT_FALSE(iron.name.isEmpty());
        EXPECT_FALSE(iron.source.isEmpty());
        EXPECT_EQ(iron.unitH, "A/m");
        EXPECT_EQ(iron.unitB, "T");
        ASSERT_GE(iron.curveH.size(), 10);
        ASSERT_EQ(iron.curveH.size(), iron.curveB.size());
        for (int i = 1; i < iron.curveH.size(); ++i) {
            EXPECT_GT(iron.curveH.at(i), iron.curveH.at(i - 1)) << i;
            EXPECT_GT(iron.curveB.at(i), iron.curveB.at(i - 1)) << i;
        }
        const double b10k = interpolate(iron.curveH, iron.curveB, 1e4);
        EXPECT_GE(b10k, 1.4);
        EXPECT_LE(b10k, 2.4);
        EXPECT_GE(iron.curveH.last(), 1e5);
        const int last = iron.curveH.size() - 1;
        const double slope = (iron.curveB.at(last) - iron.curveB.at(last - 1))
                           / (iron.curveH.at(last) - iron.curveH.at(last - 1));
        EXPECT_NEAR(slope / mu0, 1.0, 0.01);
        // Polarisation never beyond what iron and cobalt can carry.
        EXPECT_LT(iron.curveB.at(last) - mu0 * iron.curveH.at(last), 2.45);
        EXPECT_GT(iron.massDensity, 7000.0);
        EXPECT_LT(iron.massDensity, 8500.0);
        EXPECT_EQ(iron.massDensityUnit, QString::fromUtf8("kg/m³"));
    }
}

TEST(MaterialLibrary, IronLossesArePositiveAndGrowWithFrequencyAndFluxDensity)
{
    int tables = 0;
    for (const QString &file : filesOf("Iron")) {
        SCOPED_TRACE(file.toStdString());
        const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(file);
        // Fitted coefficients are no published data.
        EXPECT_EQ(iron.alfa, 0.0);
        if (iron.lossFrequency.isEmpty()) {
            // A steel without a published loss table says so rather than carry made-up rows.
            EXPECT_TRUE(iron.description.contains("NO LOSS ROWS"));
            continue;
        }
        ++tables;
        EXPECT_FALSE(iron.description.contains("NO LOSS ROWS"));
        ASSERT_EQ(iron.lossFluxDensity.size(), iron.lossFrequency.size());
        ASSERT_EQ(iron.lossValue.size(), iron.lossFrequency.size());
        const auto curves = lossCurves(iron);
        EXPECT_GE(curves.size(), 3);
        for (auto curve = curves.cbegin(); curve != curves.cend(); ++curve) {
            const QList<QPair<double, double>> &points = curve.value();
            EXPECT_GE(points.size(), 3) << curve.key();
            for (int i = 0; i < points.size(); ++i) {
                EXPECT_GT(points.at(i).second, 0.0);
                if (i > 0) {
                    EXPECT_GT(points.at(i).first, points.at(i - 1).first) << curve.key();
                    EXPECT_GT(points.at(i).second, points.at(i - 1).second) << curve.key();
                }
            }
            // Measured flux densities differ a little between frequencies: a point is
            // compared with the curve of every lower frequency where that curve reaches.
            // Printed to two decimals, small losses at neighbouring frequencies may be equal.
            for (auto lower = curves.cbegin(); lower != curve; ++lower) {
                QList<double> flux;
                QList<double> loss;
                for (const auto &point : lower.value()) {
                    flux << point.first;
                    loss << point.second;
                }
                for (const auto &point : points) {
                    if (point.first >= flux.first() && point.first <= flux.last())
                        EXPECT_GE(point.second, interpolate(flux, loss, point.first)) << curve.key() << " " << point.first;
                }
            }
        }
    }
    EXPECT_GE(tables, 8);
}

TEST(MaterialLibrary, SteinmetzFitFollowsEveryLossTable)
{
    for (const QString &file : filesOf("Iron")) {
        const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(file);
        if (iron.lossFrequency.isEmpty())
            continue;
        SCOPED_TRACE(file.toStdString());
        const Steinmetz fit(iron);
        double sum = 0.0;
        for (int i = 0; i < iron.lossValue.size(); ++i)
            sum += std::abs(fit.loss(iron.lossFrequency.at(i), iron.lossFluxDensity.at(i)) / iron.lossValue.at(i) - 1.0);
        // Four coefficients cannot follow tables that run from 50 Hz to 2 kHz and into
        // saturation closely; a fit gone wrong is off by far more than this.
        EXPECT_LT(sum / iron.lossValue.size(), 0.2);
    }
}

TEST(MaterialLibrary, MagnetsCarryTheDataOfTheSolver)
{
    const struct
    {
        const char *tag;
        double low;
        double high;
    } tags[] = {
        {"<Remanence> (T)", 0.3, 1.5},
        {"<Relative permeability> (1)", 1.0, 1.3},
        {"<Intrinsic coercivity> (A/m)", 1e5, 3e6},
        {"<Temperature coefficient of remanence> (%/K)", -0.25, -0.01},
        {"<Temperature coefficient of coercivity> (%/K)", -0.8, 0.5},
    };
    for (const QString &file : filesOf("Magnet")) {
        SCOPED_TRACE(file.toStdString());
        const MaterialMagnetDescribe magnet = MaterialMagnetEngine::readFromFile(file);
        EXPECT_FALSE(magnet.name.isEmpty());
        EXPECT_FALSE(magnet.source.isEmpty());
        EXPECT_GT(magnet.electricResistivity, 0.0);
        EXPECT_EQ(magnet.electricResistivityUnit, "Ohm*m");
        EXPECT_GT(magnet.massDensity, 4000.0);
        EXPECT_LT(magnet.massDensity, 9000.0);

        const QStringList lines = linesOf(file);
        for (const auto &tag : tags) {
            const int at = lines.indexOf(tag.tag);
            ASSERT_GE(at, 0) << tag.tag;
            ASSERT_LT(at + 1, lines.size()) << tag.tag;
            bool isNumber = false;
            const double value = lines.at(at + 1).toDouble(&isNumber);
            EXPECT_TRUE(isNumber) << tag.tag;
            EXPECT_GE(value, tag.low) << tag.tag;
            EXPECT_LE(value, tag.high) << tag.tag;
        }
    }
}

TEST(MaterialLibrary, TransistorsFollowTheIdealSwitch)
{
    const TransistorDescriptorEngine engine(libraryPath);
    ASSERT_GE(engine.transistors().size(), 4);
    for (int i = 1; i < engine.transistors().size(); ++i) {
        const TransistorDescribe &transistor = engine.transistors().at(i);
        EXPECT_TRUE(transistor.description.contains(transistor.name)) << transistor.name.toStdString();
        EXPECT_TRUE(transistor.description.contains("Source:")) << transistor.name.toStdString();
    }
}
