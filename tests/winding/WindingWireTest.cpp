#include <QtMath>
#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "materials/AbstractMaterial.h"
#include "winding/WindingObject.h"

namespace {

// The shipped design, its first stator body built: the winding reads the coil and slot
// areas that the body measured.
class WindingWireTest : public ::testing::Test
{
protected:
    WindingWireTest()
    {
        doc.start();
        doc.setMachineType(Machine::SR);
        for (MotorElement *element : {static_cast<MotorElement *>(doc.stator()), static_cast<MotorElement *>(doc.rotor())}) {
            element->setInnerDiameter(100.0);
            element->setOuterDiameter(300.0);
        }
        doc.stator()->setNumberSlots(12);
        doc.rotor()->setNumberPolePairs(5);
        body->setHeight(40.0);
        doc.stator()->setScript(QStringLiteral("SlottedStator.js"));
        body->createPieces();
    }

    // Round wires of the winding's diameter, every turn, strand and layer of a coil.
    double copperArea() const
    {
        const double d = winding->wireDiameter();
        return M_PI * d * d / 4.0 * winding->numberTurns() * winding->strandsConductor() * winding->numberLayers();
    }

    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    StatorItem *body = doc.stator()->items().first();
};

} // namespace

TEST_F(WindingWireTest, FillFactorsAreTheCopperOverTheMeasuredAreas)
{
    ASSERT_FALSE(body->cachedPieces().ofKind(AbstractMaterial::WindingKind).isEmpty());
    const double coilArea = body->areaWindingCoil();
    const double slotArea = body->areaWindingSlot();
    ASSERT_GT(coilArea, 0.0);
    ASSERT_GE(slotArea, coilArea);

    winding->setWireSize("18 AWG");
    winding->setNumberTurns(12);
    winding->setStrandsConductor(3);
    EXPECT_DOUBLE_EQ(winding->wireDiameter(), 1.024);
    EXPECT_NEAR(winding->coilFillFactor(), copperArea() / coilArea, 1e-9);
    EXPECT_NEAR(winding->slotFillFactor(), copperArea() / slotArea, 1e-9);

    winding->setWireSizeMethod(Winding::WireDiameter);
    winding->setWireDiameter(0.8);
    EXPECT_NEAR(winding->coilFillFactor(), copperArea() / coilArea, 1e-9);
}

TEST_F(WindingWireTest, AGivenFillFactorSizesTheWire)
{
    winding->setNumberTurns(20);
    winding->setWireSizeMethod(Winding::FillFactor);
    winding->setCoilFillFactor(0.45);
    EXPECT_NEAR(copperArea(), 0.45 * body->areaWindingCoil(), 1e-9);
    EXPECT_NEAR(winding->slotFillFactor(), 0.45 * body->areaWindingCoil() / body->areaWindingSlot(), 1e-9);

    // Twice the turns in the same coil: each wire has half the cross-section.
    const double before = winding->wireDiameter();
    winding->setNumberTurns(40);
    EXPECT_NEAR(winding->wireDiameter(), before / std::sqrt(2.0), 1e-12);

    // A slot fill factor is turned into the coil's by the ratio of the areas.
    winding->setSlotFillFactor(0.3);
    EXPECT_NEAR(winding->coilFillFactor(), 0.3 * body->areaWindingSlot() / body->areaWindingCoil(), 1e-9);

    winding->setWireSizeMethod(Winding::AWG);
    EXPECT_EQ(winding->wireSize(), "25 AWG");
    EXPECT_DOUBLE_EQ(winding->wireDiameter(), 0.455);
}
