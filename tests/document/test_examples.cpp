#include <gtest/gtest.h>

#include <QtMath>
#include <cmath>

#include "document/Document.h"
#include "geometry/Piece.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "support/PieceMeasures.h"

// The bundled examples open as the machines their names promise, built from the
// shipped scripts: every piece that the dimensions below determine is measured.

namespace {

constexpr double innerRadius = 60.0;
constexpr double outerRadius = 100.0;
constexpr double statorHeight = 30.0;
constexpr double rotorHeight = 10.0;
constexpr double magnetThickness = 3.0;
constexpr double magnetArcRatio = 0.8;
constexpr double slotWidth = 10.0;
constexpr double slotDepth = 12.0;
constexpr int slotCount = 12;
constexpr int poleCount = 10;

double annulus()
{
    return M_PI * (outerRadius * outerRadius - innerRadius * innerRadius);
}

struct Example {
    Document doc{nullptr};
    PieceList pieces;

    explicit Example(const char *name)
    {
        doc.start();
        loaded = doc.load(QStringLiteral(ZDS_SOURCE_DIR "/examples/") + QLatin1String(name));
        pieces = doc.pieces();
    }
    bool loaded = false;
};

} // namespace

TEST(Examples, TheSingleSidedExampleIsATwelveSlotTenPoleSlottedMachine)
{
    Example example("new_motor.zva");
    ASSERT_TRUE(example.loaded);
    EXPECT_EQ(example.doc.machineType(), Machine::SR);
    EXPECT_EQ(example.doc.stator()->numberSlots(), slotCount);
    EXPECT_EQ(2 * example.doc.rotor()->numberPolePairs(), poleCount);

    const PieceList iron = example.pieces.ofKind(AbstractMaterial::IronKind);
    ASSERT_EQ(iron.size(), 2) << "one stator and one rotor iron";
    const double slotVolume = slotCount * annulusStripArea(slotWidth / 2, innerRadius, outerRadius) * slotDepth;
    const double statorIron = annulus() * statorHeight - slotVolume;
    const double rotorIron = annulus() * (rotorHeight - magnetThickness);
    EXPECT_NEAR(volumeOf(iron), statorIron + rotorIron, 1e-6 * (statorIron + rotorIron));

    const PieceList magnets = example.pieces.ofKind(AbstractMaterial::MagnetKind);
    EXPECT_EQ(magnets.size(), poleCount);
    const double magnet = magnetArcRatio * annulus() * magnetThickness;
    EXPECT_NEAR(volumeOf(magnets), magnet, 1e-6 * magnet);

    const PieceList coils = example.pieces.ofKind(AbstractMaterial::WindingKind);
    EXPECT_FALSE(coils.isEmpty());
    EXPECT_GT(volumeOf(coils), 0.5 * slotVolume);
    EXPECT_LT(volumeOf(coils), slotVolume) << "coils keep a clearance to the iron";
}

TEST(Examples, TheDoubleRotorExampleHasAYokelessStatorBetweenTwoRotors)
{
    Example example("yokeless_double_rotor.zva");
    ASSERT_TRUE(example.loaded);
    EXPECT_EQ(example.doc.machineType(), Machine::RSR);
    EXPECT_EQ(example.doc.stator()->typeMiddleItem(), MotorElement::Yokeless);

    const PieceList magnets = example.pieces.ofKind(AbstractMaterial::MagnetKind);
    EXPECT_EQ(magnets.size(), 2 * poleCount) << "a magnet a pole on each rotor";
    const double magnet = 2 * magnetArcRatio * annulus() * magnetThickness;
    EXPECT_NEAR(volumeOf(magnets), magnet, 1e-6 * magnet);
    EXPECT_FALSE(example.pieces.ofKind(AbstractMaterial::WindingKind).isEmpty());
    EXPECT_GE(example.pieces.ofKind(AbstractMaterial::IronKind).size(), 2);
}
