#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "analysis/MAT_Converter.h"
#include "analysis/MAT_Parcer.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "meshing/Mesh.h"
#include "support/MatFile.h"
#include "support/ProgramRun.h"

// A parent program's round trips: read the design's values, change them, and get a
// full exchange file or a new document back.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

bool writeVariable(const QString &path, matvar_t *variable)
{
    const QByteArray name = QFile::encodeName(path);
    mat_t *mat = Mat_CreateVer(name.constData(), nullptr, MAT_FT_MAT5);
    if (!mat)
        return false;
    const bool ok = Mat_VarWrite(mat, variable, MAT_COMPRESSION_NONE) == 0;
    Mat_VarFree(variable);
    Mat_Close(mat);
    return ok;
}

QVariantMap readProps(const QString &path)
{
    return MAT_Converter::toVariant(MatFile(path).read("motorProps").data()).toMap();
}

// The design's values with the parent's changes, as the program gets them back.
QString changedProps(const QTemporaryDir &dir, int slices, double gap)
{
    const QString path = dir.filePath("props.mat");
    ProgramRun run;
    if (!run.start({"--operation=getProps", "--exchange-file=" + path, example}) || run.exitCode != 0)
        return QString();
    QVariantMap props = readProps(path);
    QVariantMap mesh = props.value("mesh").toMap();
    mesh["nSlices"] = slices;
    props["mesh"] = mesh;
    props["airgap"] = gap;
    return writeVariable(path, MAT_Converter::matVar(props, "motorProps")) ? path : QString();
}

} // namespace

TEST(ExchangeOperations, GetPropsHandsTheDesignValuesToTheParent)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("props.mat");
    ProgramRun run;
    ASSERT_TRUE(run.start({"--operation=getProps", "--exchange-file=" + path, example}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.logText().contains("handleCmdGetProps, result: true")) << run.logText().toStdString();

    EXPECT_EQ(MatFile(path).names(), QStringList{"motorProps"});
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(example));
    const QVariantMap props = readProps(path);
    EXPECT_EQ(props.value("airgap").toDouble(), doc.airgap(Airgap::ID1)->thickness());
    EXPECT_EQ(props.value("mesh").toMap(), doc.mesh()->properties());
}

// The file the parent gets has the meshes of the changed design, slice by slice.
TEST(ExchangeOperations, CalculateAnswersWithTheFullExchangeFileOfTheChangedDesign)
{
    QTemporaryDir dir;
    const QString path = changedProps(dir, 2, 2.5);
    ASSERT_FALSE(path.isEmpty());

    ProgramRun run;
    ASSERT_TRUE(run.start({"--operation=calculate", "--exchange-file=" + path, example}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.logText().contains("handleCmdCalculate, result: true")) << run.logText().toStdString();

    const MatFile file(path);
    EXPECT_TRUE(file.isLevel5());
    EXPECT_EQ(file.names(), (QStringList{"Geometry", "Windings", "cell_Properties", "cell_MaterialType", "Mesh",
                                         "RadMesh", "Materials", "Error", "motorProps", "Weight"}));
    EXPECT_EQ(doubles(field(file.read("Geometry"), "lag")), QVector<double>{2.5});

    // The same change made here gives the same meshes.
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(example));
    const QString again = dir.filePath("again.mat");
    ASSERT_TRUE(QFile::copy(path, again));
    ASSERT_TRUE(MAT_Parcer(&doc).loadMotorProperties(again));
    doc.ensureData();
    ASSERT_EQ(doc.mesh()->numberSlices(), 2);

    const MatVarPointer mesh = file.read("Mesh");
    ASSERT_TRUE(mesh);
    const matvar_t *points = field(mesh, "p");
    const matvar_t *triangles = field(mesh, "t");
    ASSERT_NE(points, nullptr);
    ASSERT_NE(triangles, nullptr);
    ASSERT_EQ(points->dims[1], 2u);
    ASSERT_EQ(triangles->dims[1], 2u);
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        const CDT::Snapshot snapshot = doc.mesh()->meshSlices().at(i).snapshot();
        const auto inDomain = std::count_if(snapshot.faces.cbegin(), snapshot.faces.cend(),
                                            [](const CDT::Face &face) { return face.inDomain; });
        EXPECT_GT(snapshot.vertices.size(), 0);
        EXPECT_EQ(Mat_VarGetCell(const_cast<matvar_t *>(points), i)->dims[1], size_t(snapshot.vertices.size()));
        EXPECT_EQ(Mat_VarGetCell(const_cast<matvar_t *>(triangles), i)->dims[1], size_t(inDomain));
    }
}

TEST(ExchangeOperations, SaveZVAWritesANewDocumentWithTheParentsValues)
{
    QTemporaryDir dir;
    const QString path = changedProps(dir, 4, 2.0);
    ASSERT_FALSE(path.isEmpty());
    const QString saved = dir.filePath("changed.zva");

    ProgramRun run;
    ASSERT_TRUE(run.start({"--operation=saveZVA", "--exchange-file=" + path, "--file-save-to=" + saved, example}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.logText().contains("handleCmdSaveZVA, result: true")) << run.logText().toStdString();

    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(saved));
    EXPECT_DOUBLE_EQ(doc.airgap(Airgap::ID1)->thickness(), 2.0);
    EXPECT_EQ(doc.mesh()->numberSlices(), 4);
}

TEST(ExchangeOperations, AFileWithoutPropertiesChangesNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("other.mat");
    ASSERT_TRUE(writeVariable(path, MAT_Converter::matVar(1.0, "somethingElse")));
    const QString saved = dir.filePath("never.zva");

    ProgramRun save;
    ASSERT_TRUE(save.start({"--operation=saveZVA", "--exchange-file=" + path, "--file-save-to=" + saved, example}));
    EXPECT_EQ(save.exitCode, 0);
    EXPECT_TRUE(save.logText().contains("Load motor properties failed")) << save.logText().toStdString();
    EXPECT_FALSE(QFile::exists(saved));

    ProgramRun calculate;
    ASSERT_TRUE(calculate.start({"--operation=calculate", "--exchange-file=" + path, example}));
    EXPECT_EQ(calculate.exitCode, 0);
    EXPECT_TRUE(calculate.logText().contains("Can't read 'motorProps'")) << calculate.logText().toStdString();
    EXPECT_EQ(MatFile(path).names(), QStringList{"somethingElse"});
}

TEST(ExchangeOperations, HiddenExecuteWritesTheDesignForTheParent)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("design.mat");
    ProgramRun run;
    ASSERT_TRUE(run.start({"--operation=execute", "--page=hidden", "--exchange-file=" + path, example}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.logText().contains("Export data at")) << run.logText().toStdString();
    EXPECT_EQ(text(field(MatFile(path).read("Geometry"), "motortype")), "stator-rotor");
}
