#include <gtest/gtest.h>

#include <QtMath>
#include <algorithm>
#include <cmath>

#include "document/Document.h"
#include "geometry/Piece.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "support/PieceMeasures.h"
#include "support/ScaledExample.h"

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

// The example grown to 48 slots and 40 poles, as the speed benchmarks build it with all
// their parallel work: every piece where the dimensions put it, so that no speed-up
// changes what is built.
TEST(Examples, TheExampleGrownToFortyEightSlotsBuildsItsPiecesInPlace)
{
    const std::unique_ptr<Document> doc = scaledExample(48);
    ASSERT_TRUE(doc);
    const PieceList pieces = doc->pieces();
    const double scale = 4.0;
    const double r0 = scale * innerRadius;
    const double r1 = scale * outerRadius;
    const double ring = M_PI * (r1 * r1 - r0 * r0);

    const PieceList iron = pieces.ofKind(AbstractMaterial::IronKind);
    ASSERT_EQ(iron.size(), 2);
    const double slotVolume = 48 * annulusStripArea(slotWidth / 2, r0, r1) * slotDepth;
    const double ironVolume = ring * statorHeight - slotVolume + ring * (rotorHeight - magnetThickness);
    EXPECT_NEAR(volumeOf(iron), ironVolume, 1e-6 * ironVolume);
    for (const Piece &piece : iron) {
        const servoce::point3 centre = piece.shape().center();
        EXPECT_NEAR(std::hypot(centre.x, centre.y), 0.0, 1e-6 * r1) << "iron lies round the axis";
    }

    const PieceList magnets = pieces.ofKind(AbstractMaterial::MagnetKind);
    ASSERT_EQ(magnets.size(), 40);
    const double magnetVolume = magnetArcRatio * ring * magnetThickness;
    EXPECT_NEAR(volumeOf(magnets), magnetVolume, 1e-6 * magnetVolume);
    // Equal magnets equally spaced: their centres at one radius, one height, 9 degrees apart.
    const servoce::point3 first = magnets.first().shape().center();
    const double radius = std::hypot(first.x, first.y);
    QVector<double> angles;
    for (const Piece &magnet : magnets) {
        const servoce::point3 centre = magnet.shape().center();
        EXPECT_NEAR(std::hypot(centre.x, centre.y), radius, 1e-6 * radius);
        EXPECT_NEAR(centre.z, first.z, 1e-6 * r1);
        angles << std::fmod(qRadiansToDegrees(std::atan2(centre.y, centre.x)) + 360.0, 360.0);
    }
    std::sort(angles.begin(), angles.end());
    for (int i = 1; i < angles.size(); ++i)
        EXPECT_NEAR(angles[i] - angles[i - 1], 9.0, 1e-6);

    const PieceList coils = pieces.ofKind(AbstractMaterial::WindingKind);
    EXPECT_EQ(coils.size() % 48, 0) << "as many coil sides in every slot";
    EXPECT_GT(volumeOf(coils), 0.5 * slotVolume);
    EXPECT_LT(volumeOf(coils), slotVolume);
}
