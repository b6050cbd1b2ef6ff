#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <numeric>

#include "analysis/MAT_Parcer.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "analysis/MatFileCheck.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "document/UndoStack.h"
#include "geometry/MotorItem.h"
#include "geometry/Rotor.h"
#include "geometry/SimDomain.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "support/MatFile.h"
#include "winding/WindingObject.h"

namespace {

// The bundled example, written once for all tests that only read its exchange file.
class ExampleExchangeFile : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        dir = new QTemporaryDir;
        doc = new Document(nullptr);
        doc->start();
        loaded = doc->load(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva"));
        written = loaded && doc->writeExchangeFile(path());
    }

    static void TearDownTestSuite()
    {
        delete doc;
        delete dir;
    }

    void SetUp() override
    {
        ASSERT_TRUE(loaded);
        ASSERT_TRUE(written);
    }

    static QString path() { return dir->filePath("exchange/design.mat"); }

    static inline QTemporaryDir *dir = nullptr;
    static inline Document *doc = nullptr;
    static inline bool loaded = false;
    static inline bool written = false;
    MatFile file{path()};
};

// A fresh copy of the example for the tests that change it.
class ExampleProperties : public ::testing::Test
{
protected:
    void SetUp() override
    {
        doc.start();
        ASSERT_TRUE(doc.load(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva")));
    }

    // A motorProps variable as a parent program would write it.
    bool writeProps(const QString &path, matvar_t *props)
    {
        const QByteArray name = QFile::encodeName(path);
        mat_t *mat = Mat_CreateVer(name.constData(), nullptr, MAT_FT_MAT5);
        if (!mat)
            return false;
        const bool ok = Mat_VarWrite(mat, props, MAT_COMPRESSION_NONE) == 0;
        Mat_VarFree(props);
        Mat_Close(mat);
        return ok;
    }

    QTemporaryDir dir;
    Document doc{nullptr};
    MAT_Parcer parcer{&doc};
};

} // namespace

TEST_F(ExampleExchangeFile, HoldsTheVariablesInTheirOrder)
{
    EXPECT_TRUE(file.isLevel5());
    EXPECT_EQ(file.names(), (QStringList{"Geometry", "Windings", "cell_Properties", "cell_MaterialType", "Mesh",
                                         "RadMesh", "Materials", "Error", "motorProps", "Weight"}));
    EXPECT_FALSE(QFile::exists(path() + ".part"));
    EXPECT_EQ(MatFileCheck::problem(path()), QString()) << "the program's own file passes the reader's check";

    const MatVarPointer error = file.read("Error");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->class_type, MAT_C_CHAR);
    EXPECT_EQ(text(error.data()), doc->errorText().replace('\n', ". "));

    const MatVarPointer props = file.read("motorProps");
    ASSERT_TRUE(props);
    EXPECT_EQ(fieldNames(props.data()), (QStringList{"stator", "rotor", "windings", "airgap", "mesh"}));
    EXPECT_EQ(doubles(field(props, "airgap")), QVector<double>{doc->airgap(Airgap::ID1)->thickness()});
}

TEST_F(ExampleExchangeFile, GeometryWindingAndMaterialsAreThoseOfTheDesign)
{
    const MatVarPointer geometry = file.read("Geometry");
    ASSERT_TRUE(geometry);
    EXPECT_EQ(text(field(geometry, "motortype")), "stator-rotor");
    EXPECT_EQ(doubles(field(geometry, "Ns")), QVector<double>{double(doc->stator()->numberSlots())});
    EXPECT_EQ(doubles(field(geometry, "Ls")).size(), doc->stator()->activeItems().size());
    EXPECT_EQ(doubles(field(geometry, "Lr")), QVector<double>{doc->rotor()->activeItems().first()->height()});

    const WindingObject *winding = doc->winding();
    const MatVarPointer windings = file.read("Windings");
    ASSERT_TRUE(windings);
    EXPECT_EQ(doubles(field(windings, "W")), QVector<double>{double(winding->numberLayers() * winding->numberTurns())});
    EXPECT_EQ(doubles(field(windings, "nLayouts")), QVector<double>{double(winding->countLayouts())});
    const matvar_t *layouts = field(windings, "layout1");
    ASSERT_NE(layouts, nullptr);
    ASSERT_EQ(layouts->class_type, MAT_C_CELL);
    ASSERT_EQ(layouts->dims[1], size_t(winding->countLayouts()));
    const matvar_t *table = Mat_VarGetCell(const_cast<matvar_t *>(layouts), 0);
    const Winding::CoilList &coils = winding->coilLayouts().first().at(Winding::A);
    ASSERT_EQ(table->dims[0], size_t(coils.size()));
    const int columns = winding->effectiveNumberLayers() == 1 ? 4 : 6;
    ASSERT_EQ(table->dims[1], size_t(columns));
    // Column-major; slots and layers from 1.
    const QVector<double> cells = doubles(table);
    const int rows = coils.size();
    for (int r = 0; r < rows; ++r) {
        EXPECT_EQ(cells.at(r), r + 1);
        EXPECT_EQ(cells.at(r + rows), coils.at(r).slotFrom + 1);
        EXPECT_EQ(cells.at(r + (columns - 1) * rows), coils.at(r).parallelPath);
    }

    const MatVarPointer materials = file.read("Materials");
    ASSERT_TRUE(materials);
    EXPECT_EQ(text(field(materials, "statorironmaterial")), doc->stator()->ironMaterial());
    EXPECT_EQ(text(field(materials, "magnetmaterial")), doc->rotor()->magnetMaterial());
    EXPECT_EQ(doubles(field(materials, "k_st_stator")), QVector<double>{doc->stator()->ironStacking()});

    // The example's iron and magnets are in the libraries: they weigh something.
    const MatVarPointer weight = file.read("Weight");
    ASSERT_TRUE(weight);
    EXPECT_GT(doubles(field(weight, "statoriron")).value(0), 0.0);
    EXPECT_GT(doubles(field(weight, "magnet")).value(0), 0.0);
}

// The meshes of the file are the document's: same vertices and faces per slice,
// every face numbered into its slice's regions.
TEST_F(ExampleExchangeFile, MeshesAreTheDocumentsSlicesInMetres)
{
    const Mesh *mesh = doc->mesh();
    const int slices = mesh->numberSlices();
    const MatVarPointer meshVar = file.read("Mesh");
    ASSERT_TRUE(meshVar);
    EXPECT_EQ(fieldNames(meshVar.data()), (QStringList{"nAirGapLayers", "nSlices", "perbndcnd", "p", "e", "t",
                                                       "ipslid_rotor", "ipslid_stator", "Rcs", "L", "modified"}));
    EXPECT_EQ(doubles(field(meshVar, "nSlices")), QVector<double>{double(slices)});
    ASSERT_EQ(doubles(field(meshVar, "Rcs")).size(), slices);
    const QVector<double> widths = doubles(field(meshVar, "L"));
    const SimDomain domain = doc->simDomain();
    EXPECT_NEAR(std::accumulate(widths.cbegin(), widths.cend(), 0.0), (domain.outer - domain.inner) / 1000, 1e-9);

    const MatVarPointer properties = file.read("cell_Properties");
    const MatVarPointer materialTypes = file.read("cell_MaterialType");
    ASSERT_TRUE(properties);
    ASSERT_TRUE(materialTypes);
    ASSERT_EQ(properties->dims[1], size_t(slices));
    for (int i = 0; i < slices; ++i) {
        SCOPED_TRACE(i);
        const CDT::Snapshot snapshot = mesh->meshSlices().at(i).snapshot();
        const int inDomain = int(std::count_if(snapshot.faces.cbegin(), snapshot.faces.cend(),
                                               [](const CDT::Face &face) { return face.inDomain; }));
        const matvar_t *p = Mat_VarGetCell(field(meshVar, "p"), i);
        const matvar_t *t = Mat_VarGetCell(field(meshVar, "t"), i);
        const matvar_t *e = Mat_VarGetCell(field(meshVar, "e"), i);
        ASSERT_NE(p, nullptr);
        ASSERT_NE(t, nullptr);
        ASSERT_NE(e, nullptr);
        ASSERT_EQ(p->dims[0], 2u);
        ASSERT_EQ(p->dims[1], size_t(snapshot.vertices.size()));
        ASSERT_EQ(t->dims[0], 4u);
        ASSERT_EQ(t->dims[1], size_t(inDomain));
        ASSERT_EQ(e->dims[0], 7u);
        ASSERT_GT(p->dims[1], 0u);

        const QVector<double> points = doubles(p);
        EXPECT_NEAR(points.at(0), snapshot.vertices.at(0).point.x() / 1000, 1e-12);
        EXPECT_NEAR(points.at(1), snapshot.vertices.at(0).point.y() / 1000, 1e-12);

        const matvar_t *regions = Mat_VarGetCell(properties.data(), i);
        const matvar_t *keys = Mat_VarGetCell(materialTypes.data(), i);
        ASSERT_NE(regions, nullptr);
        ASSERT_NE(keys, nullptr);
        ASSERT_EQ(regions->class_type, MAT_C_STRUCT);
        EXPECT_EQ(regions->dims[1], keys->dims[1]);
        const int regionCount = int(regions->dims[1]);
        EXPECT_GT(regionCount, 0);

        const QVector<double> faces = doubles(t);
        int withoutRegion = 0;
        for (int k = 0; k < inDomain; ++k) {
            for (int row = 0; row < 3; ++row) {
                ASSERT_GE(faces.at(4 * k + row), 1);
                ASSERT_LE(faces.at(4 * k + row), snapshot.vertices.size());
            }
            ASSERT_LE(faces.at(4 * k + 3), regionCount);
            withoutRegion += faces.at(4 * k + 3) == 0 ? 1 : 0;
        }
        EXPECT_LT(withoutRegion, inDomain / 100 + 1);

        // Both sides of the gap bring a row of the same lattice.
        const matvar_t *rotorRows = Mat_VarGetCell(field(meshVar, "ipslid_rotor"), i);
        const matvar_t *statorRows = Mat_VarGetCell(field(meshVar, "ipslid_stator"), i);
        ASSERT_NE(rotorRows, nullptr);
        ASSERT_NE(statorRows, nullptr);
        ASSERT_EQ(rotorRows->dims[1], size_t(doc->airgaps().size()));
        const QVector<double> rotorRow = doubles(Mat_VarGetCell(const_cast<matvar_t *>(rotorRows), 0));
        const QVector<double> statorRow = doubles(Mat_VarGetCell(const_cast<matvar_t *>(statorRows), 0));
        EXPECT_GT(rotorRow.size(), 1);
        EXPECT_EQ(rotorRow.size(), statorRow.size());
        EXPECT_NE(rotorRow, statorRow);
    }

    const MatVarPointer radial = file.read("RadMesh");
    ASSERT_TRUE(radial);
    EXPECT_EQ(fieldNames(radial.data()), (QStringList{"p", "e", "t", "MaterialType", "Properties"}));
    // The radial model is the document's radial mesh, its regions with nine properties each.
    const CDT::Snapshot radialMesh = mesh->meshRadial().snapshot();
    ASSERT_GT(radialMesh.vertices.size(), 0);
    const int radialFaces = int(std::count_if(radialMesh.faces.cbegin(), radialMesh.faces.cend(),
                                              [](const CDT::Face &face) { return face.inDomain; }));
    const matvar_t *radialPoints = field(radial, "p");
    const matvar_t *radialTriangles = field(radial, "t");
    ASSERT_EQ(radialPoints->dims[0], 2u);
    EXPECT_EQ(radialPoints->dims[1], size_t(radialMesh.vertices.size()));
    ASSERT_EQ(radialTriangles->dims[0], 4u);
    EXPECT_EQ(radialTriangles->dims[1], size_t(radialFaces));
    const matvar_t *radialRegions = field(radial, "Properties");
    ASSERT_EQ(radialRegions->class_type, MAT_C_STRUCT);
    EXPECT_EQ(radialRegions->dims[1], field(radial, "MaterialType")->dims[1]);
    EXPECT_EQ(Mat_VarGetNumberOfFields(const_cast<matvar_t *>(radialRegions)), 9);
}

TEST_F(ExampleExchangeFile, RegionsCarryTheirBodyAndMaterial)
{
    const QVariantList slices = MAT_Converter::toVariant(file.read("cell_Properties").data()).toList();
    const QVariantList keys = MAT_Converter::toVariant(file.read("cell_MaterialType").data()).toList();
    ASSERT_EQ(slices.size(), keys.size());
    const QVariantList regions = slices.first().toList();
    QStringList positions;
    bool magnetSeen = false;
    bool windingSeen = false;
    for (const QVariant &region : regions) {
        const QVariantMap map = region.toMap();
        positions << map.value("position").toString();
        magnetSeen |= !map.value("magnetization").toString().isEmpty();
        windingSeen |= map.value("slot").toDouble() > 0 || map.value("layer").toDouble() > 0;
    }
    EXPECT_TRUE(magnetSeen);
    EXPECT_TRUE(windingSeen);
    // Rotor regions are numbered first.
    const int firstStator = int(positions.indexOf("stator1"));
    ASSERT_GT(firstStator, 0);
    EXPECT_EQ(positions.mid(0, firstStator), QStringList(QVector<QString>(firstStator, "rotor1").toList()));
    EXPECT_EQ(positions.lastIndexOf("rotor1"), firstStator - 1);
}

TEST_F(ExampleExchangeFile, ConvertsToJsonByVariableName)
{
    const QJsonObject json = MAT_Parcer(doc).convertToJSON(path());
    EXPECT_EQ(QStringList(json.keys()).size(), file.names().size());
    EXPECT_EQ(json.value("Geometry").toObject().value("motortype").toString(), "stator-rotor");
    EXPECT_EQ(json.value("Mesh").toObject().value("p").toArray().size(), doc->mesh()->numberSlices());
    EXPECT_TRUE(MAT_Parcer(doc).convertToJSON(path() + ".absent").isEmpty());
}

TEST_F(ExampleProperties, AProtectedDesignGivesItsVariablesEmpty)
{
    const QString protectedPath = dir.filePath("design.zvap");
    ASSERT_TRUE(doc.save(protectedPath, nullptr));
    Document locked(nullptr);
    locked.start();
    ASSERT_TRUE(locked.load(protectedPath));
    ASSERT_TRUE(locked.isProtectedFile());

    const QString path = dir.filePath("locked.mat");
    ASSERT_TRUE(MAT_Parcer(&locked).write(path));
    const MatFile file(path);
    const QStringList names{"Geometry",        "Windings", "Mesh",       "Materials", "cell_MaterialType",
                            "cell_Properties", "RadMesh",  "motorProps", "Weight"};
    ASSERT_EQ(file.names(), names);
    for (const QString &name : names) {
        const MatVarPointer variable = file.read(name.toUtf8().constData());
        ASSERT_TRUE(variable) << name.toStdString();
        EXPECT_EQ(variable->dims[0] * variable->dims[1], 0u) << name.toStdString();
    }
}

TEST_F(ExampleProperties, SettingsOfTheSolverAreWrittenUnderTheirNames)
{
    doc.analysis()->setMechanicalSpeed(1500);
    const MatVarPointer settings = parcer.settingsMagnetostaticToMAT();
    ASSERT_TRUE(settings);
    EXPECT_EQ(fieldNames(settings.data()).size(), 15);
    EXPECT_EQ(doubles(field(settings, "MS_speed")), QVector<double>{1500});
    EXPECT_EQ(text(field(settings, "MS_solvertype")),
              MagnetostaticAnalysis::solverTypeName(doc.analysis()->solverType()));
    EXPECT_EQ(field(settings, "MS_coggingtorque")->class_type, MAT_C_UINT8);
}

TEST_F(ExampleProperties, SavedPropertiesLoadBackAsOneUndoableChange)
{
    const QString path = dir.filePath("props.mat");
    ASSERT_TRUE(parcer.saveMotorProperties(path));
    EXPECT_EQ(MatFile(path).names(), QStringList{"motorProps"});

    // A parent program changes two values and hands the file back.
    QVariantMap props = MAT_Converter::toVariant(MatFile(path).read("motorProps").data()).toMap();
    QVariantMap stator = props.value("stator").toMap();
    const double outer = doc.stator()->outerDiameter();
    const double gap = doc.airgap(Airgap::ID1)->thickness();
    stator["outerDiameter"] = outer + 10;
    props["stator"] = stator;
    props["airgap"] = gap + 0.5;
    ASSERT_TRUE(writeProps(path, MAT_Converter::matVar(props, "motorProps")));

    const int commands = doc.undoStack()->count();
    ASSERT_TRUE(parcer.loadMotorProperties(path));
    EXPECT_DOUBLE_EQ(doc.stator()->outerDiameter(), outer + 10);
    EXPECT_DOUBLE_EQ(doc.airgap(Airgap::ID1)->thickness(), gap + 0.5);
    ASSERT_EQ(doc.undoStack()->count(), commands + 1);
    EXPECT_EQ(doc.undoStack()->command(commands)->text(), "Set properties");
    EXPECT_EQ(doc.undoStack()->command(commands)->childCount(), 2);

    doc.undo();
    EXPECT_DOUBLE_EQ(doc.stator()->outerDiameter(), outer);
    EXPECT_DOUBLE_EQ(doc.airgap(Airgap::ID1)->thickness(), gap);
}

TEST_F(ExampleProperties, UnfitFilesLeaveTheDocumentAlone)
{
    const int commands = doc.undoStack()->count();
    const double gap = doc.airgap(Airgap::ID1)->thickness();

    EXPECT_FALSE(parcer.loadMotorProperties(dir.filePath("absent.mat")));

    const QString other = dir.filePath("other.mat");
    ASSERT_TRUE(writeProps(other, MAT_Converter::matVar(1.0, "somethingElse")));
    EXPECT_FALSE(parcer.loadMotorProperties(other));

    const QString wrong = dir.filePath("wrong.mat");
    ASSERT_TRUE(writeProps(wrong, MAT_Converter::matVar(QVariantMap{{"airgap", gap + 1}, {"stator", "big"}},
                                                         "motorProps")));
    EXPECT_FALSE(parcer.loadMotorProperties(wrong));

    const QString text = dir.filePath("text.mat");
    ASSERT_TRUE(writeProps(text, MAT_Converter::matVar("not a struct", "motorProps")));
    EXPECT_FALSE(parcer.loadMotorProperties(text));

    EXPECT_EQ(doc.undoStack()->count(), commands);
    EXPECT_DOUBLE_EQ(doc.airgap(Airgap::ID1)->thickness(), gap);
}

TEST_F(ExampleProperties, AFailedWriteKeepsTheFileThatWasThere)
{
    const QString path = dir.filePath("design.mat");
    {
        QFile good(path);
        ASSERT_TRUE(good.open(QIODevice::WriteOnly));
        good.write("good");
    }
    // The file beside it, where the new one is made, cannot be created.
    ASSERT_TRUE(QDir(dir.path()).mkdir("design.mat.part"));
    EXPECT_FALSE(parcer.write(path));
    QFile kept(path);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArray("good"));
}
