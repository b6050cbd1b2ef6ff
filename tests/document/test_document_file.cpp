#include <QDataStream>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <matio.h>

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "document/RatedData.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "meshing/Mesh.h"
#include "support/EditableDocument.h"
#include "support/LogCatcher.h"
#include "winding/WindingObject.h"

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// Writes a hand-made file with a QDataStream of the document's version.
template <typename Fill>
QByteArray handMade(Fill fill)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_13);
    fill(out);
    return bytes;
}

const quint32 documentMagic = 0x61767A66;
const quint32 protectedMagic = 0x7061767A;

} // namespace

class DocumentFileTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
};

TEST_F(DocumentFileTest, SaveLoadSaveGivesIdenticalBytes)
{
    Document doc;
    makeEditable(doc);
    doc.setMachineType(Machine::SRS);
    doc.stator()->setNumberSlots(12);
    doc.stator()->setOuterDiameter(250.0);
    doc.rotor()->setNumberPolePairs(5);
    doc.stator()->items().at(1)->setHeight(17.5);
    doc.setPropertyUndoable(doc.airgap(1), "thickness", 1.25);
    doc.setPropertyUndoable(doc.airgap(1), "numberLayers", 7);
    doc.undo();
    doc.ratedData()->setSpeed(3000.0);
    doc.setMode(Document::Mesh2D);
    doc.analysis()->setDataSimulation({{"Magnetostatic", QVariantMap{{"Results", QByteArray("r")}}}});
    ASSERT_TRUE(doc.loadDataSimulationFromFile(ZDS_SOURCE_DIR "/tests/document/test_document_file.cpp"));
    ASSERT_TRUE(doc.save(path("a.zva"), nullptr));

    Document copy;
    copy.start();
    ASSERT_TRUE(copy.load(path("a.zva")));
    EXPECT_EQ(copy.machineType(), Machine::SRS);
    EXPECT_EQ(copy.stator()->numberSlots(), 12);
    EXPECT_DOUBLE_EQ(copy.stator()->outerDiameter(), 250.0);
    EXPECT_EQ(copy.rotor()->numberPolePairs(), 5);
    EXPECT_DOUBLE_EQ(copy.stator()->items().at(1)->height(), 17.5);
    EXPECT_DOUBLE_EQ(copy.airgap(2)->thickness(), 1.25);
    EXPECT_EQ(copy.airgap(2)->numberLayers(), 3);
    EXPECT_DOUBLE_EQ(copy.ratedData()->speed(), 3000.0);
    EXPECT_EQ(copy.mode(), Document::Mesh2D);
    EXPECT_EQ(copy.analysis()->dataSimulation(), doc.analysis()->dataSimulation());
    EXPECT_EQ(copy.dataSimulation(), doc.dataSimulation());
    EXPECT_FALSE(copy.isModified());

    // The history comes back with its undone command still to redo.
    EXPECT_EQ(copy.undoStack()->count(), 2);
    EXPECT_EQ(copy.undoStack()->index(), 1);
    copy.redo();
    EXPECT_EQ(copy.airgap(1)->numberLayers(), 7);
    copy.undo();
    copy.undo();
    EXPECT_DOUBLE_EQ(copy.airgap(1)->thickness(), 3.0);
    copy.redo();

    // A loaded design is settled: saving it, loading and saving again changes no byte.
    copy.setPreparing(false);
    copy.setModified(true);
    ASSERT_TRUE(copy.save(path("b.zva"), nullptr));
    Document again;
    again.start();
    ASSERT_TRUE(again.load(path("b.zva")));
    again.setPreparing(false);
    again.setModified(true);
    ASSERT_TRUE(again.save(path("c.zva"), nullptr));
    EXPECT_EQ(readAll(path("b.zva")), readAll(path("c.zva")));
}

// Qt 5 streams a map from its greatest key down; files keep that one order.
TEST_F(DocumentFileTest, MapsAreWrittenInDescendingKeyOrder)
{
    Document doc;
    makeEditable(doc);
    doc.analysis()->setDataSimulation({{"zeta", 1}, {"alpha", 2}});
    doc.setModified(true);
    ASSERT_TRUE(doc.save(path("m.zva"), nullptr));
    const QByteArray bytes = readAll(path("m.zva"));
    const int alphaAt = bytes.indexOf(QByteArray("\0a\0l\0p\0h\0a", 10));
    const int zetaAt = bytes.indexOf(QByteArray("\0z\0e\0t\0a", 8));
    ASSERT_GE(alphaAt, 0);
    ASSERT_GE(zetaAt, 0);
    EXPECT_GT(alphaAt, zetaAt);
}

TEST_F(DocumentFileTest, UnchangedDocumentIsNotRewritten)
{
    Document doc;
    makeEditable(doc);
    doc.setModified(true);
    ASSERT_TRUE(doc.save(path("u.zva"), nullptr));
    EXPECT_FALSE(doc.isModified());
    writeAll(path("u.zva"), "sentinel");
    ASSERT_TRUE(doc.save(path("u.zva"), nullptr));
    EXPECT_EQ(readAll(path("u.zva")), "sentinel");

    doc.setMode(Document::Winding);
    ASSERT_TRUE(doc.save(path("u.zva"), nullptr));
    EXPECT_NE(readAll(path("u.zva")), "sentinel") << "a change of page alone is saved";
}

TEST_F(DocumentFileTest, ProtectedFileHoldsOnlyDataAndPicture)
{
    Document doc;
    makeEditable(doc);
    doc.stator()->setNumberSlots(24);
    doc.loadDataSimulationFromFile(ZDS_SOURCE_DIR "/README.md");
    QImage picture(8, 4, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(doc.save(path("p.zvap"), &picture));
    const QByteArray bytes = readAll(path("p.zvap"));
    EXPECT_EQ(bytes.left(4), QByteArray("\x70\x61\x76\x7A", 4));

    Document shown;
    shown.start();
    ASSERT_TRUE(shown.load(path("p.zvap")));
    EXPECT_TRUE(shown.isProtectedFile());
    EXPECT_NE(shown.stator()->numberSlots(), 24) << "the design isn't in a protected file";
    EXPECT_EQ(shown.previewImage().size(), QSize(8, 4));
    EXPECT_EQ(shown.dataSimulation(), doc.dataSimulation());

    // Whatever the suffix, a protected document stays protected, with its own picture.
    shown.setPreparing(false);
    shown.setModified(true);
    ASSERT_TRUE(shown.save(path("again.zva"), nullptr));
    EXPECT_EQ(readAll(path("again.zva")), bytes);
}

TEST_F(DocumentFileTest, WrongMagicIsRefusedAndChangesNothing)
{
    writeAll(path("x.zva"), "not a design at all");
    Document doc;
    doc.start();
    EXPECT_FALSE(doc.load(path("x.zva")));
    EXPECT_EQ(readAll(path("x.zva")), "not a design at all");
    EXPECT_FALSE(doc.isReady());
}

TEST_F(DocumentFileTest, TruncatedFileIsRefused)
{
    Document doc;
    makeEditable(doc);
    doc.setModified(true);
    ASSERT_TRUE(doc.save(path("t.zva"), nullptr));
    const QByteArray whole = readAll(path("t.zva"));
    for (int size : {6, 30, whole.size() / 2, whole.size() - 3}) {
        writeAll(path("cut.zva"), whole.left(size));
        Document broken;
        broken.start();
        EXPECT_FALSE(broken.load(path("cut.zva"))) << size;
    }
}

TEST_F(DocumentFileTest, NewerVersionsAreRefused)
{
    writeAll(path("new.zva"), handMade([](QDataStream &out) { out << documentMagic << qint32(6); }));
    writeAll(path("new.zvap"), handMade([](QDataStream &out) { out << protectedMagic << qint32(6); }));
    Document a;
    a.start();
    EXPECT_FALSE(a.load(path("new.zva")));
    Document b;
    b.start();
    EXPECT_FALSE(b.load(path("new.zvap")));
}

TEST_F(DocumentFileTest, ProtectedVersion3KeepsPlainData)
{
    writeAll(path("old.zvap"), handMade([](QDataStream &out) {
        out << protectedMagic << qint32(3) << QByteArray("plain bytes") << QImage();
    }));
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(path("old.zvap")));
    EXPECT_EQ(doc.dataSimulation(), QByteArray("plain bytes"));
}

TEST_F(DocumentFileTest, APreviewPastItsBoundsIsLeftOutAndTheDesignStillOpens)
{
    // A picture of one row, wider than the bound, is small as PNG all the same.
    QImage wide(4097, 1, QImage::Format_Mono);
    wide.fill(0);
    QImage widest(4096, 1, QImage::Format_Mono);
    widest.fill(0);
    QImage small(2, 2, QImage::Format_ARGB32);
    small.fill(Qt::red);
    const auto streamedImage = [](const QImage &image) { return handMade([&](QDataStream &out) { out << image; }); };
    const auto protectedFile = [](const QByteArray &preview) {
        return handMade([](QDataStream &out) { out << protectedMagic << qint32(3) << QByteArray("results"); })
             + preview;
    };
    // A sound picture with bytes behind it, past the bound.
    const QByteArray overlong = streamedImage(small) + QByteArray(9 * 1024 * 1024, '\0');
    const struct {
        const char *what;
        QByteArray preview;
        const char *warning;
    } cases[] = {
        {"4097 pixels wide", streamedImage(wide), "its 4097×1 pixels are more than 4096×4096"},
        {"nine megabytes", overlong, "bytes are more than 8388608"},
    };
    for (const auto &input : cases) {
        writeAll(path("big.zvap"), protectedFile(input.preview));
        const LogCatcher log;
        Document doc;
        doc.start();
        ASSERT_TRUE(doc.load(path("big.zvap"))) << input.what;
        EXPECT_TRUE(doc.isProtectedFile()) << input.what;
        EXPECT_EQ(doc.dataSimulation(), QByteArray("results")) << input.what;
        EXPECT_TRUE(doc.previewImage().isNull()) << input.what;
        EXPECT_TRUE(log.contains(QStringLiteral("The preview of %1 is left out").arg(path("big.zvap")))) << input.what;
        EXPECT_TRUE(log.contains(QString::fromUtf8(input.warning))) << input.what;
    }

    writeAll(path("wide.zvap"), protectedFile(streamedImage(widest)));
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(path("wide.zvap")));
    EXPECT_EQ(doc.previewImage().size(), QSize(4096, 1)) << "a preview as wide as the bound is shown";

    writeAll(path("broken.zvap"), protectedFile(streamedImage(small).left(30)));
    Document broken;
    broken.start();
    EXPECT_FALSE(broken.load(path("broken.zvap"))) << "a preview cut short is damage";
}

TEST_F(DocumentFileTest, SimulationDataOutAndIn)
{
    Document doc;
    makeEditable(doc);
    ASSERT_TRUE(doc.saveDataSimulationToFile(path("dummy.mat")));
    mat_t *mat = Mat_Open(QFile::encodeName(path("dummy.mat")).constData(), MAT_ACC_RDONLY);
    ASSERT_NE(mat, nullptr);
    matvar_t *dummy = Mat_VarRead(mat, "Dummy");
    ASSERT_NE(dummy, nullptr);
    EXPECT_EQ(dummy->class_type, MAT_C_STRUCT);
    EXPECT_EQ(dummy->dims[0], 1u);
    EXPECT_EQ(dummy->dims[1], 1u);
    Mat_VarFree(dummy);
    Mat_Close(mat);

    QSignalSpy changed(&doc, &Document::dataSimulationChanged);
    ASSERT_TRUE(doc.loadDataSimulationFromFile(path("dummy.mat")));
    ASSERT_TRUE(doc.loadDataSimulationFromFile(path("dummy.mat")));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(doc.isModified());
    EXPECT_TRUE(doc.isLockedBySimulationData());
    ASSERT_TRUE(doc.saveDataSimulationToFile(path("copy.mat")));
    EXPECT_EQ(readAll(path("copy.mat")), readAll(path("dummy.mat")));
    EXPECT_FALSE(doc.loadDataSimulationFromFile(path("missing.mat")));
}

TEST_F(DocumentFileTest, JsonExportNamesTheFileType)
{
    Document doc;
    ASSERT_TRUE(doc.exportToJson(path("deep/folder/out.json")));
    EXPECT_TRUE(readAll(path("deep/folder/out.json")).contains("\"fileType\": \"Zolvane\""));
}

namespace {

// The blocks of a fresh design, as an older writer put them after the header.
void writeDesignBlocks(QDataStream &out, Document &design)
{
    design.stator()->save(out);
    design.rotor()->save(out);
    design.winding()->save(out);
    design.mesh()->save(out);
}

} // namespace

TEST_F(DocumentFileTest, Version1HasNoConfigurationAndNoGaps)
{
    Document design;
    design.stator()->setNumberSlots(18);
    writeAll(path("v1.zva"), handMade([&](QDataStream &out) {
        out << documentMagic << qint32(1) << qint32(Machine::SRS) << qint32(Document::Automatic)
            << qint32(Document::None) << qint32(Document::GeometryRotor) << QByteArray("raw");
        writeDesignBlocks(out, design);
        out << QByteArray(R"({"cmds":[],"index":0,"version":1})");
    }));
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(path("v1.zva")));
    EXPECT_EQ(doc.machineType(), Machine::SRS);
    EXPECT_EQ(doc.stator()->numberSlots(), 18);
    EXPECT_EQ(doc.mode(), Document::GeometryMotor) << "a stored rotor page opens on the motor";
    EXPECT_EQ(doc.dataSimulation(), QByteArray("raw"));
    EXPECT_DOUBLE_EQ(doc.airgap(2)->thickness(), 3.0);
}

TEST_F(DocumentFileTest, Version3HasPlainDataAndNoRatedData)
{
    Document design;
    writeAll(path("v3.zva"), handMade([&](QDataStream &out) {
        out << documentMagic << qint32(3) << qint32(Machine::SR) << qint32(Document::Automatic)
            << qint32(Document::None) << qint32(Document::Winding) << QByteArray("plain");
        writeDesignBlocks(out, design);
        out << QByteArray(R"({"cmds":[],"index":0,"version":1})") << QVariantMap() << qint32(4);
        for (int i = 0; i < 4; ++i)
            out << qint32(1) << 1.0000049 << qint32(5);
    }));
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(path("v3.zva")));
    EXPECT_EQ(doc.dataSimulation(), QByteArray("plain"));
    EXPECT_EQ(doc.mode(), Document::Winding);
    EXPECT_DOUBLE_EQ(doc.airgap(1)->thickness(), 1.0) << "lengths keep 5 decimals";
    EXPECT_EQ(doc.airgap(4)->numberLayers(), 5);
    EXPECT_DOUBLE_EQ(doc.ratedData()->speed(), 0.0);
}

TEST_F(DocumentFileTest, Version4CompressesAndAddsRatedData)
{
    Document design;
    design.ratedData()->setSpeed(1500.0);
    writeAll(path("v4.zva"), handMade([&](QDataStream &out) {
        out << documentMagic << qint32(4) << qint32(Machine::SR) << qint32(Document::Automatic)
            << qint32(Document::None) << qint32(Document::GeometryMotor) << qCompress(QByteArray("packed"), -1);
        writeDesignBlocks(out, design);
        design.ratedData()->save(out);
        out << QByteArray(R"({"cmds":[],"index":0,"version":1})") << QVariantMap() << qint32(0);
    }));
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.load(path("v4.zva")));
    EXPECT_EQ(doc.dataSimulation(), QByteArray("packed"));
    EXPECT_DOUBLE_EQ(doc.ratedData()->speed(), 1500.0);
}

TEST_F(DocumentFileTest, ItemBlocksOfTheFirstFormAndRoundedDiameters)
{
    QByteArray stator = handMade([](QDataStream &out) {
        out << qint32(2) << qint32(9) << 100.0000049 << 300.0 << qint32(MotorElement::Yoke) << qint32(3);
        for (int i = 0; i < 3; ++i)
            out << qint32(1) << 5.0 << 7.0 << 9.0;
        out << QString() << QVariantMap() << 0.95 << QString("M270-35A") << 80.0 << QString("Copper");
    });
    Document doc;
    QDataStream in(stator);
    in.setVersion(QDataStream::Qt_5_13);
    ASSERT_TRUE(doc.stator()->load(in));
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_DOUBLE_EQ(doc.stator()->innerDiameter(), 100.0);
    EXPECT_DOUBLE_EQ(doc.stator()->items().at(2)->height(), 5.0);
    EXPECT_DOUBLE_EQ(doc.stator()->items().at(2)->angularDisplacement(), 7.0);
    EXPECT_EQ(doc.stator()->windingMaterial(), "Copper");

    QByteArray newer = handMade([](QDataStream &out) { out << qint32(3); });
    QDataStream newerIn(newer);
    EXPECT_FALSE(doc.rotor()->load(newerIn));
}

TEST_F(DocumentFileTest, NewerElementBlockRefusesTheFile)
{
    Document design;
    writeAll(path("block.zva"), handMade([&](QDataStream &out) {
        out << documentMagic << qint32(5) << qint32(Machine::SR) << qint32(Document::Automatic)
            << qint32(Document::None) << qint32(Document::GeometryMotor) << qCompress(QByteArray(), -1);
        design.stator()->save(out);
        out << qint32(99);
    }));
    Document doc;
    doc.start();
    EXPECT_FALSE(doc.load(path("block.zva")));
}
