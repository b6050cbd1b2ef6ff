#include <QLocale>
#include <gtest/gtest.h>

#include "MaterialTestSupport.h"
#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"

namespace {

// Puts the process default locale back when it goes.
class DefaultLocale
{
public:
    explicit DefaultLocale(const QLocale &locale) { QLocale::setDefault(locale); }
    ~DefaultLocale() { QLocale::setDefault(m_saved); }

private:
    QLocale m_saved;
};

const QByteArray steel = "<Description>\n"
                         "  M270   test  \n"
                         "a   plain\tsteel\n"
                         "source: Maker sheet, Source: page  2\n"
                         "\n"
                         "<B-H curve>\n"
                         "%   H(A/m)   B(T)\n"
                         "0 0\n"
                         "100 1.2\n"
                         "200 1,6\n"
                         "300\n"
                         "\n"
                         "5000 1.7\n"
                         "<Iron loss>\n"
                         "% Frequency(Hz) Flux density(T) Iron loss(W/kg)\n"
                         "0 1.0 5.0\n"
                         "50 1.0 1.1\n"
                         "1e-8 1.5 3.0\n"
                         "400 1.0 17\n"
                         "\n"
                         "<Mass Density> (kg/m^3)\n"
                         "7650\n";

} // namespace

TEST(StringToDouble, TakesCommaAndPointAsDecimalPoint)
{
    EXPECT_EQ(stringToDouble("1.5"), 1.5);
    EXPECT_EQ(stringToDouble("1,5"), 1.5);
    EXPECT_EQ(stringToDouble("  -2,25e-3 "), -2.25e-3);
    EXPECT_EQ(stringToDouble("abc"), 0.0);
    EXPECT_EQ(stringToDouble(""), 0.0);
    EXPECT_EQ(stringToDouble("1.234,5"), 0.0);

    const DefaultLocale german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(stringToDouble("1,5"), 1.5);
    EXPECT_EQ(stringToDouble("1.5"), 1.5);
}

TEST(ConductorFile, TagsInAnyCaseUnitsInTheLastParentheses)
{
    TemporaryLibrary library;
    const QString path = library.write("copper.txt", "<DESCRIPTION>\n"
                                                     "  Copper    test \n"
                                                     " a\t line  \n"
                                                     "<electric resistivity> (at 20 C) (Ohm*m)\n"
                                                     "1,7241e-8\n"
                                                     "ignored line\n"
                                                     "<Temperature coefficient of resistance> (1/K)\n"
                                                     "0.00393\n"
                                                     "<mass density> (kg/m^3)\n"
                                                     "8890\n");
    const MaterialConductorDescribe copper = MaterialConductorEngine::readFromFile(path);
    EXPECT_EQ(copper.fileName, path);
    EXPECT_EQ(copper.name, "Copper test");
    EXPECT_EQ(copper.description, "a line");
    EXPECT_TRUE(copper.source.isEmpty());
    EXPECT_DOUBLE_EQ(copper.electricResistivity, 1.7241e-8);
    EXPECT_EQ(copper.electricResistivityUnit, "Ohm*m");
    EXPECT_DOUBLE_EQ(copper.temperatureCoefficient, 0.00393);
    EXPECT_EQ(copper.massDensity, 8890.0);
    // Only an iron turns "^3" into a superscript.
    EXPECT_EQ(copper.massDensityUnit, "kg/m^3");
}

TEST(ConductorFile, UnitWithoutClosingParenthesisIsEmptyAndTheValueIsRead)
{
    TemporaryLibrary library;
    const QString path = library.write("copper.txt", "<Description>\nCu\n\n"
                                                     "<Electric resistivity> (Ohm*m\n1.7e-8\n"
                                                     "<Mass Density> (kg/m^3) \n8890\n");
    const MaterialConductorDescribe copper = MaterialConductorEngine::readFromFile(path);
    EXPECT_TRUE(copper.electricResistivityUnit.isEmpty());
    EXPECT_DOUBLE_EQ(copper.electricResistivity, 1.7e-8);
    EXPECT_TRUE(copper.massDensityUnit.isEmpty());
    EXPECT_EQ(copper.massDensity, 8890.0);
}

TEST(ConductorFile, ValueLinesAcceptACommaUnderAnyLocale)
{
    const DefaultLocale german(QLocale(QLocale::German, QLocale::Germany));
    TemporaryLibrary library;
    const QString path = library.write("a.txt", "<Description>\nCu\n\n<Mass Density> (kg/m^3)\n8,5\n"
                                                "<Temperature coefficient of resistance>\n0.5\n");
    const MaterialConductorDescribe conductor = MaterialConductorEngine::readFromFile(path);
    EXPECT_EQ(conductor.massDensity, 8.5);
    EXPECT_EQ(conductor.temperatureCoefficient, 0.5);
}

TEST(MaterialFiles, UnreadableFileGivesAnEmptyRecordAndALogLine)
{
    const LogCatcher log;
    const MaterialIronDescribe iron = MaterialIronEngine::readFromFile("/no/such/folder/steel.txt");
    EXPECT_TRUE(iron.fileName.isEmpty());
    EXPECT_TRUE(iron.name.isEmpty());
    EXPECT_TRUE(iron.curveH.isEmpty());
    EXPECT_TRUE(log.contains("Error: can't open for read file"));
    EXPECT_TRUE(MaterialConductorEngine::readFromFile("/no/such/file.txt").name.isEmpty());
    EXPECT_TRUE(MaterialMagnetEngine::readFromFile("/no/such/file.txt").name.isEmpty());
}

TEST(MagnetFile, ReadsSourceLineAndSkipsTheSolversTags)
{
    TemporaryLibrary library;
    const QString path = library.write("n42.txt", "<Description>\n N42 \nSintered   NdFeB\nSOURCE: grade  table\n"
                                                  "<Remanence> (T)\n1.3\n"
                                                  "<Electric resistivity> (Ohm*m)\n1.5e-6\n"
                                                  "<Temperature coefficient of resistance> (1/K)\n0.1\n"
                                                  "<Mass Density> (kg/m^3)\n7500\n");
    const MaterialMagnetDescribe magnet = MaterialMagnetEngine::readFromFile(path);
    EXPECT_EQ(magnet.name, "N42");
    EXPECT_EQ(magnet.description, "Sintered NdFeB");
    // The source line is not simplified.
    EXPECT_EQ(magnet.source, "grade  table");
    EXPECT_DOUBLE_EQ(magnet.electricResistivity, 1.5e-6);
    EXPECT_EQ(magnet.electricResistivityUnit, "Ohm*m");
    EXPECT_EQ(magnet.massDensity, 7500.0);
    EXPECT_EQ(magnet.massDensityUnit, "kg/m^3");
}

TEST(IronFile, ReadsCurveAndLossTableByTheirRules)
{
    TemporaryLibrary library;
    const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(library.write("steel.txt", steel));
    EXPECT_EQ(iron.name, "M270 test");
    EXPECT_EQ(iron.description, "a plain steel");
    EXPECT_EQ(iron.source, "Maker sheet, page  2");

    EXPECT_EQ(iron.unitH, "A/m");
    EXPECT_EQ(iron.unitB, "T");
    // A comma is no decimal point in a table row, a missing number is 0, and the blank
    // line ends the table.
    EXPECT_EQ(iron.curveH, QList<double>({0, 100, 200, 300}));
    EXPECT_EQ(iron.curveB, QList<double>({0, 1.2, 1, 0}));

    // Rows at no frequency are dropped whole.
    EXPECT_EQ(iron.lossFrequency, QList<double>({50, 400}));
    EXPECT_EQ(iron.lossFluxDensity, QList<double>({1.0, 1.0}));
    EXPECT_EQ(iron.lossValue, QList<double>({1.1, 17}));
    EXPECT_EQ(iron.unitFrequency, "Hz");
    EXPECT_EQ(iron.unitFluxDensity, "T");
    EXPECT_EQ(iron.unitLoss, "W/kg");
    EXPECT_EQ(iron.alfa, 0.0);

    EXPECT_EQ(iron.massDensity, 7650.0);
    EXPECT_EQ(iron.massDensityUnit, QString::fromUtf8("kg/m³"));
}

TEST(IronFile, LineAfterTheCurveTagIsConsumedEvenWithoutHeader)
{
    TemporaryLibrary library;
    const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(
        library.write("steel.txt", "<Description>\nS\n\n\n<b-h CURVE>\n0 0\n100 1.2\n200 1.5\n"));
    EXPECT_EQ(iron.curveH, QList<double>({100, 200}));
    EXPECT_EQ(iron.curveB, QList<double>({1.2, 1.5}));
    EXPECT_TRUE(iron.unitH.isEmpty());
    EXPECT_TRUE(iron.unitB.isEmpty());
}

TEST(IronFile, TableHeaderUnitsAndDefaults)
{
    TemporaryLibrary library;
    const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(
        library.write("steel.txt", "<Description>\nS\n\n\n<Iron loss>\n% FREQUENCY(kHz) density(mT) loss(mW/g)\n1 1 1\n"));
    EXPECT_EQ(iron.unitFrequency, "kHz");
    EXPECT_EQ(iron.unitFluxDensity, "mT");
    EXPECT_EQ(iron.unitLoss, "mW/g");

    const MaterialIronDescribe bare = MaterialIronEngine::readFromFile(
        library.write("bare.txt", "<Description>\nS\n\n\n<Iron loss>\n% f B P\n50 1 1\n"));
    EXPECT_EQ(bare.unitFrequency, "Hz");
    EXPECT_EQ(bare.unitFluxDensity, "T");
    EXPECT_EQ(bare.unitLoss, "W/kg");
    EXPECT_EQ(bare.lossFrequency.size(), 1);
}

TEST(IronFile, LossSectionWithoutHeaderIsSkippedAndTheNextTagRead)
{
    TemporaryLibrary library;
    const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(
        library.write("steel.txt", "<Description>\nS\n\n\n<Iron loss>\n<Mass Density> (kg/m^3)\n7600\n"));
    EXPECT_TRUE(iron.lossFrequency.isEmpty());
    EXPECT_EQ(iron.kh, 0.0);
    EXPECT_EQ(iron.massDensity, 7600.0);
}

TEST(IronFile, ReadsSteinmetzCoefficients)
{
    TemporaryLibrary library;
    const MaterialIronDescribe iron = MaterialIronEngine::readFromFile(
        library.write("smc.txt", "<Description>\nSMC\n\n\n<Iron loss>\n%  Steinmetz coefficients\n"
                                 "0,1 % kh\n1.0 %  Alfa \n1.8 % beta\n2e-5 % ke\n"
                                 "<Mass Density> (kg/m^3)\n7500\n"));
    EXPECT_EQ(iron.kh, 0.1);
    EXPECT_EQ(iron.alfa, 1.0);
    EXPECT_EQ(iron.beta, 1.8);
    EXPECT_EQ(iron.ke, 2e-5);
    EXPECT_TRUE(iron.lossFrequency.isEmpty());
    EXPECT_EQ(iron.massDensity, 7500.0);
}

TEST(IronFile, BadSteinmetzLineEndsTheSectionAndKeepsWhatWasRead)
{
    TemporaryLibrary library;
    const MaterialIronDescribe twoSigns = MaterialIronEngine::readFromFile(
        library.write("a.txt", "<Description>\nA\n\n\n<Iron loss>\n% Steinmetz coefficients\n"
                               "0.1 % kh\n1.2 % alfa % again\n1.8 % beta\n<Mass Density> (kg/m^3)\n7500\n"));
    EXPECT_EQ(twoSigns.kh, 0.1);
    EXPECT_EQ(twoSigns.alfa, 0.0);
    EXPECT_EQ(twoSigns.beta, 0.0);
    EXPECT_EQ(twoSigns.massDensity, 7500.0);

    const MaterialIronDescribe unknownKey = MaterialIronEngine::readFromFile(
        library.write("b.txt", "<Description>\nB\n\n\n<Iron loss>\n% Steinmetz coefficients\n1.1 % alfa\n2 % kx\n3 % ke\n"));
    EXPECT_EQ(unknownKey.alfa, 1.1);
    EXPECT_EQ(unknownKey.ke, 0.0);

    // The form's name is matched respecting case: a lower case one is a table header.
    const MaterialIronDescribe lowerCase = MaterialIronEngine::readFromFile(
        library.write("c.txt", "<Description>\nC\n\n\n<Iron loss>\n% steinmetz coefficients\n0.1 % kh\n"));
    EXPECT_EQ(lowerCase.kh, 0.0);
    EXPECT_EQ(lowerCase.lossFrequency, QList<double>({0.1}));
}
