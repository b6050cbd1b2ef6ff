#include <QCheckBox>
#include <QGroupBox>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QUndoStack>
#include <cmath>
#include <gtest/gtest.h>

#include "analysis/DriveSettings.h"
#include "analysis/MAT_Converter.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "document/RatedData.h"
#include "document/UndoStack.h"
#include "support/ConsoleSpies.h"
#include "support/LogCatcher.h"
#include "ui/ModelComboBoxes.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/DriveSettingsWidget.h"
#include "ui/MagnetostaticControlWidget.h"
#include "ui/MagnetostaticEditor.h"
#include "ui/MagnetostaticPageViewer.h"
#include "ui/MagnetostaticResultWidget.h"
#include "ui/MagnetostaticTimePlotWidget.h"
#include "ui/PlotCommand.h"
#include "ui/PlotValueSelectDialog.h"
#include "ui/TimePlotView.h"
#include "ui/Waveform.h"

// The analysis page: its settings go through the undo stack, its results show what the
// solver returned, and its time plots draw the solver's time-stepping data.

namespace {

class AnalysisPageTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
        QSettings().clear();
    }
    void TearDown() override { QSettings().clear(); }

    QUndoStack *undoStack() { return document.undoStack(); }

    static void type(NumberEdit *edit, const QString &text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }

    // The solver's answer as a run stores it.
    void storeSolverOutput(const QString &name, const QVariantMap &values)
    {
        const MatVarPointer variable(MAT_Converter::matVar(values, name));
        QVariantMap magnetostatic = document.analysis()->dataSimulation().value(QStringLiteral("Magnetostatic")).toMap();
        magnetostatic.insert(name, MAT_Converter::toByteArray(variable.data()));
        document.analysis()->setDataSimulation({{QStringLiteral("Magnetostatic"), magnetostatic}});
    }

    QTemporaryDir settingsFolder;
    Document document;
};

QVariantList numbers(std::initializer_list<double> values)
{
    QVariantList list;
    for (double value : values)
        list.append(value);
    return list;
}

TEST_F(AnalysisPageTest, DriveSettingsShowTheSelectedMethodAndChangeThroughTheUndoStack)
{
    DriveSettings *drive = document.driveSettings();
    DriveSettingsWidget widget(drive);
    widget.show();
    auto *method = widget.findChild<ModelValueComboBox *>(QStringLiteral("methodInputCurrent"));
    auto *peak = widget.findChild<NumberEdit *>(QStringLiteral("currentSupplyPeak"));
    auto *density = widget.findChild<NumberEdit *>(QStringLiteral("densitySupplyRMS"));
    auto *dutyCycle = widget.findChild<ModelValueComboBox *>(QStringLiteral("switchDutyCycle"));
    ASSERT_TRUE(method && peak && density && dutyCycle);

    method->setCurrentValue(DriveSettings::PeakSupplyCurrent);
    EXPECT_EQ(drive->methodInputCurrent(), DriveSettings::PeakSupplyCurrent);
    EXPECT_FALSE(peak->isHidden());
    EXPECT_TRUE(density->isHidden());
    EXPECT_TRUE(dutyCycle->isHidden());

    type(peak, QStringLiteral("42"));
    EXPECT_DOUBLE_EQ(drive->currentSupplyPeak(), 42.0);
    EXPECT_DOUBLE_EQ(drive->currentValue(), 42.0);
    EXPECT_EQ(undoStack()->count(), 2);

    undoStack()->undo();
    EXPECT_NE(peak->value(), 42.0);
    undoStack()->undo();
    EXPECT_EQ(drive->methodInputCurrent(), DriveSettings::RMSSupplyCurrent);
    EXPECT_EQ(method->currentValue(), int(DriveSettings::RMSSupplyCurrent));

    drive->setWaveformCurrent(DriveSettings::Trapezoidal);
    EXPECT_FALSE(dutyCycle->isHidden());
    // A change from the object makes no command of its own.
    EXPECT_EQ(undoStack()->index(), 0);
}

TEST_F(AnalysisPageTest, TheRatedButtonCopiesTheRatedCurrentUnconvertedIntoTheDensity)
{
    DriveSettings *drive = document.driveSettings();
    document.ratedData()->setSupplyCurrent(17.5);
    drive->setMethodInputCurrent(DriveSettings::RMSSupplyDensity);
    DriveSettingsWidget widget(drive);
    widget.show();
    auto *rated = widget.findChild<QToolButton *>(QStringLiteral("densitySupplyRMSButton"));
    ASSERT_TRUE(rated);
    QTest::mouseClick(rated, Qt::LeftButton);
    EXPECT_DOUBLE_EQ(drive->densitySupplyRMS(), 17.5);
    EXPECT_EQ(widget.findChild<QToolButton *>(QStringLiteral("currentPhaseRMSButton")), nullptr);
}

TEST_F(AnalysisPageTest, TheEditorEnablesRowsByTheSettingsAndUndoesEachChange)
{
    MagnetostaticAnalysis *analysis = document.analysis();
    MagnetostaticEditor editor(&document);
    editor.show();
    auto *solver = editor.findChild<ModelValueComboBox *>(QStringLiteral("solverType"));
    auto *accuracy = editor.findChild<ModelValueComboBox *>(QStringLiteral("accuracy"));
    auto *points = editor.findChild<QSpinBox *>(QStringLiteral("numberPoints"));
    auto *tolerance = editor.findChild<NumberEdit *>(QStringLiteral("converganceTolerance"));
    auto *timeTo = editor.findChild<NumberEdit *>(QStringLiteral("timeTo"));
    ASSERT_TRUE(solver && accuracy && points && tolerance && timeTo);

    EXPECT_FALSE(points->isEnabled());
    accuracy->setCurrentValue(MagnetostaticAnalysis::DefinePoint);
    EXPECT_EQ(analysis->accuracy(), MagnetostaticAnalysis::DefinePoint);
    EXPECT_TRUE(points->isEnabled());

    EXPECT_TRUE(tolerance->isEnabled());
    solver->setCurrentValue(MagnetostaticAnalysis::Linear);
    EXPECT_EQ(analysis->solverType(), MagnetostaticAnalysis::Linear);
    EXPECT_FALSE(tolerance->isEnabled());

    EXPECT_FALSE(timeTo->isEnabled());
    analysis->setTimePeriodMode(MagnetostaticAnalysis::DefinePeriod);
    ASSERT_TRUE(timeTo->isEnabled());
    type(timeTo, QStringLiteral("0.02"));
    EXPECT_DOUBLE_EQ(analysis->timePeriod().second, 0.02);

    undoStack()->undo();
    EXPECT_DOUBLE_EQ(timeTo->value(), 1.0);
    undoStack()->undo();
    EXPECT_EQ(analysis->solverType(), MagnetostaticAnalysis::Nonlinear);
    EXPECT_EQ(solver->currentValue(), int(MagnetostaticAnalysis::Nonlinear));
    EXPECT_TRUE(tolerance->isEnabled());
}

TEST_F(AnalysisPageTest, TheEditorTakesTheRatedSpeedAndRefusesEditsOfAReadonlyDocument)
{
    document.ratedData()->setSpeed(3600.0);
    MagnetostaticEditor editor(&document);
    editor.show();
    auto *rated = editor.findChild<QToolButton *>(QStringLiteral("mechanicalSpeedButton"));
    ASSERT_TRUE(rated);
    QTest::mouseClick(rated, Qt::LeftButton);
    EXPECT_DOUBLE_EQ(document.analysis()->mechanicalSpeed(), 3600.0);
    EXPECT_TRUE(editor.findChild<QGroupBox *>(QStringLiteral("groupDriveSettings")));

    document.setReadonly(true);
    EXPECT_FALSE(editor.isEnabled());
}

TEST_F(AnalysisPageTest, ResultsFillTheirRowsMarkInvalidValuesAndNameUnknownKeys)
{
    MagnetostaticResultWidget widget(&document);
    LogCatcher log;
    storeSolverOutput(QStringLiteral("Results"), {{QStringLiteral("torque"), 12.3456789},
                                                  {QStringLiteral("Efficiency"), qQNaN()},
                                                  {QStringLiteral("somethingNew"), 1.0}});
    EXPECT_EQ(widget.editor(QStringLiteral("torque"))->text(), QStringLiteral("12.3457"));
    QLineEdit *efficiency = widget.editor(QStringLiteral("Efficiency"));
    EXPECT_EQ(efficiency->text(), QStringLiteral("invalid"));
    EXPECT_TRUE(efficiency->styleSheet().contains(QStringLiteral("red")));
    EXPECT_TRUE(log.contains(QStringLiteral("Not found editor for somethingNew")));

    storeSolverOutput(QStringLiteral("Results"), {{QStringLiteral("Efficiency"), 93.5},
                                                  {QStringLiteral("Piron"), QStringLiteral("not computed")}});
    EXPECT_EQ(widget.editor(QStringLiteral("Piron"))->text(), QStringLiteral("not computed"));
    EXPECT_FALSE(widget.editor(QStringLiteral("Piron"))->styleSheet().contains(QStringLiteral("red")));
    EXPECT_EQ(efficiency->text(), QStringLiteral("93.5"));
    EXPECT_TRUE(efficiency->styleSheet().isEmpty());
    EXPECT_TRUE(widget.editor(QStringLiteral("torque"))->text().isEmpty());

    document.analysis()->setDataSimulation({});
    EXPECT_TRUE(efficiency->text().isEmpty());
}

TEST_F(AnalysisPageTest, TorqueOfEachRotorFollowsTheMachineTypeAndComplainsOfTooFewGaps)
{
    MagnetostaticResultWidget widget(&document);
    document.setMachineType(Machine::RSRSR);
    {
        LogCatcher log;
        storeSolverOutput(QStringLiteral("Results"),
                          {{QStringLiteral("torque"), 6.0}, {QStringLiteral("torque_airgap"), numbers({1, 2, 3})}});
        EXPECT_TRUE(log.contains(QStringLiteral("must >= 4")));
        EXPECT_FALSE(widget.editor(QStringLiteral("torque"))->toolTip().contains(QStringLiteral("each rotor")));
    }
    storeSolverOutput(QStringLiteral("Results"),
                      {{QStringLiteral("torque"), 10.0}, {QStringLiteral("torque_airgap"), numbers({1, 2, 3, 4})}});
    EXPECT_EQ(widget.editor(QStringLiteral("torque"))->toolTip(),
              QStringLiteral("Total torque: 10\nTorque for each rotor (from bottom to top): 1, 5, 4"));
}

TEST_F(AnalysisPageTest, CompositeRowsShowSupplyAndPhaseWithTheWindingsInSeries)
{
    MagnetostaticResultWidget widget(&document);
    storeSolverOutput(QStringLiteral("Results"), {{QStringLiteral("Is"), numbers({10, 5})},
                                                  {QStringLiteral("nWindingsInSeries"), 2.0}});
    QLineEdit *current = widget.editor(QStringLiteral("Is"));
    EXPECT_EQ(current->text(), QStringLiteral("10 | 5"));
    EXPECT_TRUE(current->styleSheet().isEmpty());
    EXPECT_TRUE(current->toolTip().endsWith(QStringLiteral(" 2 x 2.5")));
}

TEST_F(AnalysisPageTest, SectionsKeepTheirOpenStateInTheSettings)
{
    {
        MagnetostaticResultWidget widget(&document);
        auto *spoiler = widget.findChild<QWidget *>(QStringLiteral("SpoilerInductance"));
        ASSERT_TRUE(spoiler);
        QTest::mouseClick(spoiler->findChild<QToolButton *>(), Qt::LeftButton);
    }
    EXPECT_TRUE(QSettings().value(QStringLiteral("Settings/SpoilerInductance")).toBool());
    MagnetostaticResultWidget widget(&document);
    widget.show();
    EXPECT_TRUE(widget.findChild<QWidget *>(QStringLiteral("SpoilerInductanceBody"))->isVisible());
    EXPECT_FALSE(widget.findChild<QWidget *>(QStringLiteral("SpoilerGeneralResultsBody"))->isVisible());
}

TEST_F(AnalysisPageTest, TheVariablesDialogListsTheMachinesBodiesAndWritesThePlotCommand)
{
    document.setMachineType(Machine::RSRSR);
    {
        PlotValueSelectDialog dialog(&document);
        EXPECT_EQ(dialog.table()->model()->rowCount(), 0);
        EXPECT_EQ(dialog.plotCommand(), QStringLiteral("plot();legend();"));
    }
    document.setMode(Document::AnalysisMagnetostatic);
    PlotValueSelectDialog dialog(&document);
    QAbstractItemModel *model = dialog.table()->model();
    QStringList names;
    for (int row = 0; row < model->rowCount(); ++row)
        names.append(model->index(row, 0).data().toString());
    for (const char *name : {"Torque_airgap4", "Fn_rotor3", "Fn_stator2", "Fluxlinkage_q", "BackEMFc"})
        EXPECT_TRUE(names.contains(QLatin1String(name))) << name;
    EXPECT_FALSE(names.contains(QStringLiteral("Fn_rotor")));

    dialog.table()->selectRow(int(names.indexOf(QStringLiteral("Ib"))));
    dialog.table()->selectRow(int(names.indexOf(QStringLiteral("Ia"))));
    EXPECT_EQ(dialog.plotCommand(), QStringLiteral("plot(time,Ia,time,Ib);legend('Ia, A','Ib, A');"));
}

TEST(PlotCommandTest, ReadsPairsAndLegendsAndRefusesWhatItCantDraw)
{
    const PlotCommand command = PlotCommand::parse(QStringLiteral("plot(time,Ia,time, Ib);legend('Ia, A','Ib, A');"));
    ASSERT_TRUE(command.isValid()) << command.error().toStdString();
    ASSERT_EQ(command.series().size(), 2);
    EXPECT_EQ(command.series().at(1).y, QStringLiteral("Ib"));
    EXPECT_EQ(command.series().at(1).legend, QStringLiteral("Ib, A"));
    EXPECT_EQ(PlotCommand::parse(QStringLiteral("plot(time,Ia)")).series().first().legend, QStringLiteral("Ia"));

    for (const char *bad : {"plot(time)", "plot(time,Ia*2)", "surf(x,y)", "plot(time,Ia);delete('x')", "plot()"})
        EXPECT_FALSE(PlotCommand::parse(QLatin1String(bad)).isValid()) << bad;

    const AxisLimits limits = AxisLimits::parse(QStringLiteral("[0, 0.02]"));
    EXPECT_TRUE(limits.valid);
    EXPECT_DOUBLE_EQ(limits.upper, 0.02);
    EXPECT_FALSE(AxisLimits::parse(QStringLiteral("5 1")).valid);
    EXPECT_FALSE(AxisLimits::parse(QStringLiteral("auto")).valid);
}

TEST(WaveformTest, SpectrumGivesAmplitudesOfHarmonicsAndSmoothingRemovesRipple)
{
    const int n = 36;
    QVector<double> x(n);
    QVector<double> y(n);
    for (int i = 0; i < n; ++i) {
        x[i] = i;
        y[i] = 0.5 + 2.0 * std::sin(2 * M_PI * 3 * i / n) + 0.25 * std::cos(2 * M_PI * 7 * i / n);
    }
    const QVector<double> amplitudes = Waveform::harmonicAmplitudes(y);
    ASSERT_EQ(amplitudes.size(), n / 2 + 1);
    EXPECT_NEAR(amplitudes[0], 0.5, 1e-12);
    EXPECT_NEAR(amplitudes[3], 2.0, 1e-12);
    EXPECT_NEAR(amplitudes[7], 0.25, 1e-12);
    EXPECT_NEAR(amplitudes[5], 0.0, 1e-12);

    QVector<double> ripple(n);
    for (int i = 0; i < n; ++i)
        ripple[i] = i % 2 == 0 ? 1.0 : 3.0;
    const QVector<double> smooth = Waveform::smoothed(x, ripple, 2.0);
    EXPECT_NEAR(smooth[10], (3.0 + 1.0 + 3.0) / 3.0, 1e-12);
    EXPECT_EQ(Waveform::smoothed(x, ripple, 0.0), ripple);
}

TEST_F(AnalysisPageTest, TimePlotRowsAreNumberedAndTheSelectButtonFillsTheirExpression)
{
    document.setMode(Document::AnalysisMagnetostatic);
    MagnetostaticTimePlotWidget widget(&document);
    widget.show();
    EXPECT_FALSE(widget.expression(1)->isEnabled());
    widget.checkBox(1)->setChecked(true);
    widget.checkBox(3)->setChecked(true);
    EXPECT_EQ(widget.checkBox(1)->text(), QStringLiteral("1"));
    EXPECT_EQ(widget.checkBox(3)->text(), QStringLiteral("2"));
    EXPECT_TRUE(widget.expression(1)->isEnabled());
    EXPECT_EQ(widget.checkedRows().size(), 2);

    QTest::mouseClick(widget.findChild<QToolButton *>(QStringLiteral("buttonSelectValues2")), Qt::LeftButton);
    auto *dialog = widget.findChild<PlotValueSelectDialog *>();
    ASSERT_TRUE(dialog);
    dialog->table()->selectRow(0);
    dialog->accept();
    EXPECT_EQ(widget.expression(1)->text(), QStringLiteral("plot(time,Ia);legend('Ia, A');"));
}

TEST_F(AnalysisPageTest, ThePlotButtonDrawsTheTimeSteppingDataAndReportsWhatItCant)
{
    document.setMode(Document::AnalysisMagnetostatic);
    MagnetostaticPageViewer page(&document);
    page.resize(1200, 700);
    page.show();
    MagnetostaticControlWidget *control = page.control();
    EXPECT_FALSE(control->timePlotButton()->isEnabled());

    QVariantList time;
    QVariantList torque;
    for (int i = 0; i < 48; ++i) {
        time.append(i * 1e-3);
        torque.append(5.0 + std::sin(i * 0.5));
    }
    storeSolverOutput(QStringLiteral("Timesteppingdata"),
                      {{QStringLiteral("time"), time}, {QStringLiteral("Torque_maxwell"), torque}});
    ASSERT_TRUE(control->timePlotButton()->isEnabled());

    MagnetostaticTimePlotWidget *rows = control->timePlot();
    rows->checkBox(0)->setChecked(true);
    rows->expression(0)->setText(QStringLiteral("plot(time,Torque_maxwell)"));
    rows->checkBox(1)->setChecked(true);
    rows->expression(1)->setText(QStringLiteral("plot(time,Ia)"));
    ConsoleSpies spies(document.analysis()->console());
    QTest::mouseClick(control->timePlotButton(), Qt::LeftButton);

    TimePlotView *plots = page.view()->timePlots();
    EXPECT_EQ(plots->subplotCount(), 2);
    EXPECT_EQ(plots->curveCount(), 1);
    ASSERT_EQ(spies.error.count(), 1);
    EXPECT_TRUE(spies.error.first().at(1).toString().contains(QStringLiteral("Unknown variable 'Ia'")));

    // The curve is drawn in its colour.
    const QImage image = plots->grab().toImage();
    int curvePixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.blue() > 150 && pixel.red() < 60 && pixel.green() > 80 && pixel.green() < 150)
                ++curvePixels;
        }
    }
    EXPECT_GT(curvePixels, 100);
}

} // namespace
