#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <gtest/gtest.h>
#include <memory>

#include "document/Document.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/MagnetMaterial.h"
#include "materials/MaterialTestSupport.h"
#include "materials/MaterialIronEngine.h"
#include "ui/BHCurveWidget.h"
#include "ui/IronLossWidget.h"
#include "ui/MaterialRowWidgets.h"
#include "ui/MaterialSelectDialog.h"
#include "ui/MaterialSelectWidget.h"
#include "ui/MaterialWeightWidget.h"
#include "ui/MaterialsWidget.h"

// The material windows and panels: loss and B-H plots with their reports of bad data,
// the catalogue dialog, the rows of one material, the panel beside the 3D view that
// turns choices into undoable changes, and the masses of the machine.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

MaterialIronDescribe lossTable(const QList<double> &frequency, const QList<double> &fluxDensity,
                               const QList<double> &loss)
{
    MaterialIronDescribe iron;
    iron.name = QStringLiteral("Test steel");
    iron.lossFrequency = frequency;
    iron.lossFluxDensity = fluxDensity;
    iron.lossValue = loss;
    iron.unitFrequency = QStringLiteral("Hz");
    iron.unitFluxDensity = QStringLiteral("T");
    iron.unitLoss = QStringLiteral("W/kg");
    return iron;
}

QStringList graphNames(const MaterialPlotWindow &window)
{
    QStringList names;
    for (int i = 0; i < window.graphCount(); ++i) {
        if (window.graphInLegend(i))
            names << window.graphName(i);
    }
    return names;
}

// Answers the next modal dialog of the catalogue with a material, or cancels it.
void answerSelectDialog(const QString &material)
{
    QTimer::singleShot(0, [material] {
        auto *dialog = qobject_cast<MaterialSelectDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        if (material.isNull()) {
            dialog->reject();
            return;
        }
        dialog->setCurrentMaterial(material);
        dialog->accept();
    });
}

} // namespace

TEST(IronLossWidget, DrawsEachMeasuredFrequencyWithItsFittedCurve)
{
    // Losses of an equation with known coefficients, at three frequencies: fewer could
    // not tell the hysteresis exponent from the eddy-current term.
    QList<double> f, b, p;
    for (const double frequency : {50.0, 200.0, 400.0}) {
        for (const double flux : {0.5, 1.0, 1.5}) {
            f << frequency;
            b << flux;
            p << 0.02 * std::pow(frequency, 1.1) * std::pow(flux, 1.7) + 5e-5 * std::pow(frequency * flux, 2);
        }
    }
    IronLossWidget window(lossTable(f, b, p));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Iron loss: Test steel"));
    EXPECT_TRUE(window.testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(graphNames(window), (QStringList{"50 Hz", "200 Hz", "400 Hz", "50 Hz (Steinmetz fitted)",
                                               "200 Hz (Steinmetz fitted)", "400 Hz (Steinmetz fitted)"}));
    // Per frequency: the spline of 101 points, the measured points as marks, the fit dashed.
    ASSERT_EQ(window.graphCount(), 9);
    EXPECT_EQ(window.graphPointCount(0), 101);
    EXPECT_EQ(window.graphPointCount(1), 3);
    EXPECT_EQ(window.graphLineStyle(1), Qt::NoPen);
    EXPECT_EQ(window.graphLineStyle(6), Qt::DashLine);
    EXPECT_TRUE(window.errors().isEmpty());
    EXPECT_TRUE(window.findChild<QLabel *>(QStringLiteral("labelErrors"))->isHidden());
    // The fit recovers the exponents of the data.
    EXPECT_NEAR(window.findChild<QLabel *>(QStringLiteral("labelA"))->text().mid(3).toDouble(), 1.1, 1e-3);
    EXPECT_NEAR(window.findChild<QLabel *>(QStringLiteral("labelB"))->text().mid(3).toDouble(), 1.7, 1e-3);
}

TEST(IronLossWidget, NamesRepeatedNeighbouringFluxDensitiesAndDrawsTheRest)
{
    const MaterialIronDescribe iron = lossTable({50, 50, 50, 100, 100, 100}, {0.5, 1.0, 1.00000005, 0.5, 1.0, 1.5},
                                                {1.0, 2.0, 2.1, 2.0, 4.0, 7.0});
    IronLossWidget window(iron);
    // 50 Hz measured is refused; 100 Hz is drawn; the fitted curves see 1.0 and
    // 1.00000005 side by side among all flux densities, so both are refused.
    EXPECT_EQ(graphNames(window), QStringList{"100 Hz"});
    EXPECT_EQ(window.errors(),
              (QStringList{"For '50 Hz' found repeated value 1 of peak magnetic flux density.",
                           "For '50 Hz' (Steinmetz fitted) found repeated value 1 of peak magnetic flux density.",
                           "For '100 Hz' (Steinmetz fitted) found repeated value 1 of peak magnetic flux density."}));
    const auto *label = window.findChild<QLabel *>(QStringLiteral("labelErrors"));
    EXPECT_FALSE(label->isHidden());
    EXPECT_TRUE(label->text().startsWith(QStringLiteral("Iron loss data format is not correct.\nFor '50 Hz'")));

    // Repeats that are not neighbours in the table are not looked for: the curve is drawn.
    IronLossWidget apart(lossTable({50, 50, 50}, {1.0, 0.5, 1.0}, {2.0, 1.0, 2.0}));
    EXPECT_TRUE(graphNames(apart).contains(QStringLiteral("50 Hz")));
}

TEST(IronLossWidget, OneFrequencyIsFittedAndCoefficientsOfTheFileGiveStandardFrequencies)
{
    IronLossWidget single(lossTable({50, 50, 50}, {0.5, 1.0, 1.5}, {0.8, 2.5, 5.0}));
    EXPECT_EQ(graphNames(single), (QStringList{"50 Hz", "50 Hz (Steinmetz fitted)"}));

    MaterialIronDescribe equation = lossTable({}, {}, {});
    equation.kh = 0.02;
    equation.alfa = 1.2;
    equation.beta = 1.9;
    equation.ke = 4e-5;
    IronLossWidget fromFile(equation);
    const QStringList names = graphNames(fromFile);
    EXPECT_EQ(names.size(), 9);
    EXPECT_EQ(names.first(), QStringLiteral("20 Hz"));
    EXPECT_EQ(names.last(), QStringLiteral("10000 Hz"));
    EXPECT_EQ(fromFile.graphPointCount(1), 11);
    EXPECT_EQ(fromFile.findChild<QLabel *>(QStringLiteral("labelA"))->text(), QStringLiteral("a= 1.2"));
    EXPECT_EQ(fromFile.findChild<QLabel *>(QStringLiteral("labelKe"))->text(), QStringLiteral("Ke= 4e-05"));

    // alfa 0 is no equation: the empty table is fitted on no rows.
    equation.alfa = 0.0;
    IronLossWidget noCoefficients(equation);
    EXPECT_EQ(noCoefficients.graphCount(), 0);
    EXPECT_EQ(noCoefficients.findChild<QLabel *>(QStringLiteral("labelKh"))->text(), QStringLiteral("Kh= 1"));
}

TEST(BHCurveWidget, DrawsTheSplineOrTheRawPointsOfABadTable)
{
    MaterialIronDescribe iron;
    iron.name = QStringLiteral("Test steel");
    iron.unitH = QStringLiteral("A/m");
    iron.unitB = QStringLiteral("T");
    iron.curveH = {0, 100, 300, 1000, 10000};
    iron.curveB = {0, 0.9, 1.3, 1.5, 1.8};
    BHCurveWidget good(iron);
    EXPECT_EQ(good.windowTitle(), QStringLiteral("B-H curve: Test steel"));
    ASSERT_EQ(good.graphCount(), 2);
    EXPECT_EQ(good.graphPointCount(0), 1001);
    EXPECT_EQ(good.graphPointCount(1), 5);

    // A field strength given twice and a curve that falls: no spline, the points as they are.
    iron.curveH = {0, 100, 100, 50, 10000};
    iron.curveB = {0, 0.9, 1.3, 1.2, 0.8};
    BHCurveWidget bad(iron);
    ASSERT_EQ(bad.graphCount(), 2);
    EXPECT_EQ(bad.graphPointCount(0), 5);
}

TEST(MaterialPlots, AFileWithAFallingCurveAndRepeatedLossRowsIsShownAsItStands)
{
    TemporaryLibrary library;
    library.write(QStringLiteral("Iron/Falling steel.txt"), "<Description>\n"
                                                             "Falling steel\n"
                                                             "A damaged table\n"
                                                             "\n"
                                                             "<B-H curve>\n"
                                                             "% H(A/m) B(T)\n"
                                                             "0 0\n"
                                                             "100 1.2\n"
                                                             "100 1.1\n"
                                                             "50 1.3\n"
                                                             "\n"
                                                             "<Iron loss>\n"
                                                             "% Frequency(Hz) Flux density(T) Iron loss(W/kg)\n"
                                                             "50 0.5 1.0\n"
                                                             "50 1.0 2.0\n"
                                                             "50 1.0 2.2\n"
                                                             "\n"
                                                             "<Mass Density> (kg/m^3)\n"
                                                             "7650\n");
    const MaterialIronEngine catalogue(library.path());
    const MaterialIronDescribe *iron = catalogue.describe(QStringLiteral("Falling steel"));
    ASSERT_NE(iron, nullptr);
    BHCurveWidget curve(*iron);
    ASSERT_EQ(curve.graphCount(), 2);
    EXPECT_EQ(curve.graphPointCount(0), 4);
    IronLossWidget loss(*iron);
    EXPECT_EQ(loss.errors().first(), QStringLiteral("For '50 Hz' found repeated value 1 of peak magnetic flux density."));
    EXPECT_FALSE(loss.findChild<QLabel *>(QStringLiteral("labelErrors"))->isHidden());
}

class MaterialSelection : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
    }

    QTemporaryDir settingsFolder;
};

TEST_F(MaterialSelection, TheDialogTakesMaterialsButNotFolders)
{
    MaterialIronSelectDialog dialog(QStringLiteral("M270-35A"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Select Iron material"));
    EXPECT_TRUE(dialog.findEdit()->isHidden());
    EXPECT_EQ(dialog.selectedMaterial(), QStringLiteral("M270-35A"));
    QPushButton *ok = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    EXPECT_TRUE(ok->isEnabled());

    auto *tree = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
    const QModelIndex folder = tree->currentIndex().parent();
    ASSERT_TRUE(folder.isValid());
    tree->setCurrentIndex(folder);
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_TRUE(dialog.selectedMaterial().isEmpty());

    // The unassigned first row is a choice, of no material.
    tree->setCurrentIndex(tree->model()->index(0, 0));
    EXPECT_TRUE(ok->isEnabled());
    EXPECT_TRUE(dialog.selectedMaterial().isEmpty());

    // Filtering keeps the folders that hold a match.
    dialog.findEdit()->setText(QStringLiteral("M800-50"));
    dialog.setCurrentMaterial(QStringLiteral("M800-50A"));
    EXPECT_EQ(dialog.selectedMaterial(), QStringLiteral("M800-50A"));
}

TEST_F(MaterialSelection, ARowShowsItsMaterialAndReportsOnlyAChange)
{
    MaterialIronWidget row;
    auto *select = row.selectWidget();
    EXPECT_EQ(select->button()->text(), QStringLiteral("Not assigned"));
    EXPECT_FALSE(row.detailButton()->isEnabled());

    row.setMaterial(QStringLiteral("M270-35A"));
    EXPECT_EQ(select->button()->text(), QStringLiteral("M270-35A"));
    EXPECT_TRUE(row.detailButton()->isEnabled());
    EXPECT_TRUE(select->toolTip().startsWith(QStringLiteral("M270-35A\nNon-oriented")));
    EXPECT_TRUE(select->toolTip().contains(QStringLiteral("Cogent Surahammars")));

    QSignalSpy changed(&row, &MaterialIronWidget::materialChanged);
    answerSelectDialog(QStringLiteral("M270-35A"));
    QTest::mouseClick(select->button(), Qt::LeftButton);
    EXPECT_EQ(changed.count(), 0);
    answerSelectDialog(QString());
    QTest::mouseClick(select->button(), Qt::LeftButton);
    EXPECT_EQ(changed.count(), 0);
    answerSelectDialog(QStringLiteral("M800-50A"));
    QTest::mouseClick(select->button(), Qt::LeftButton);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.first().first().toString(), QStringLiteral("M800-50A"));
    EXPECT_EQ(row.material(), QStringLiteral("M800-50A"));

    // A name the catalogue lacks stands as it is, without tool tip or plots.
    row.setMaterial(QStringLiteral("Unobtainium"));
    EXPECT_EQ(select->button()->text(), QStringLiteral("Unobtainium"));
    EXPECT_TRUE(select->toolTip().isEmpty());
    EXPECT_EQ(row.openBHCurve(), nullptr);
}

TEST_F(MaterialSelection, TheIronRowOpensBothPlotsOfALibraryMaterial)
{
    QWidget owner;
    auto *row = new MaterialIronWidget(&owner);
    row->setMaterial(QStringLiteral("M270-35A"));
    const std::unique_ptr<QWidget> curve(row->openBHCurve());
    const std::unique_ptr<QWidget> loss(row->openIronLoss());
    auto *bh = qobject_cast<BHCurveWidget *>(curve.get());
    auto *losses = qobject_cast<IronLossWidget *>(loss.get());
    ASSERT_NE(bh, nullptr);
    ASSERT_NE(losses, nullptr);
    EXPECT_TRUE(bh->isWindow());
    EXPECT_EQ(bh->graphPointCount(1), MaterialIronEngine::instance().describe("M270-35A")->curveH.size());
    // Four published frequencies, each measured and fitted, none refused.
    EXPECT_EQ(graphNames(*losses).size(), 8);
    EXPECT_TRUE(losses->errors().isEmpty());
}

class MaterialsPanelTest : public MaterialSelection
{
protected:
    void SetUp() override
    {
        MaterialSelection::SetUp();
        document.start();
        ASSERT_TRUE(document.load(example));
        pieces = document.pieces();
        panel.setDocument(&document);
        panel.setPieces(pieces);
    }

    Piece firstPiece(qint32 kind, Piece::Scopes body) const
    {
        for (const Piece &piece : pieces) {
            if (piece.kind() == kind && (Piece::Scopes(piece.scope()) & body))
                return piece;
        }
        return Piece();
    }

    Document document;
    PieceList pieces;
    MaterialsWidget panel;
};

TEST_F(MaterialsPanelTest, ShowsTheRowsThePiecesNeedWithTheDocumentsMaterials)
{
    EXPECT_TRUE(panel.isRowShown(MaterialsWidget::StatorIron));
    EXPECT_TRUE(panel.isRowShown(MaterialsWidget::StatorWinding));
    EXPECT_TRUE(panel.isRowShown(MaterialsWidget::RotorIron));
    EXPECT_TRUE(panel.isRowShown(MaterialsWidget::RotorMagnet));
    EXPECT_FALSE(panel.isRowShown(MaterialsWidget::RotorConductor));
    EXPECT_EQ(panel.statorIronWidget()->material(), document.stator()->ironMaterial());
    EXPECT_EQ(panel.rotorMagnetWidget()->material(), document.rotor()->magnetMaterial());
    EXPECT_TRUE(panel.rotorMagnetWidget()->isEnabled());

    document.setReadonly(true);
    EXPECT_FALSE(panel.rotorMagnetWidget()->isEnabled());
}

TEST_F(MaterialsPanelTest, AChoiceIsOneStepOfUndo)
{
    const QString before = document.rotor()->magnetMaterial();
    const QString other = before == QLatin1String("NdFeB N52") ? QStringLiteral("NdFeB N35") : QStringLiteral("NdFeB N52");
    answerSelectDialog(other);
    QTest::mouseClick(panel.rotorMagnetWidget()->selectWidget()->button(), Qt::LeftButton);
    EXPECT_EQ(document.rotor()->magnetMaterial(), other);
    document.undoStack()->undo();
    EXPECT_EQ(document.rotor()->magnetMaterial(), before);
    EXPECT_EQ(panel.rotorMagnetWidget()->material(), before);

    const double stackingBefore = document.stator()->ironStacking();
    auto *stacking = panel.statorIronWidget()->findChild<QLineEdit *>(QStringLiteral("editStackingFactor"));
    stacking->setFocus();
    stacking->selectAll();
    QTest::keyClicks(stacking, QStringLiteral("0.93"));
    QTest::keyClick(stacking, Qt::Key_Return);
    EXPECT_DOUBLE_EQ(document.stator()->ironStacking(), 0.93);
    document.undoStack()->undo();
    EXPECT_DOUBLE_EQ(document.stator()->ironStacking(), stackingBefore);
}

TEST_F(MaterialsPanelTest, ButtonsHideKindsAndTheSelectionFillsItsRow)
{
    auto *showAll = panel.findChild<QPushButton *>(QStringLiteral("buttonShowAll"));
    EXPECT_TRUE(showAll->isHidden());
    QSignalSpy magnets(&panel, &MaterialsWidget::buttonMaterialRotorMagnetToggled);
    auto *magnetButton = panel.findChild<QCheckBox *>(QStringLiteral("buttonRotorMagnet"));
    EXPECT_EQ(magnetButton->toolTip(), QStringLiteral("Click to hide 'Magnet (rotor)'"));

    const Piece magnet = firstPiece(AbstractMaterial::MagnetKind, Piece::RotorMask);
    ASSERT_FALSE(magnet.shape().is_null());
    panel.setSelection(magnet);
    const auto *pattern = dynamic_cast<const MagnetMaterial *>(magnet.material().data());
    ASSERT_NE(pattern, nullptr);
    EXPECT_EQ(panel.findChild<QLabel *>(QStringLiteral("valueRotorMagnetizationType"))->text(),
              Magnetization::typeText(pattern->type));
    EXPECT_TRUE(panel.findChild<QFrame *>(QStringLiteral("frameRotorMagnet"))->styleSheet().contains("255, 255, 255"));

    magnetButton->click();
    ASSERT_EQ(magnets.count(), 1);
    EXPECT_FALSE(magnets.first().first().toBool());
    EXPECT_EQ(magnetButton->toolTip(), QStringLiteral("Click to show 'Magnet (rotor)'"));
    EXPECT_FALSE(panel.rotorMagnetWidget()->isEnabled());
    EXPECT_FALSE(panel.findChild<QGroupBox *>(QStringLiteral("groupBoxRotorMagnetization"))->isEnabled());
    // Hiding the selected kind lets go of the selection.
    EXPECT_TRUE(panel.findChild<QFrame *>(QStringLiteral("frameRotorMagnet"))->styleSheet().contains("235, 235, 235"));
    EXPECT_FALSE(showAll->isHidden());

    showAll->click();
    EXPECT_TRUE(magnetButton->isChecked());
    EXPECT_TRUE(showAll->isHidden());
    EXPECT_EQ(magnets.count(), 2);

    const Piece coil = firstPiece(AbstractMaterial::WindingKind, Piece::StatorMask);
    ASSERT_FALSE(coil.shape().is_null());
    panel.setSelection(coil);
    auto *layer = panel.findChild<QLabel *>(QStringLiteral("valueStatorWindingLayer"));
    EXPECT_FALSE(layer->isHidden());
    EXPECT_EQ(layer->text().count(QStringLiteral(" / ")), 2);
}

TEST_F(MaterialsPanelTest, WeightsFollowTheMaterialsAndLeaveOutWhatTheMachineLacks)
{
    MaterialWeightWidget weights;
    weights.setDocument(&document);
    const auto value = [&weights](const char *row) {
        return weights.findChild<QLabel *>(QLatin1String(row) + QStringLiteral("Value"))->text().toDouble();
    };
    EXPECT_TRUE(weights.findChild<QLabel *>(QStringLiteral("labelRotorConductorWeight"))->isHidden());
    const double statorIron = value("labelStatorIronWeight");
    const double rotorIron = value("labelRotorIronWeight");
    const double magnets = value("labelRotorMagnetWeight");
    EXPECT_GT(statorIron, 0.0);
    EXPECT_GT(magnets, 0.0);
    EXPECT_NEAR(value("labelTotalWeight"),
                statorIron + value("labelStatorWindingWeight") + rotorIron + magnets, 0.0025);

    // Half the stacking factor, half the iron; a denser steel, proportionally more.
    document.rotor()->setIronStacking(document.rotor()->ironStacking() / 2.0);
    EXPECT_NEAR(value("labelRotorIronWeight"), rotorIron / 2.0, 0.001);
    const double density = MaterialIronEngine::instance().describe(document.stator()->ironMaterial())->massDensity;
    document.stator()->setIronMaterial(QStringLiteral("FeCo49V2 0.35 mm"));
    const double cobalt = MaterialIronEngine::instance().describe("FeCo49V2 0.35 mm")->massDensity;
    EXPECT_NEAR(value("labelStatorIronWeight"), statorIron * cobalt / density, 0.002);

    // A material the library lacks shows no value and counts nothing.
    document.stator()->setIronMaterial(QStringLiteral("Unobtainium"));
    EXPECT_TRUE(weights.findChild<QLabel *>(QStringLiteral("labelStatorIronWeightValue"))->text().isEmpty());
}
