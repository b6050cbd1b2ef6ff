#include <QColor>
#include <QImage>
#include <QSet>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "materials/MagnetMaterial.h"
#include "meshing/Mesh.h"
#include "support/LogCatcher.h"
#include "ui/Viewer/ElementScenes.h"
#include "ui/Viewer/GeometryViewer.h"
#include "ui/Viewer/MagnetShape.h"

// The 3D scenes of the example machine and the view that draws them. The view
// renders through the X server of the test run (Xvfb with Mesa).

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");
constexpr int generationTimeout = 120000;

class GeometryViewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
        document.start();
        ASSERT_TRUE(document.load(example));
    }

    // Shows the scene and waits until the pieces are on it.
    static bool generate(GeometryScene &scene)
    {
        QSignalSpy redrawn(&scene, &GeometryScene::redrawScene);
        scene.setShown(true);
        return redrawn.wait(generationTimeout);
    }

    QTemporaryDir settingsFolder;
    Document document{nullptr};
};

int piecesOfKind(const GeometryScene &scene, qint32 kind)
{
    int count = 0;
    for (const Handle(AIS_InteractiveObject) &object : scene.objects())
        count += scene.pieceOf(object).kind() == kind ? 1 : 0;
    return count;
}

// The scene's pieces without the end turns that the motor scene adds to the document's.
int machinePieces(const GeometryScene &scene)
{
    return scene.pieces().size() - scene.pieces().ofKind(AbstractMaterial::EndturnKind).size();
}

// Pixels of a hue, whatever the light does to their brightness.
int pixelsOfHue(const QImage &image, const QColor &target, int tolerance)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.hsvSaturationF() < 0.3 || pixel.valueF() < 0.2)
                continue;
            const int difference = std::abs(pixel.hsvHue() - target.hsvHue());
            if (std::min(difference, 360 - difference) <= tolerance)
                ++count;
        }
    }
    return count;
}

} // namespace

TEST_F(GeometryViewTest, TheMotorSceneShowsEveryPieceOfTheMachineWithMagnetsByPole)
{
    MotorGeometryScene scene(&document);
    QSignalSpy finished(&document, &Document::createMotorGeometryFinished);
    ASSERT_TRUE(generate(scene));
    EXPECT_EQ(finished.count(), 1);
    EXPECT_FALSE(scene.isGenerating());

    const PieceList pieces = document.pieces();
    int shown = 0;
    for (const Piece &piece : pieces)
        shown += piece.kind() == AbstractMaterial::EmptyKind ? 0 : 1;
    // Beside the pieces, an outer and an inner end turn for each of the 12 tooth coils.
    EXPECT_EQ(piecesOfKind(scene, AbstractMaterial::EndturnKind), 24);
    EXPECT_EQ(scene.objects().size(), pieces.size() + 24);
    EXPECT_GE(shown, 13);
    EXPECT_EQ(piecesOfKind(scene, AbstractMaterial::MagnetKind), 10);
    EXPECT_EQ(piecesOfKind(scene, AbstractMaterial::IronKind), 2);

    // Axially magnetised magnets are split at mid height into a north and a south part.
    int split = 0;
    for (const Handle(AIS_InteractiveObject) &object : scene.objects()) {
        Handle(MagnetShape) magnet = Handle(MagnetShape)::DownCast(object);
        if (!magnet.IsNull() && !magnet->above().IsNull() && !magnet->below().IsNull())
            ++split;
    }
    EXPECT_EQ(split, 10);
}

TEST_F(GeometryViewTest, HiddenMaterialsAndBodiesLeaveTheSceneAndTheChoiceStaysWithTheScene)
{
    {
        MotorGeometryScene scene(&document);
        ASSERT_TRUE(generate(scene));
        const int all = scene.objects().size();
        QSignalSpy materialSpy(&scene, &GeometryScene::visibleMaterialChanged);
        scene.setMaterialVisible(QStringLiteral("VisibleRotorMagnet"), false);
        EXPECT_EQ(materialSpy.count(), 1);
        EXPECT_EQ(piecesOfKind(scene, AbstractMaterial::MagnetKind), 0);
        EXPECT_EQ(scene.objects().size(), all - 10);

        scene.setVisibleScopes(Piece::RotorMask);
        EXPECT_EQ(scene.objects().size(), 1) << "the rotor iron alone";
        EXPECT_EQ(machinePieces(scene), document.pieces().size()) << "hidden pieces stay in the scene's list";
    }
    MotorGeometryScene again(&document);
    EXPECT_EQ(again.visibleScopes(), Piece::Scopes(Piece::RotorMask));
    StatorGeometryScene other(&document);
    EXPECT_EQ(other.visibleScopes(), Piece::StatorMask | Piece::RotorMask) << "each scene reads its own group";
    ASSERT_TRUE(generate(other));
    EXPECT_EQ(piecesOfKind(other, AbstractMaterial::MagnetKind), 0) << "the stator scene shows the stator alone";
    EXPECT_GT(piecesOfKind(other, AbstractMaterial::WindingKind), 0);
}

TEST_F(GeometryViewTest, AChangeDuringAGenerationIsPickedUpWhenItEnds)
{
    MotorGeometryScene scene(&document);
    QSignalSpy redrawn(&scene, &GeometryScene::redrawScene);
    scene.setShown(true);
    ASSERT_TRUE(scene.isGenerating());
    LogCatcher log;
    document.stator()->setNumberSlots(24);
    QCoreApplication::processEvents();
    EXPECT_TRUE(log.contains(QStringLiteral("Geometry generating, skip apply change Motor")));

    while (scene.isGenerating() || redrawn.isEmpty())
        ASSERT_TRUE(redrawn.wait(generationTimeout));
    EXPECT_EQ(machinePieces(scene), document.pieces().size());
    int coils = 0;
    for (const Piece &piece : scene.pieces())
        coils += piece.kind() == AbstractMaterial::WindingKind ? 1 : 0;
    EXPECT_EQ(coils, document.pieces().ofKind(AbstractMaterial::WindingKind).size());
    EXPECT_TRUE(document.hasPieces()) << "the newest machine is on view";
}

TEST_F(GeometryViewTest, ChangesWaitForApplyUntilTheSceneIsToldToDrawThemRightAway)
{
    StatorGeometryScene scene(&document);
    scene.setApplyRightAway(false);
    ASSERT_TRUE(generate(scene)) << "the first machine is drawn without asking";
    const int slotsBefore = scene.pieces().ofKind(AbstractMaterial::WindingKind).size();
    QSignalSpy outOfDate(&scene, &GeometryScene::outOfDateChanged);
    QSignalSpy redrawn(&scene, &GeometryScene::redrawScene);

    document.stator()->setNumberSlots(24);
    document.stator()->setNumberSlots(18);
    QCoreApplication::processEvents();
    EXPECT_TRUE(scene.isOutOfDate());
    ASSERT_EQ(outOfDate.size(), 1) << "a burst of changes is one notice";
    EXPECT_FALSE(scene.isGenerating());
    // Hidden and shown again, the view still waits.
    scene.setShown(false);
    scene.setShown(true);
    EXPECT_FALSE(scene.isGenerating());
    EXPECT_EQ(scene.pieces().ofKind(AbstractMaterial::WindingKind).size(), slotsBefore);

    scene.applyChanges();
    EXPECT_FALSE(scene.isOutOfDate());
    ASSERT_TRUE(redrawn.wait(generationTimeout));
    EXPECT_EQ(scene.pieces().ofKind(AbstractMaterial::WindingKind).size(), 18 * slotsBefore / 12);

    // Drawing right away picks up what was waiting.
    document.stator()->setNumberSlots(12);
    QCoreApplication::processEvents();
    ASSERT_TRUE(scene.isOutOfDate());
    scene.setApplyRightAway(true);
    QCoreApplication::processEvents();
    EXPECT_FALSE(scene.isOutOfDate());
    EXPECT_TRUE(scene.isGenerating());
    ASSERT_TRUE(redrawn.wait(generationTimeout));
    EXPECT_EQ(scene.pieces().ofKind(AbstractMaterial::WindingKind).size(), slotsBefore);
}

TEST_F(GeometryViewTest, AnEmptyListClearsTheSceneAndANullShapeIsPassedOver)
{
    MotorGeometryScene scene(&document);
    ASSERT_TRUE(generate(scene));
    LogCatcher log;
    scene.setPieces(PieceList{Piece()});
    EXPECT_TRUE(scene.objects().isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("Error: Can't add null shape")));
    scene.setPieces(PieceList());
    EXPECT_TRUE(scene.pieces().isEmpty());
}

TEST_F(GeometryViewTest, TheViewDrawsTheMachineInTheColoursOfItsMaterials)
{
    GeometryViewer viewer(new MotorGeometryScene(&document));
    viewer.resize(640, 480);
    QSignalSpy redrawn(viewer.scene(), &GeometryScene::redrawScene);
    viewer.show();
    ASSERT_TRUE(redrawn.wait(generationTimeout));
    QCoreApplication::processEvents();

    QImage image = viewer.renderImage();
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(640, 480));
    image.save(QStringLiteral("geometry_view_top.png"));
    QSet<QRgb> coilColours;
    for (const Piece &coil : document.pieces().ofKind(AbstractMaterial::WindingKind))
        coilColours.insert(coil.material()->color().rgb());
    ASSERT_EQ(coilColours.size(), 2) << "a colour per layer";
    for (const QRgb colour : coilColours)
        EXPECT_GT(pixelsOfHue(image, QColor(colour), 8), 200) << "coils of " << QColor(colour).name().toStdString();

    // From below, the magnets face the stator: both poles of the rotor show.
    viewer.scene()->setVisibleScopes(Piece::RotorMask);
    viewer.view()->SetProj(V3d_Zneg);
    viewer.fitAll();
    image = viewer.renderImage();
    image.save(QStringLiteral("geometry_view_magnets.png"));
    EXPECT_GT(pixelsOfHue(image, MagnetMaterial::northColor(), 6), 200) << "north poles";
    EXPECT_GT(pixelsOfHue(image, MagnetMaterial::southColor(), 6), 200) << "south poles";
}

TEST_F(GeometryViewTest, SectionGuidesAreDrawnOverTheMachineWithoutBecomingPiecesOfIt)
{
    document.mesh()->setNumberSlices(3);
    GeometryViewer viewer(new MotorGeometryScene(&document));
    auto *scene = qobject_cast<MotorGeometryScene *>(viewer.scene());
    viewer.resize(640, 480);
    QSignalSpy redrawn(scene, &GeometryScene::redrawScene);
    viewer.show();
    ASSERT_TRUE(redrawn.wait(generationTimeout));
    const int pieces = scene->pieces().size();
    const int objects = scene->objects().size();
    const auto guides = [scene] {
        int count = 0;
        for (const Handle(AIS_InteractiveObject) &object : scene->objects())
            count += scene->pieceOf(object).shape().is_null() ? 1 : 0;
        return count;
    };
    ASSERT_EQ(guides(), 0);

    QSignalSpy slicePlanes(scene, &GeometryScene::showSlicePlanesChanged);
    scene->setShowSlicePlanes(true);
    EXPECT_EQ(slicePlanes.size(), 1);
    EXPECT_EQ(guides(), 4) << "the borders of three slices";
    scene->setShowSectionCylindrical(true);
    EXPECT_EQ(guides(), 4 + 3) << "and the cylinder of each slice";
    EXPECT_EQ(scene->pieces().size(), pieces);
    scene->setShowSlicePlanes(false);
    scene->setShowSectionCylindrical(false);
    EXPECT_EQ(scene->objects().size(), objects);

    // Seen from the side, the radial plane covers the machine's half and the air beside it.
    viewer.view()->SetProj(V3d_Yneg);
    viewer.fitAll();
    const QImage before = viewer.renderImage();
    scene->setShowSectionRadial(true);
    const QImage after = viewer.renderImage();
    ASSERT_EQ(before.size(), after.size());
    int tinted = 0;
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            const QColor was = before.pixelColor(x, y);
            const QColor is = after.pixelColor(x, y);
            tinted += is.hsvSaturationF() > was.hsvSaturationF() + 0.1 && std::abs(is.hsvHue() - 40) < 20 ? 1 : 0;
        }
    }
    EXPECT_GT(tinted, after.width() * after.height() / 20);
}
