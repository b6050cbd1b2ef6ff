#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QToolButton>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QUndoStack>
#include <gtest/gtest.h>
#include <numeric>

#include "document/Document.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/FileDialog.h"
#include "ui/MessageBox.h"
#include "ui/LayoutCoilsModel.h"
#include "ui/MaterialRowWidgets.h"
#include "ui/MaterialsWidget.h"
#include "ui/MmfSpectrumView.h"
#include "ui/ModelComboBoxes.h"
#include "ui/WindingEditor.h"
#include "ui/WindingPageViewer.h"
#include "ui/Viewer/WindingScene.h"
#include "ui/Viewer/WindingViewer.h"
#include "materials/AbstractMaterial.h"
#include <QSignalSpy>
#include <memory>
#include "winding/WindingObject.h"

// The winding page on the example machine (12 slots, 10 poles, double-layer tooth
// coils): the editor's rows, the coil table and its manual edits, and the slot picture.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

class WindingPageTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
        document.start();
        ASSERT_TRUE(document.load(example));
        document.setMode(Document::Winding);
    }

    template <typename T>
    T *child(const QWidget &parent, const char *name) const
    {
        return parent.findChild<T *>(QLatin1String(name));
    }

    QTemporaryDir settingsFolder;
    Document document;
};

TEST_F(WindingPageTest, TheEditorShowsTheFactsOfSlotsAndPolesAndFollowsAChange)
{
    WindingEditor editor(&document);
    editor.show();
    EXPECT_EQ(child<QLabel>(editor, "labelGCD")->text(), QStringLiteral("2"));
    EXPECT_EQ(child<QLabel>(editor, "labelLCM")->text(), QStringLiteral("60"));
    EXPECT_EQ(child<QLabel>(editor, "labelWindingFactor")->text(),
              QString::number(document.winding()->calcWindingFactor(1), 'g', 6));
    EXPECT_NEAR(child<QLabel>(editor, "labelWindingFactor")->text().toDouble(), 0.933, 1e-3);

    auto *polePairs = child<QSpinBox>(editor, "spinBoxRotorPolePairs");
    ASSERT_NE(polePairs, nullptr);
    polePairs->setValue(7);
    emit polePairs->editingFinished();
    EXPECT_EQ(document.rotor()->numberPolePairs(), 7);
    EXPECT_EQ(child<QLabel>(editor, "labelLCM")->text(), QStringLiteral("84"));
    document.undoStack()->undo();
    EXPECT_EQ(polePairs->value(), 5);
    EXPECT_EQ(child<QLabel>(editor, "labelGCD")->text(), QStringLiteral("2"));
}

TEST_F(WindingPageTest, TheWireMethodChoosesWhichRowsCanBeEdited)
{
    WindingEditor editor(&document);
    editor.show();
    auto *method = child<ModelValueComboBox>(editor, "wireSizeMethod");
    auto *diameter = child<NumberEdit>(editor, "editWireDiameter");
    auto *awg = child<ModelValueComboBox>(editor, "comboBoxWireAWG");
    auto *fill = child<NumberEdit>(editor, "editCoilFillFactor");
    ASSERT_TRUE(method && diameter && awg && fill);

    method->setCurrentValue(Winding::AWG);
    EXPECT_EQ(document.winding()->wireSizeMethod(), Winding::AWG);
    EXPECT_FALSE(awg->isHidden());
    EXPECT_FALSE(diameter->isEnabled());
    EXPECT_FALSE(fill->isEnabled());

    method->setCurrentValue(Winding::FillFactor);
    EXPECT_TRUE(awg->isHidden());
    EXPECT_TRUE(fill->isEnabled());

    document.setReadonly(true);
    EXPECT_FALSE(method->isEnabled());
    EXPECT_FALSE(fill->isEnabled());
}

TEST_F(WindingPageTest, TheWindingsMaterialsAreChosenBesideItsRows)
{
    WindingEditor editor(&document);
    auto *materials = child<MaterialsWidget>(editor, "widgetMaterials");
    ASSERT_NE(materials, nullptr);
    EXPECT_FALSE(materials->isRowShown(MaterialsWidget::StatorWinding));
    document.pieces();
    QCoreApplication::processEvents();
    // Only the winding's kinds: the coil sides, never the irons.
    EXPECT_TRUE(materials->isRowShown(MaterialsWidget::StatorWinding));
    EXPECT_FALSE(materials->isRowShown(MaterialsWidget::StatorIron));
    EXPECT_FALSE(materials->isRowShown(MaterialsWidget::RotorMagnet));
    EXPECT_EQ(materials->statorWindingWidget()->material(), document.stator()->windingMaterial());

    document.stator()->setWindingTemperature(120.0);
    EXPECT_EQ(materials->statorWindingWidget()->findChild<NumberEdit *>(QStringLiteral("editTemperature"))->value(), 120.0);
}

TEST_F(WindingPageTest, TheCoilTableListsEachPhaseAndEditsOnlyAManualBaseLayout)
{
    WindingObject *winding = document.winding();
    LayoutCoilsModel model(&document);
    ASSERT_EQ(model.rowCount(), 3);
    const QModelIndex phaseA = model.index(0, 0);
    EXPECT_EQ(phaseA.data().toString(), QStringLiteral("Phase A"));
    ASSERT_EQ(model.rowCount(phaseA), winding->layout().at(Winding::A).size());
    const QModelIndex layerFrom = model.index(0, LayoutCoilsModel::LayerFromColumn, phaseA);
    EXPECT_FALSE(model.flags(layerFrom) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.setData(layerFrom, 2));

    winding->setModeLayout(Winding::Manual);
    ASSERT_TRUE(model.flags(layerFrom) & Qt::ItemIsEditable);
    const Winding::Layout original = winding->layout();
    const int commands = document.undoStack()->count();
    ASSERT_TRUE(model.setData(layerFrom, 2));
    const Winding::Coil edited = winding->layout().at(Winding::A).first();
    EXPECT_EQ(edited.layerFrom, 1);
    EXPECT_EQ(edited.layerTo, 0) << "the two sides of a double-layer coil lie in different layers";
    EXPECT_EQ(document.undoStack()->count(), commands + 1);
    EXPECT_EQ(model.index(0, LayoutCoilsModel::LayerToColumn, model.index(0, 0)).data().toInt(), 1);

    // A slot beyond the stator's is kept, shown red and explained.
    ASSERT_TRUE(model.setData(model.index(0, LayoutCoilsModel::SlotToColumn, model.index(0, 0)), 13));
    const QModelIndex wrong = model.index(0, LayoutCoilsModel::SlotToColumn, model.index(0, 0));
    EXPECT_EQ(wrong.data(Qt::ToolTipRole).toString(), QStringLiteral("Incorrect slot number."));
    EXPECT_EQ(wrong.data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));

    while (document.undoStack()->index() > commands)
        document.undoStack()->undo();
    EXPECT_EQ(winding->layout().at(Winding::A).first(), original.at(Winding::A).first());
}

TEST_F(WindingPageTest, TheLayoutMenuCopiesAndSavesTheLayoutText)
{
    WindingEditor editor(&document);
    auto *button = child<QToolButton>(editor, "buttonWindingLayouts");
    ASSERT_NE(button, nullptr);
    const QList<QAction *> actions = button->menu()->actions();
    ASSERT_EQ(actions.size(), 2);
    actions.at(0)->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), document.winding()->layoutsToText());

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("layout.txt"));
    FileDialog::answerNextDialogs({path});
    actions.at(1)->trigger();
    QFile written(path);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_FALSE(written.readAll().isEmpty());
    EXPECT_EQ(QSettings().value(QStringLiteral("Settings/PathLayoutFile")).toString(), folder.path());
}

TEST_F(WindingPageTest, ASpanOfOneOnUpperAndLowerLayersAsksAndIsOneStepOfUndo)
{
    WindingObject *winding = document.winding();
    winding->setLayersOrientation(Winding::UpperLower);
    winding->setAutoCalcCoilSpan(false);
    winding->setCoilSpan(2);
    ASSERT_EQ(winding->coilSpan(), 2);
    WindingEditor editor(&document);
    editor.show();
    auto *span = child<QSpinBox>(editor, "spinBoxCoilSpan");
    ASSERT_TRUE(span && span->isEnabled());

    MessageBox::answerNextBoxes({QMessageBox::Cancel});
    span->setValue(1);
    emit span->editingFinished();
    EXPECT_EQ(winding->coilSpan(), 2);
    EXPECT_EQ(span->value(), 2);

    const int commands = document.undoStack()->count();
    MessageBox::answerNextBoxes({QMessageBox::Ok});
    span->setValue(1);
    emit span->editingFinished();
    EXPECT_EQ(winding->layersOrientation(), Winding::LeftRight);
    EXPECT_EQ(winding->coilSpan(), 1);
    ASSERT_EQ(document.undoStack()->count(), commands + 1);
    EXPECT_EQ(document.undoStack()->undoText(), QStringLiteral("Unlock Coil span"));
    EXPECT_FALSE(child<QToolButton>(editor, "buttonUnlockCoilSpan")->isHidden());

    document.undoStack()->undo();
    EXPECT_EQ(winding->layersOrientation(), Winding::UpperLower);
    EXPECT_EQ(winding->coilSpan(), 2);
}

TEST_F(WindingPageTest, SelectingACoilMakesItTheWindingsCurrentCoil)
{
    WindingEditor editor(&document);
    editor.show();
    LayoutCoilsView *view = editor.coilsView();
    const QModelIndex phaseB = view->model()->index(1, 0);
    view->setCurrentIndex(view->model()->index(2, LayoutCoilsModel::SlotFromColumn, phaseB));
    const Winding::CurrentCoil current = document.winding()->currentCoil();
    EXPECT_EQ(current.phase, Winding::B);
    EXPECT_EQ(current.layout, 0);
    EXPECT_EQ(current.coil, document.winding()->layout().at(Winding::B).at(2));
}

TEST_F(WindingPageTest, ThePageDrawsEverySlotInItsPhaseColours)
{
    WindingPageViewer page(&document);
    page.resize(900, 600);
    page.show();
    const QImage image = page.layoutView()->grab().toImage();
    int coloured = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (qAbs(pixel.red() - pixel.green()) > 20 || qAbs(pixel.green() - pixel.blue()) > 20)
                ++coloured;
        }
    }
    // Two layers of 12 slots, each cell in its phase colour.
    EXPECT_GT(coloured, image.width() * image.height() / 10);
    EXPECT_GT(page.spectrum()->findChildren<QObject *>().size(), 0);
}

TEST_F(WindingPageTest, TheWindingIn3DShowsEachPhaseAndFaceOnItsOwn)
{
    if (!occ::View::isAvailable())
        GTEST_SKIP() << "3D views need an X display";
    document.pieces();
    auto page = std::make_unique<WindingPageViewer>(&document);
    page->resize(900, 700);
    page->show();
    WindingViewer *viewer = page->viewer();
    ASSERT_NE(viewer, nullptr);
    WindingScene *scene = viewer->windingScene();
    QSignalSpy redrawn(scene, &GeometryScene::redrawScene);
    while (scene->isGenerating() || redrawn.isEmpty())
        ASSERT_TRUE(redrawn.wait(60000));

    // 12 slots of two layers, and an outer and an inner end turn for each of the 12 coils.
    const auto count = [scene](qint32 kind, Winding::Scopes phase) {
        int found = 0;
        for (const Piece &piece : scene->pieces())
            found += piece.kind() == kind && (scene->scopeOf(piece) & phase) ? 1 : 0;
        return found;
    };
    EXPECT_EQ(count(AbstractMaterial::WindingKind, Winding::PhaseAny), 24);
    EXPECT_EQ(count(AbstractMaterial::EndturnKind, Winding::PhaseAny), 24);
    EXPECT_EQ(count(AbstractMaterial::WindingKind, Winding::PhaseA), 8);
    EXPECT_EQ(count(AbstractMaterial::EndturnKind, Winding::PhaseA), 8);

    // The coil sides and end turns of a phase carry its colour in the view.
    const QImage drawn = viewer->grab().toImage();
    const QColor phaseA = Winding::phaseColor(Winding::A, false);
    int pixelsOfA = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor pixel = drawn.pixelColor(x, y);
            const int hue = std::abs(pixel.hsvHue() - phaseA.hsvHue());
            pixelsOfA += pixel.hsvSaturationF() > 0.3 && std::min(hue, 360 - hue) < 10 ? 1 : 0;
        }
    }
    EXPECT_GT(pixelsOfA, 50);

    viewer->findChild<QCheckBox *>(QStringLiteral("checkBoxPhaseA"))->click();
    EXPECT_EQ(count(AbstractMaterial::WindingKind, Winding::PhaseA), 0);
    EXPECT_EQ(count(AbstractMaterial::WindingKind, Winding::PhaseB), 8);
    viewer->findChild<QCheckBox *>(QStringLiteral("checkBoxPhaseB"))->click();
    viewer->findChild<QCheckBox *>(QStringLiteral("checkBoxPhaseC"))->click();
    EXPECT_TRUE(scene->pieces().isEmpty());
    EXPECT_EQ(viewer->note(), QStringLiteral(" All phases are off "));

    // The choice stays with the scene for the next page.
    page.reset();
    WindingScene again(&document);
    EXPECT_EQ(again.visiblePhases(), Winding::Scopes());
}

} // namespace

TEST_F(WindingPageTest, TheEndInductanceToolTipTellsTheInnerAndOuterPartsWhileAutomatic)
{
    WindingEditor editor(&document);
    auto *edit = child<NumberEdit>(editor, "editEndInductance");
    ASSERT_NE(edit, nullptr);
    WindingObject *winding = document.winding();
    winding->setAutoCalcEndInductance(true);
    winding->deferCalcEndInductance();
    ASSERT_EQ(winding->methodCalcEndInductance(), QStringLiteral("(By Neumann integrals)"));

    const QString tip = edit->toolTip();
    EXPECT_TRUE(tip.startsWith(QStringLiteral("Leakage inductance of the stator winding end turns per phase")));
    EXPECT_EQ(tip.contains(QStringLiteral(" for one layout")), winding->countLayouts() > 1);
    const QString table = QStringLiteral("<hr><table border='0' cellspacing='0' cellpadding='3'>");
    EXPECT_TRUE(tip.contains(table)) << tip.toStdString();
    const WindingObject::InductanceParts inner = winding->endInductanceInner();
    const WindingObject::InductanceParts outer = winding->endInductanceOuter();
    EXPECT_TRUE(tip.contains(QStringLiteral("<b>Inner inductance:</b></td><td><b>%1</b>").arg(inner[0])));
    EXPECT_TRUE(tip.contains(QStringLiteral("<td>self:</td><td>%1</td>").arg(inner[1])));
    EXPECT_TRUE(tip.contains(QStringLiteral("<td>mutual:</td><td>%1</td>").arg(inner[2])));
    EXPECT_TRUE(tip.contains(QStringLiteral("<b>Outer inductance:</b></td><td><b>%1</b>").arg(outer[0])));
    EXPECT_TRUE(tip.contains(QStringLiteral("<td>self:</td><td>%1</td>").arg(outer[1])));
    EXPECT_GT(inner[0], 0.0);
    EXPECT_TRUE(Qt::mightBeRichText(tip));

    winding->setAutoCalcEndInductance(false);
    EXPECT_FALSE(edit->toolTip().contains(table));
}

// An edited end-turn script is read again from the editor: the winding reloads it and makes
// its end turns anew; a protected design offers no such button.
TEST_F(WindingPageTest, TheRereadButtonLoadsTheEndturnScriptAgain)
{
    WindingEditor editor(&document);
    auto *button = child<QToolButton>(editor, "buttonRereadEndturnsScript");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->toolTip(), QStringLiteral("Re-read geometry script"));
    WindingObject *winding = document.winding();
    winding->updateEndturns();
    ASSERT_FALSE(winding->endturns().value(0).isEmpty());
    QSignalSpy loaded(winding, &WindingObject::endturnsScriptLoaded);
    QSignalSpy endturns(winding, &WindingObject::endturnsChanged);
    button->click();
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_GE(endturns.count(), 1);
    EXPECT_FALSE(winding->endturns().value(0).isEmpty());

    document.setReadonly(true);
    EXPECT_FALSE(button->isEnabled());
}
