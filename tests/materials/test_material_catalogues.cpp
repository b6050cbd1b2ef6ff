#include <QAbstractItemModelTester>
#include <QSettings>
#include <gtest/gtest.h>

#include "MaterialTestSupport.h"
#include "document/Document.h"
#include "materials/BasicMaterials.h"
#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"
#include "materials/TransistorDescriptorEngine.h"

namespace {

QByteArray ironFile(const QByteArray &name, const QByteArray &description = {})
{
    return "<Description>\n" + name + "\n" + description + "\nSource: test\n<Mass Density> (kg/m^3)\n7600\n";
}

QImage iconImage(const QVariant &decoration)
{
    return decoration.value<QIcon>().pixmap(16, 16).toImage();
}

QImage iconImage(const QIcon &icon)
{
    return icon.pixmap(16, 16).toImage();
}

// The names shown on one level, joined by "|".
std::string rowNames(const QAbstractItemModel &model, const QModelIndex &parent = {})
{
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row)
        names << model.index(row, 0, parent).data().toString();
    return names.join('|').toStdString();
}

// An iron library with folders, a duplicate name and files that are no materials.
class IronCatalogue : public ::testing::Test
{
protected:
    void SetUp() override
    {
        library.write("Iron/lower case.txt", ironFile("lower case"));
        library.write("Iron/M400.txt", ironFile("M400", "top level"));
        library.write("Iron/Beta/dup.txt", ironFile("M270", "second"));
        library.write("Iron/Alpha/one.txt", ironFile("M270", "first"));
        library.write("Iron/Alpha/deep/two.txt", ironFile("Z deep"));
        library.write("Iron/no description.txt", "<Mass Density> (kg/m^3)\n7600\n");
        library.write("Iron/notes.md", ironFile("Not a material"));
        library.makeFolder("Iron/Empty folder");
    }

    TemporaryLibrary library;
};

void copyFolder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    const QDir source(from);
    for (const QFileInfo &info : source.entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot)) {
        if (info.isDir())
            copyFolder(info.filePath(), to + "/" + info.fileName());
        else
            QFile::copy(info.filePath(), to + "/" + info.fileName());
    }
}

} // namespace

TEST_F(IronCatalogue, SortsEachLevelByNameWithNotAssignedFirst)
{
    MaterialIronEngine engine(library.path());
    QAbstractItemModelTester tester(&engine, QAbstractItemModelTester::FailureReportingMode::Fatal);

    // Code unit order: upper case before lower case, folders and materials mixed.
    EXPECT_EQ(rowNames(engine), "Not assigned|Alpha|Beta|Empty folder|M400|lower case");
    const QModelIndex alpha = engine.index(1, 0);
    EXPECT_EQ(rowNames(engine, alpha), "M270|deep");
    EXPECT_EQ(rowNames(engine, engine.index(1, 0, alpha)), "Z deep");
    EXPECT_EQ(engine.rowCount(engine.index(3, 0)), 0);
    EXPECT_EQ(engine.columnCount(), 1);
}

TEST_F(IronCatalogue, FirstMaterialOfANameInTheSortedWalkWins)
{
    const MaterialIronEngine engine(library.path());
    const MaterialIronDescribe *m270 = engine.describe("M270");
    ASSERT_NE(m270, nullptr);
    EXPECT_EQ(m270->description, "first");
    EXPECT_TRUE(m270->fileName.endsWith("Alpha/one.txt"));

    const QModelIndex index = engine.indexOf("M270");
    EXPECT_EQ(index.row(), 0);
    EXPECT_EQ(index.parent().data().toString(), "Alpha");
}

TEST_F(IronCatalogue, LooksUpNestedMaterialsButNeitherFoldersNorEmptyNames)
{
    const MaterialIronEngine engine(library.path());
    ASSERT_NE(engine.describe("Z deep"), nullptr);
    const QModelIndex deep = engine.indexOf("Z deep");
    ASSERT_TRUE(deep.isValid());
    EXPECT_EQ(deep.data().toString(), "Z deep");
    EXPECT_EQ(deep.parent().data().toString(), "deep");
    EXPECT_EQ(deep.parent().parent().data().toString(), "Alpha");

    EXPECT_EQ(engine.describe(""), nullptr);
    EXPECT_EQ(engine.describe("Alpha"), nullptr);
    EXPECT_EQ(engine.describe("Not a material"), nullptr);
    EXPECT_EQ(engine.describe("missing"), nullptr);
    EXPECT_FALSE(engine.indexOf("missing").isValid());
    EXPECT_FALSE(engine.indexOf("Alpha").isValid());
    EXPECT_EQ(engine.indexOf(""), engine.index(0, 0));
}

TEST_F(IronCatalogue, RolesOfFoldersMaterialsAndTheUnassignedRow)
{
    const MaterialIronEngine engine(library.path());
    const QModelIndex unassigned = engine.index(0, 0);
    const QModelIndex folder = engine.index(1, 0);
    const QModelIndex material = engine.indexOf("M400");

    EXPECT_EQ(iconImage(unassigned.data(Qt::DecorationRole)), iconImage(QIcon(":/prohibition.png")));
    EXPECT_EQ(iconImage(folder.data(Qt::DecorationRole)), iconImage(QIcon(":/folder.png")));
    EXPECT_EQ(iconImage(material.data(Qt::DecorationRole)), pixmapOf(IronMaterial(), 16).toImage());
    EXPECT_FALSE(iconImage(QIcon(":/prohibition.png")).isNull());

    EXPECT_EQ(material.data(Qt::ToolTipRole).toString(), "M400\ntop level\ntest");
    EXPECT_EQ(engine.indexOf("lower case").data(Qt::ToolTipRole).toString(), "lower case\ntest");
    EXPECT_EQ(folder.data(Qt::ToolTipRole).toString(), "Alpha");

    const QVariant record = material.data(Qt::UserRole);
    ASSERT_TRUE(record.canConvert<MaterialIronDescribe>());
    EXPECT_EQ(record.value<MaterialIronDescribe>().massDensity, 7600.0);
    EXPECT_FALSE(folder.data(Qt::UserRole).isValid());
    EXPECT_EQ(engine.flags(material), engine.flags(folder));
}

TEST_F(IronCatalogue, IconOfTellsMaterialsFromNoMaterial)
{
    const MaterialIronEngine engine(library.path());
    const QImage prohibition = iconImage(QIcon(":/prohibition.png"));
    EXPECT_EQ(iconImage(engine.iconOf("")), prohibition);
    EXPECT_EQ(iconImage(engine.iconOf("Not assigned")), prohibition);
    // Whether the material exists is not asked.
    EXPECT_EQ(iconImage(engine.iconOf("anything")), pixmapOf(IronMaterial(), 16).toImage());
}

TEST(MaterialCatalogues, EmptyOrMissingKindFolderGivesNotAssignedAlone)
{
    TemporaryLibrary library;
    library.makeFolder("Iron");
    const MaterialIronEngine empty(library.path());
    EXPECT_EQ(rowNames(empty), "Not assigned");
    EXPECT_EQ(iconImage(empty.index(0, 0).data(Qt::DecorationRole)), iconImage(QIcon(":/prohibition.png")));

    const LogCatcher log;
    const MaterialConductorEngine conductors(library.path());
    const MaterialMagnetEngine magnets(library.path());
    EXPECT_EQ(rowNames(conductors), "Not assigned");
    EXPECT_EQ(rowNames(magnets), "Not assigned");
    EXPECT_TRUE(log.contains("Error: not exists folder of material of conductor"));
    EXPECT_TRUE(log.contains("Error: not exists folder of material of magnet"));
}

TEST(MaterialCatalogues, EachKindReadsItsOwnFolder)
{
    TemporaryLibrary library;
    library.write("Conductor/cu.txt", "<Description>\nCopper\nplain\n<Electric resistivity> (Ohm*m)\n1.7e-8\n");
    library.write("Magnet/Sintered/n42.txt", "<Description>\nN42\nsintered\nSource: table\n<Mass Density> (kg/m^3)\n7500\n");

    const MaterialConductorEngine conductors(library.path());
    ASSERT_NE(conductors.describe("Copper"), nullptr);
    EXPECT_DOUBLE_EQ(conductors.describe("Copper")->electricResistivity, 1.7e-8);
    EXPECT_EQ(conductors.describe("N42"), nullptr);

    const MaterialMagnetEngine magnets(library.path());
    ASSERT_NE(magnets.describe("N42"), nullptr);
    EXPECT_EQ(magnets.describe("N42")->source, "table");
    EXPECT_EQ(magnets.indexOf("N42").parent().data().toString(), "Sintered");
    EXPECT_EQ(magnets.index(0, 0).data(Qt::UserRole).value<MaterialMagnetDescribe>().name, "");
}

TEST(TransistorCatalogue, IdealSwitchFirstThenFilesInNameOrder)
{
    TemporaryLibrary library;
    library.write("Transistor/B.txt", "<Description>\n  Fast  switch \n");
    library.write("Transistor/A.txt", "<description>\nfirst\nx\n<Description>\nsecond\n");
    library.write("Transistor/readme.md", "<Description>\nnot listed\n");
    library.write("Transistor/Sub/C.txt", "<Description>\nnot listed\n");

    const TransistorDescriptorEngine engine(library.path());
    const QVector<TransistorDescribe> &transistors = engine.transistors();
    ASSERT_EQ(transistors.size(), 3);
    EXPECT_EQ(transistors.at(0).name, "Ideal (no losses, no voltage drop)");
    EXPECT_EQ(transistors.at(0).type, "MOSFET");
    EXPECT_TRUE(transistors.at(0).fileName.isEmpty());
    EXPECT_EQ(transistors.at(1).name, "A");
    EXPECT_EQ(transistors.at(1).description, "second");
    EXPECT_EQ(transistors.at(2).description, "  Fast  switch ");
    EXPECT_TRUE(transistors.at(2).type.isEmpty());
    EXPECT_TRUE(transistors.at(2).fileName.endsWith("Transistor/B.txt"));

    ASSERT_NE(engine.describe("B"), nullptr);
    EXPECT_EQ(engine.describe("B")->name, "B");
    EXPECT_EQ(engine.describe("C"), nullptr);
}

TEST(TransistorCatalogue, MissingFolderKeepsTheIdealSwitch)
{
    TemporaryLibrary library;
    const LogCatcher log;
    const TransistorDescriptorEngine engine(library.path());
    ASSERT_EQ(engine.transistors().size(), 1);
    EXPECT_EQ(engine.transistors().first().name, "Ideal (no losses, no voltage drop)");
    EXPECT_TRUE(log.contains("Error: not exists folder of material of transistor"));
}

TEST(MaterialCatalogues, BuildFolderHoldsTheWholeLibrary)
{
    const QString built = QFileInfo(ZDS_EXECUTABLE).path() + "/assets/materials";
    const QString source = ZDS_SOURCE_DIR "/assets/materials";
    ASSERT_TRUE(QFileInfo(built).isDir());

    const MaterialIronEngine builtIrons(built);
    const MaterialIronEngine sourceIrons(source);
    EXPECT_EQ(rowNames(builtIrons), rowNames(sourceIrons));
    EXPECT_NE(builtIrons.describe("M270-35A"), nullptr);
    EXPECT_NE(MaterialConductorEngine(built).describe("Copper annealed"), nullptr);
    EXPECT_NE(MaterialMagnetEngine(built).describe("NdFeB N42"), nullptr);
    EXPECT_EQ(TransistorDescriptorEngine(built).transistors().size(),
              TransistorDescriptorEngine(source).transistors().size());
}

// The only test that builds the process-wide catalogues: they are read once.
TEST(MaterialCatalogues, InstancesReadTheLibraryOfAParentInstallation)
{
    QTemporaryDir settingsDir;
    QTemporaryDir installation;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsDir.path());
    copyFolder(ZDS_SOURCE_DIR "/assets/materials", installation.path() + "/materials");
    {
        QSettings settings("Quorlan", "Zolvane");
        settings.setValue("RootPathMatlab", installation.path());
    }
    const QString materials = installation.path() + "/materials";
    ASSERT_EQ(Document::materialsPath(), materials);

    const MaterialIronDescribe *steel = MaterialIronEngine::instance().describe("M270-35A");
    ASSERT_NE(steel, nullptr);
    EXPECT_TRUE(steel->fileName.startsWith(materials));
    EXPECT_EQ(&MaterialIronEngine::instance(), &MaterialIronEngine::instance());
    EXPECT_NE(MaterialConductorEngine::instance().describe("Copper annealed"), nullptr);
    EXPECT_NE(MaterialMagnetEngine::instance().describe("Sm2Co17 28 MGOe"), nullptr);
    EXPECT_NE(TransistorDescriptorEngine::instance().describe("IRF3205"), nullptr);
    EXPECT_EQ(TransistorDescriptorEngine::instance().transistors().first().name, "Ideal (no losses, no voltage drop)");

    QSettings("Quorlan", "Zolvane").clear();
}
