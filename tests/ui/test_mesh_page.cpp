#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGraphicsScene>
#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QUndoStack>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/Document.h"
#include "document/UndoStack.h"
#include "meshing/GeometryData.h"
#include "meshing/Mesh.h"
#include "support/LogCatcher.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/MeshEditor.h"
#include "ui/MeshNetgenViewer.h"
#include "ui/MeshPageViewer.h"
#include "ui/MeshViewer.h"
#include "ui/ModelComboBoxes.h"
#include "ui/RuleZoomViewer.h"
#include "ui/Viewer/Mesh3DViewer.h"

// The mesh page on the example machine: its models, their triangles as drawn, the zoom
// of the flat view, and the mesh settings through the undo stack.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

class MeshPageTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        document = new Document;
        document->start();
        ASSERT_TRUE(document->load(example));
        document->setMode(Document::Mesh2D);
    }
    static void TearDownTestSuite()
    {
        delete document;
        document = nullptr;
    }

    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
    }

    QTemporaryDir settingsFolder;
    static Document *document;
};

Document *MeshPageTest::document = nullptr;

// Pixels darker than the light fill of the regions: the mesh's edges.
int darkPixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 110)
                ++count;
        }
    }
    return count;
}

TEST_F(MeshPageTest, ThePageMakesTheMeshesAndDrawsEachModelWithItsCounts)
{
    MeshPageViewer page(document);
    page.resize(900, 600);
    MeshViewer *viewer = page.meshViewer();
    QSignalSpy counts(viewer, &MeshViewer::countsChanged);
    page.show();
    ASSERT_TRUE(counts.wait(60000));

    QComboBox *models = viewer->models();
    ASSERT_EQ(models->count(), document->mesh()->numberSlices() + 1);
    EXPECT_TRUE(models->itemText(0).startsWith(QStringLiteral("Cylindrical mesh 1 (radius ")));
    EXPECT_EQ(models->itemText(models->count() - 1), QStringLiteral("Radial mesh"));

    const MeshScene::Counts slice = counts.last().at(0).value<MeshScene::Counts>();
    EXPECT_EQ(slice.vertices, document->mesh()->meshSlices().first().numberOfVertices());
    EXPECT_GT(slice.triangles, 100);
    // A planar triangulation of a region with holes: E = V + T - 1 + holes, so E > T.
    EXPECT_GT(slice.edges, slice.triangles);
    const int slicePixels = darkPixels(viewer->view()->grab().toImage());

    // A click on a region names its material.
    const QSharedPointer<Subdomain> first = document->mesh()->geometrySlices().first().subdomains.first();
    const QPoint click = viewer->view()->mapFromScene(first->polylabelPoint());
    QTest::mouseClick(viewer->view()->viewport(), Qt::LeftButton, Qt::NoModifier, click);
    EXPECT_TRUE(viewer->regionLabel()->text().startsWith(QStringLiteral("Region %1: ").arg(first->id())))
        << viewer->regionLabel()->text().toStdString();
    EXPECT_GT(slicePixels, 500);

    models->setCurrentIndex(models->count() - 1);
    const MeshScene::Counts radial = counts.last().at(0).value<MeshScene::Counts>();
    EXPECT_EQ(radial.vertices, document->mesh()->meshRadial().numberOfVertices());
    EXPECT_NE(radial.triangles, slice.triangles);
    const int radialPixels = darkPixels(viewer->view()->grab().toImage());

    // Without edges and constraints only the regions are left.
    for (QCheckBox *box : viewer->switches()->findChildren<QCheckBox *>()) {
        if (box->text().contains(QStringLiteral("mesh")) || box->text().contains(QStringLiteral("constraints")))
            box->setChecked(false);
    }
    const int regionPixels = darkPixels(viewer->view()->grab().toImage());
    EXPECT_LT(regionPixels * 2, radialPixels) << "the triangles' edges make most of the dark pixels";

    // The zoom actions act on the 2D view.
    ZoomableView *zoomable = page.zoomableView();
    ASSERT_EQ(zoomable, viewer->view());
}

// The volume mesh of a copy of the example, made coarse, seen flat when its tab turns up.
TEST(MeshPageVolumeTest, TheFlatViewMakesAndDrawsTheVolumeMesh)
{
    QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("new_motor.zva"));
    ASSERT_TRUE(QFile::copy(example, copy));
    Document document;
    document.start();
    ASSERT_TRUE(document.load(copy));
    document.mesh()->setAutoSizeBound(false);
    document.mesh()->setSizeBound(20.0);

    MeshPageViewer page(&document);
    page.resize(900, 600);
    page.show();
    QTabWidget *volume = page.volumeTabs();
    ASSERT_EQ(page.tabs()->tabText(1), QStringLiteral("3D mesh"));
    ASSERT_EQ(volume->count(), 2);
    EXPECT_EQ(volume->tabText(0), QStringLiteral("Flat view"));
    EXPECT_EQ(volume->tabText(1), QStringLiteral("3D view"));

    page.tabs()->setCurrentIndex(1);
    MeshNetgenViewer *flat = page.flatViewer();
    ASSERT_TRUE(QTest::qWaitFor([flat] { return !flat->flatScene()->items().isEmpty(); }, 60000));
    EXPECT_GT(flat->flatScene()->sceneRect().width(), 100.0);
    EXPECT_EQ(page.zoomableView(), static_cast<ZoomableView *>(flat));
    const QLabel *generating = flat->findChild<QLabel *>(QStringLiteral("labelGenerating"));
    ASSERT_TRUE(generating);
    EXPECT_EQ(generating->text(), QStringLiteral("Generating 3D flat mesh..."));
    EXPECT_FALSE(generating->isVisible());

    // The 3D view takes the mesh made for the flat one.
    Mesh3DViewer *view3D = page.volumeViewer();
    if (!view3D)
        GTEST_SKIP() << "the 3D view needs an X display";
    volume->setCurrentIndex(1);
    const auto shownObjects = [view3D] {
        AIS_ListOfInteractive shown;
        view3D->context()->DisplayedObjects(shown);
        return shown.Size();
    };
    ASSERT_TRUE(QTest::qWaitFor([&shownObjects] { return shownObjects() == 2; }, 60000));
    EXPECT_TRUE(view3D->progressText().isEmpty());
    const QImage image = view3D->renderImage();
    const QRgb background = image.pixel(0, 0);
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            drawn += image.pixel(x, y) != background ? 1 : 0;
    }
    EXPECT_GT(drawn, image.width() * image.height() / 10);
}

TEST(RuleZoomViewerTest, FitsWithinItsLimitsAndAManualZoomEndsTheFit)
{
    QGraphicsScene scene;
    RuleZoomViewer view;
    view.setScene(&scene);
    view.resize(400, 300);
    view.show();
    {
        LogCatcher log;
        view.zoomFit();
        EXPECT_TRUE(log.contains(QStringLiteral("Error: scene rect is invalid")));
    }
    scene.setSceneRect(0.0, 0.0, 1e-6, 1.0);
    {
        LogCatcher log;
        view.zoomFit();
        EXPECT_TRUE(log.contains(QStringLiteral("xratio > 10000")));
    }
    scene.setSceneRect(0.0, 0.0, 100.0, 50.0);
    view.zoomFit();
    const double fitted = view.scaleFactor();
    // The scene fills the viewport, which the rulers leave, less a margin on each side.
    EXPECT_NEAR(fitted, (view.viewport()->width() - 20.0) / 100.0, 0.1);

    QSignalSpy scale(&view, &RuleZoomViewer::scaleChanged);
    QSignalSpy autoFit(&view, &RuleZoomViewer::zoomAutoFitChanged);
    view.zoomIn();
    EXPECT_NEAR(view.scaleFactor(), fitted * 1.25, 1e-9);
    EXPECT_EQ(scale.count(), 1);
    ASSERT_EQ(autoFit.count(), 1);
    EXPECT_FALSE(view.isAutoFit());
    view.setAutoFit(true);
    EXPECT_NEAR(view.scaleFactor(), fitted, 1e-9);
}

TEST_F(MeshPageTest, TheEditorChangesTheMeshSettingsThroughTheUndoStack)
{
    MeshEditor editor(document);
    editor.show();
    Mesh *mesh = document->mesh();
    const int slices = mesh->numberSlices();
    auto *numberSlices = editor.findChild<ModelValueComboBox *>(QStringLiteral("comboBoxMeshSlices"));
    auto *layers = editor.findChild<ModelValueComboBox *>(QStringLiteral("comboBoxNumberLayersAirgap"));
    auto *sizeBound = editor.findChild<NumberEdit *>(QStringLiteral("editSizeBound"));
    auto *autoSize = editor.findChild<QCheckBox *>(QStringLiteral("autoSizeBound"));
    ASSERT_TRUE(numberSlices && layers && sizeBound && autoSize);
    EXPECT_EQ(numberSlices->currentValue(), slices);
    EXPECT_EQ(sizeBound->isReadOnly(), mesh->autoSizeBound());

    const int commands = document->undoStack()->count();
    numberSlices->setCurrentValue(slices + 2);
    EXPECT_EQ(mesh->numberSlices(), slices + 2);
    layers->setCurrentValue(5);
    EXPECT_EQ(document->airgap(Airgap::ID1)->numberLayers(), 5);
    autoSize->setChecked(!mesh->autoSizeBound());
    EXPECT_EQ(sizeBound->isReadOnly(), mesh->autoSizeBound());
    EXPECT_EQ(document->undoStack()->count(), commands + 3);

    for (int i = 0; i < 3; ++i)
        document->undoStack()->undo();
    EXPECT_EQ(mesh->numberSlices(), slices);
    EXPECT_EQ(numberSlices->currentValue(), slices);
    EXPECT_EQ(layers->currentValue(), document->airgap(Airgap::ID1)->numberLayers());

    document->setBoundaryConditionMode(Document::Manual);
    QTest::mouseClick(editor.findChild<QToolButton *>(QStringLiteral("buttonAuto")), Qt::LeftButton);
    EXPECT_EQ(document->boundaryConditionMode(), Document::Automatic);

    editor.showCounts({10, 20, 11});
    EXPECT_EQ(editor.findChild<QLabel *>(QStringLiteral("labelTriangles"))->text(), QStringLiteral("11"));
}

} // namespace
