#include <QSignalSpy>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "winding/CoilHelpers.h"
#include "winding/WindingObject.h"

namespace {

// Records the names of signals in the order they arrive.
class SignalOrder
{
public:
    template <typename Object, typename Signal>
    void watch(Object *object, Signal signal, const QString &name)
    {
        QObject::connect(object, signal, &m_context, [this, name] { names << name; });
    }

    QStringList names;

private:
    QObject m_context;
};

class WindingObjectTest : public ::testing::Test
{
protected:
    void setSlotsAndPoles(int numberSlots, int polePairs)
    {
        doc.stator()->setNumberSlots(numberSlots);
        doc.rotor()->setNumberPolePairs(polePairs);
    }

    void setManualLayout(const Winding::Layout &layout)
    {
        winding->setModeLayout(Winding::Manual);
        winding->setLayout(layout);
    }

    Document doc{nullptr};
    WindingObject *winding = doc.winding();
};

} // namespace

TEST(WindingTexts, ConversionsKeepTheDefaultForUnknownNames)
{
    EXPECT_EQ(Winding::toString(Winding::Toroidal), "Toroidal");
    EXPECT_EQ(Winding::fromString("Toroidal", Winding::Planar), Winding::Toroidal);
    EXPECT_EQ(Winding::fromString("toroidal", Winding::Planar), Winding::Planar);
    EXPECT_EQ(Winding::numberLayersString(2), "Double layer");
    EXPECT_EQ(Winding::numberLayersString(0), "Zero layer");
    EXPECT_EQ(Winding::numberLayersFromString("Single layer", 2), 1);
    EXPECT_EQ(Winding::numberLayersFromString("Triple layer", 2), 2);
    EXPECT_EQ(Winding::toString(Winding::LeftRight), "Left / Right");
    EXPECT_EQ(Winding::toString(Winding::Delta), "DeltaConnection");
    EXPECT_EQ(Winding::toString(Winding::Circuit(7)), "UnknownCircuit");
    EXPECT_EQ(Winding::fromString("Wire diameter", Winding::AWG), Winding::WireDiameter);
    EXPECT_EQ(Winding::toString(Winding::ModeLayout(5)), "UnknownModeLayout");
    EXPECT_EQ(Winding::toString(Winding::C), "C");
    EXPECT_EQ(Winding::toString(Winding::Coil::CW), "CW");
    EXPECT_EQ(Winding::toString(Winding::Coil::Orientation(3)), "Zero");
    EXPECT_EQ(Winding::toString(Winding::Connection_1s3_p_2s4), "(1-3)||(2-4)");
    EXPECT_EQ(Winding::toString(Winding::UnknownConnection), "UnknownConnection");
    EXPECT_EQ(Winding::fromString("1||2||3", Winding::UnknownConnection), Winding::Connection_1p2p3);
}

TEST(WindingTexts, NormalizeConnectionKeepsOnlyWhatFitsTheLayouts)
{
    EXPECT_EQ(Winding::normalizeConnection("1||2", 1), "");
    EXPECT_EQ(Winding::normalizeConnection("1||2", 2), "1||2");
    EXPECT_EQ(Winding::normalizeConnection("1||2||3", 2), "1-2");
    EXPECT_EQ(Winding::normalizeConnection("1||2||3", 3), "1||2||3");
    EXPECT_EQ(Winding::normalizeConnection("UnknownConnection", 3), "1-2-3");
    EXPECT_EQ(Winding::normalizeConnection("(1-4)||(2-3)", 4), "(1-4)||(2-3)");
    EXPECT_EQ(Winding::normalizeConnection("1||2", 4), "1-2-3-4");
    EXPECT_EQ(Winding::normalizeConnection("1-2", 5), "?");
}

TEST(WindingTexts, CoilValues)
{
    const Winding::Coil none = Winding::Coil::none();
    EXPECT_EQ(none.slotFrom, -1);
    EXPECT_EQ(none.layerTo, -1);
    EXPECT_EQ(none.parallelPath, 1);
    EXPECT_EQ(none.orientation, Winding::Coil::Zero);
    EXPECT_EQ(Winding::Layout().size(), int(Winding::Count));

    Winding::Coil other = coil(1, 2, 0, 1, 2);
    EXPECT_TRUE(other.samePlace(coil(1, 2, 0, 1, 1)));
    EXPECT_FALSE(other == coil(1, 2, 0, 1, 1));
    EXPECT_EQ(Winding::CurrentCoil(), Winding::CurrentCoil());
}

TEST(WindingTexts, PhaseColours)
{
    EXPECT_EQ(Winding::phaseColor(Winding::A, false), QColor(255, 20, 20));
    EXPECT_EQ(Winding::phaseColor(Winding::B, true), QColor(220, 255, 220));
    EXPECT_EQ(Winding::phaseColor(Winding::C, false), QColor(20, 20, 255));

    const QColor slot = Winding::phaseSlotColor(Winding::B, false);
    EXPECT_NEAR(slot.hsvHueF(), Winding::phaseColor(Winding::B, false).hsvHueF(), 1e-3);
    EXPECT_NEAR(slot.hsvSaturationF(), 0.5, 1e-3);
    EXPECT_NEAR(Winding::phaseSlotColor(Winding::B, true).hsvSaturationF(), 0.3, 1e-3);
    const QColor text = Winding::phaseTextColor(Winding::C);
    EXPECT_NEAR(text.hsvSaturationF(), 0.7, 1e-3);
    EXPECT_NEAR(text.valueF(), 0.5, 1e-3);
}

TEST_F(WindingObjectTest, SetterAnnouncesItsSignalThenWindingChangedAndNothingOnEqualValue)
{
    SignalOrder order;
    order.watch(winding, &WindingObject::numberTurnsChanged, "numberTurnsChanged");
    order.watch(winding, &WindingObject::windingChanged, "windingChanged");

    winding->setNumberTurns(12);
    EXPECT_EQ(winding->numberTurns(), 12);
    EXPECT_EQ(order.names, QStringList({"numberTurnsChanged", "windingChanged"}));

    order.names.clear();
    winding->setNumberTurns(12);
    EXPECT_TRUE(order.names.isEmpty());
}

TEST_F(WindingObjectTest, NumberLayersIsClippedAndForcesAutomaticSpanWhereTheSpanHasNoChoice)
{
    winding->setNumberLayers(3);
    EXPECT_EQ(winding->numberLayers(), 2);
    winding->setNumberLayers(0);
    EXPECT_EQ(winding->numberLayers(), 1);

    winding->setAutoCalcCoilSpan(false);
    EXPECT_TRUE(winding->autoCalcCoilSpan());

    winding->setNumberLayers(2);
    winding->setAutoCalcCoilSpan(false);
    EXPECT_FALSE(winding->autoCalcCoilSpan());
    winding->setLayersOrientation(Winding::LeftRight);
    winding->setAutoCalcCoilSpan(false);
    winding->setNumberLayers(1);
    EXPECT_TRUE(winding->autoCalcCoilSpan());
    winding->setNumberLayers(2);
    winding->setAutoCalcCoilSpan(false);
    EXPECT_TRUE(winding->autoCalcCoilSpan());
}

TEST_F(WindingObjectTest, CoilSpanActsOnlyWhenManualAndStaysWithinHalfTheSlots)
{
    doc.stator()->setNumberSlots(12);
    winding->setNumberLayers(2);
    // Automatic: the pole pitch in slots.
    winding->setCoilSpan(4);
    EXPECT_EQ(winding->coilSpan(), 3);

    winding->setAutoCalcCoilSpan(false);
    winding->setCoilSpan(1);
    EXPECT_EQ(winding->coilSpan(), 2);
    winding->setCoilSpan(10);
    EXPECT_EQ(winding->coilSpan(), 6);

    doc.stator()->setNumberSlots(9);
    EXPECT_EQ(winding->coilSpan(), 4);
}

TEST_F(WindingObjectTest, WireSettersAreGuardedByTheMethod)
{
    winding->setCoilFillFactor(0.5);
    winding->setWireDiameter(1.2);
    EXPECT_DOUBLE_EQ(winding->coilFillFactor(), 0.0);
    EXPECT_DOUBLE_EQ(winding->wireDiameter(), 0.0);

    winding->setWireSizeMethod(Winding::FillFactor);
    EXPECT_DOUBLE_EQ(winding->coilFillFactor(), 0.9);
    winding->setCoilFillFactor(3.0);
    EXPECT_DOUBLE_EQ(winding->coilFillFactor(), 2.0);
    winding->setCoilFillFactor(0.0);
    EXPECT_DOUBLE_EQ(winding->coilFillFactor(), 1e-6);

    winding->setWireSizeMethod(Winding::WireDiameter);
    EXPECT_DOUBLE_EQ(winding->wireDiameter(), 0.5);
    QSignalSpy diameterSpy(winding, &WindingObject::wireDiameterChanged);
    winding->setWireDiameter(1.2);
    winding->setWireDiameter(1.2);
    EXPECT_DOUBLE_EQ(winding->wireDiameter(), 1.2);
    EXPECT_EQ(diameterSpy.count(), 1);

    winding->setSlotFillFactor(-1.0);
    EXPECT_DOUBLE_EQ(winding->slotFillFactor(), 0.0);
    winding->setSlotFillFactor(2.5);
    EXPECT_DOUBLE_EQ(winding->slotFillFactor(), 2.0);
}

TEST_F(WindingObjectTest, ChangingTheMethodRestoresTheLastGaugeOfEachTable)
{
    winding->setWireSize("18 AWG");
    winding->setWireSizeMethod(Winding::SWG);
    EXPECT_EQ(winding->wireSize(), "25 SWG");
    winding->setWireSize("7/0 SWG");
    winding->setWireSizeMethod(Winding::AWG);
    EXPECT_EQ(winding->wireSize(), "18 AWG");
    winding->setWireSizeMethod(Winding::SWG);
    EXPECT_EQ(winding->wireSize(), "7/0 SWG");

    winding->setWireSizeMethod(Winding::FillFactor);
    winding->setWireSizeMethod(Winding::SWG);
    EXPECT_EQ(winding->wireSize(), "7/0 SWG");

    winding->setWireSize("thick");
    EXPECT_EQ(winding->wireSize(), "");
}

TEST_F(WindingObjectTest, OverhangsKeepTheirManualValuesWhileAutomatic)
{
    const double outer = (doc.stator()->outerDiameter() / 2 - doc.stator()->innerDiameter() / 2) / 5;
    const double inner = doc.stator()->innerDiameter() / 2 / 2;
    ASSERT_TRUE(winding->autoCalcOverhangEndturns());

    // A single-layer coil needs at least its own width.
    winding->setWidthWindingCoil(4.0);
    EXPECT_DOUBLE_EQ(winding->radialOverhangOuterEndturn(), 4.0);
    EXPECT_DOUBLE_EQ(winding->radialOverhangInnerEndturn(), 4.0);

    winding->setAutoCalcOverhangEndturns(false);
    EXPECT_DOUBLE_EQ(winding->radialOverhangOuterEndturn(), qMax(outer, 4.0));
    EXPECT_DOUBLE_EQ(winding->radialOverhangInnerEndturn(), qMax(inner, 4.0));

    // Manual values below the least one are raised to it.
    winding->setWidthWindingCoil(30.0);
    winding->setHeightWindingCoil(5.0);
    EXPECT_DOUBLE_EQ(winding->radialOverhangOuterEndturn(), qMax(outer, 30.0));
    EXPECT_DOUBLE_EQ(winding->radialOverhangInnerEndturn(), qMax(inner, 30.0));
    EXPECT_DOUBLE_EQ(winding->heightOuterEndturn(), 5.0);
    EXPECT_DOUBLE_EQ(winding->heightInnerEndturn(), 5.0);
}

TEST_F(WindingObjectTest, GeneratedEndturnShapesFollowTheStaleWarning)
{
    QSignalSpy warningsSpy(winding, &WindingObject::windingWarningsChanged);
    winding->setEndturnShapeGenerated(true);
    EXPECT_TRUE(winding->isEndturnShapeGenerated());
    EXPECT_FALSE(winding->windingWarnings().testFlag(CoreMotorElement::EndWindingStale));

    winding->setAutoCalcOverhangEndturns(false);
    winding->setEndturnShapeGenerated(true);
    winding->setHeightOuterEndturn(winding->heightOuterEndturn() + 1.0);
    EXPECT_FALSE(winding->isEndturnShapeGenerated());
    EXPECT_TRUE(winding->windingWarnings().testFlag(CoreMotorElement::EndWindingStale));
    EXPECT_GE(warningsSpy.count(), 1);

    // A change within 1e-7 is no change of a height.
    winding->setEndturnShapeGenerated(true);
    winding->setHeightOuterEndturn(winding->heightOuterEndturn() + 5e-8);
    EXPECT_TRUE(winding->isEndturnShapeGenerated());
}

TEST_F(WindingObjectTest, EndInductanceAndPhaseResistanceRefuseManualValuesWhileAutomatic)
{
    winding->setEndInductance(1e-3);
    EXPECT_DOUBLE_EQ(winding->endInductance(), 0.0);

    winding->setAutoCalcEndInductance(false);
    EXPECT_EQ(winding->methodCalcEndInductance(), "Manual");
    winding->setEndInductance(1e-3);
    winding->setAutoCalcEndInductance(true);
    EXPECT_EQ(winding->methodCalcEndInductance(), "");
    winding->setEndInductance(2e-3);
    EXPECT_DOUBLE_EQ(winding->endInductance(), 1e-3);
    winding->setAutoCalcEndInductance(false);
    EXPECT_DOUBLE_EQ(winding->endInductance(), 1e-3);

    winding->setPhaseResistance(0.4);
    EXPECT_DOUBLE_EQ(winding->phaseResistance(), 0.0);
    winding->setAutoCalcPhaseResistance(false);
    winding->setPhaseResistance(0.4);
    winding->setAutoCalcPhaseResistance(true);
    winding->setAutoCalcPhaseResistance(false);
    EXPECT_DOUBLE_EQ(winding->phaseResistance(), 0.4);
}

TEST_F(WindingObjectTest, SlotPoleErrors)
{
    QSignalSpy errorsSpy(winding, &WindingObject::windingErrorsChanged);
    setSlotsAndPoles(10, 4);
    EXPECT_TRUE(winding->windingErrors().testFlag(CoreMotorElement::SlotPoleNotFeasible));
    EXPECT_TRUE(winding->elementErrors().startsWith("Not feasible slot/pole combination."));
    EXPECT_GE(errorsSpy.count(), 1);

    setSlotsAndPoles(9, 4);
    EXPECT_EQ(winding->windingErrors() & (CoreMotorElement::SlotPoleNotFeasible | CoreMotorElement::SlotsNotEven),
              WindingErrors(CoreMotorElement::SlotsNotEven));
    EXPECT_FALSE(winding->windingErrors().testFlag(CoreMotorElement::LayoutEmpty));
}

TEST_F(WindingObjectTest, ErrorTextFollowsTheFixedOrder)
{
    setSlotsAndPoles(12, 5);
    winding->setParallelPaths(5);
    EXPECT_EQ(winding->elementErrors(), "Incorrect number of winding parallel paths.");

    winding->setParallelPaths(1);
    Winding::Layout layout;
    layout[Winding::A] << coil(0, 1, 0, 3, 9);
    setManualLayout(layout);
    EXPECT_EQ(winding->elementErrors(), "Winding layout is empty.\n"
                                        "Not supported winding configuration.\n"
                                        "Winding layout has incorrect parallel path number(s).\n"
                                        "Winding layout has incorrect layout number(s).");
}

TEST_F(WindingObjectTest, LayoutIsEditedOnlyInManualMode)
{
    const Winding::Layout generated = winding->layout();
    Winding::Layout layout;
    layout[Winding::B] << coil(0, 1);
    winding->setLayout(layout);
    EXPECT_EQ(winding->layout(), generated);

    winding->setModeLayout(Winding::Manual);
    QSignalSpy layoutsSpy(winding, &WindingObject::layoutsChanged);
    winding->setLayout(layout);
    EXPECT_EQ(withoutOrientations(winding->layout()), layout);
    winding->setLayout(layout);
    EXPECT_EQ(layoutsSpy.count(), 1);
}

TEST_F(WindingObjectTest, SignatureWritesEachCoilSideAtItsPosition)
{
    setSlotsAndPoles(6, 2);
    Winding::Layout layout;
    layout[Winding::A] << coil(0, 3);
    setManualLayout(layout);
    EXPECT_EQ(winding->signatureLayouts(), "+A....-A....");

    // Upper and lower layers of a planar winding count from the other face.
    winding->setNumberLayers(2);
    layout[Winding::A] = {coil(0, 1, 0, 1)};
    winding->setLayout(layout);
    EXPECT_EQ(winding->signatureLayouts(), "..+A-A..................");

    setSlotsAndPoles(9, 2);
    winding->setNumberLayers(1);
    EXPECT_EQ(winding->signatureLayouts(), "");
}

TEST_F(WindingObjectTest, ToroidalCoilsMustNotShareASlot)
{
    setSlotsAndPoles(6, 2);
    winding->setType(Winding::Toroidal);
    EXPECT_EQ(winding->effectiveNumberLayers(), 2);

    Winding::Layout layout;
    layout[Winding::A] << coil(0, 0, 0, 1) << coil(0, 3, 1, 0);
    setManualLayout(layout);
    EXPECT_EQ(winding->signatureLayouts(), "");
    EXPECT_TRUE(winding->windingErrors().testFlag(CoreMotorElement::LayoutIncorrect));
    EXPECT_FALSE(winding->windingErrors().testFlag(CoreMotorElement::NotSupported));
}

TEST_F(WindingObjectTest, CountOfLayoutsFollowsTheMachineTypeAndResizesTheReversals)
{
    QSignalSpy countSpy(winding, &WindingObject::countLayoutsChanged);
    doc.setMachineType(Machine::SRSRS);
    EXPECT_EQ(winding->countLayouts(), 4);
    EXPECT_EQ(winding->reverseLayersLayouts().size(), 4);
    doc.setMachineType(Machine::RSR);
    EXPECT_EQ(winding->countLayouts(), 2);
    EXPECT_EQ(winding->reverseLayersLayouts().size(), 2);
    EXPECT_EQ(countSpy.count(), 2);

    winding->setReverseLayerLayout(1, true);
    EXPECT_EQ(winding->reverseLayersLayouts(), QVector<bool>({false, true}));
    winding->setReverseLayerLayout(5, true);
    EXPECT_EQ(winding->reverseLayersLayouts(), QVector<bool>({false, true}));
}

TEST_F(WindingObjectTest, StatorConnectionNeedsTwoLayouts)
{
    winding->setConnection("1||2");
    EXPECT_EQ(winding->properties().value("statorconnection").toString(), "");
    doc.setMachineType(Machine::SRS);
    EXPECT_EQ(winding->properties().value("statorconnection").toString(), "1||2");

    QVariantMap map = winding->properties();
    map["statorconnection"] = "1||2||3";
    winding->setProperties(map);
    EXPECT_EQ(winding->connection(), "1-2");
}

TEST_F(WindingObjectTest, PropertiesRoundTrip)
{
    doc.stator()->setNumberSlots(24);
    winding->setNumberLayers(2);
    winding->setAutoCalcCoilSpan(false);
    winding->setCoilSpan(5);
    winding->setCircuit(Winding::Delta);
    winding->setParallelPaths(2);
    winding->setNumberTurns(14);
    winding->setStrandsConductor(3);
    winding->setWireSizeMethod(Winding::WireDiameter);
    winding->setWireDiameter(0.8);
    winding->setAutoCalcEndInductance(false);
    winding->setEndInductance(2e-5);
    const QVariantMap map = winding->properties();
    EXPECT_EQ(map.value("numberLayers").toString(), "Double layer");
    EXPECT_EQ(map.value("Rs").toString(), "Auto");

    Document other(nullptr);
    other.stator()->setNumberSlots(24);
    other.winding()->setProperties(map);
    EXPECT_EQ(other.winding()->properties(), map);
    EXPECT_EQ(other.winding()->coilSpan(), 5);
    EXPECT_FALSE(other.winding()->autoCalcCoilSpan());
}

TEST_F(WindingObjectTest, PropertiesConvertAndLimitTheirValues)
{
    winding->setWireSizeMethod(Winding::FillFactor);
    winding->setAutoCalcPhaseResistance(false);
    QVariantMap map = winding->properties();
    map["fillfactor"] = 3.0;
    map["Npp"] = 0;
    map["nstrands"] = -4;
    map["numberLayers"] = "Zero layer";
    map["Lsew"] = 1.5e-4;
    map.remove("Rs");
    winding->setProperties(map);
    EXPECT_DOUBLE_EQ(winding->coilFillFactor(), 1.0);
    EXPECT_EQ(winding->parallelPaths(), 1);
    EXPECT_EQ(winding->strandsConductor(), 1);
    EXPECT_EQ(winding->numberLayers(), 1);
    EXPECT_FALSE(winding->autoCalcEndInductance());
    EXPECT_DOUBLE_EQ(winding->endInductance(), 1.5e-4);
    EXPECT_TRUE(winding->autoCalcPhaseResistance());

    map["fillfactor"] = "much";
    winding->setProperties(map);
    EXPECT_DOUBLE_EQ(winding->coilFillFactor(), 0.3);

    QSignalSpy changedSpy(winding, &WindingObject::windingChanged);
    winding->setProperties(QVariantMap());
    EXPECT_EQ(changedSpy.count(), 0);
}

TEST_F(WindingObjectTest, CoilSpanKeyIsIgnoredForSideBySideLayers)
{
    winding->setNumberLayers(2);
    winding->setLayersOrientation(Winding::LeftRight);
    QVariantMap map = winding->properties();
    map["coilSpan"] = 3;
    winding->setProperties(map);
    EXPECT_TRUE(winding->autoCalcCoilSpan());
    EXPECT_EQ(winding->coilSpan(), 1);

    winding->setLayersOrientation(Winding::UpperLower);
    winding->setAutoCalcCoilSpan(false);
    map = winding->properties();
    map["coilSpan"] = "auto";
    winding->setProperties(map);
    EXPECT_TRUE(winding->autoCalcCoilSpan());
    map["coilSpan"] = 3;
    winding->setProperties(map);
    EXPECT_FALSE(winding->autoCalcCoilSpan());
    EXPECT_EQ(winding->coilSpan(), 3);
}
