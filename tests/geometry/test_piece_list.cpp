#include <QSharedPointer>
#include <QtMath>
#include <cmath>
#include <gtest/gtest.h>

#include "geometry/BodyPieces.h"
#include "geometry/Piece.h"
#include "geometry/servoce/solid.h"
#include "materials/BasicMaterials.h"
#include "materials/MagnetMaterial.h"
#include "materials/WindingMaterial.h"

namespace {

// A unit cube centred at (x, y, z), with a material of the given type.
template <typename Material = GeneralMaterial>
Piece cubeAt(double x, double y, double z)
{
    return Piece(servoce::box(1.0, 1.0, 1.0, true).translated(x, y, z), QSharedPointer<Material>::create());
}

// The polar position of a cube's centre at radius 10, degrees.
Piece cubeAtAngle(double degrees, double z = 0.0)
{
    const double a = qDegreesToRadians(degrees);
    return cubeAt(10.0 * std::cos(a), 10.0 * std::sin(a), z);
}

double angleOf(const Piece &piece)
{
    const servoce::point3 c = piece.shape().center();
    double degrees = qRadiansToDegrees(std::atan2(c.y, c.x));
    return degrees < -1e-9 ? degrees + 360.0 : degrees;
}

} // namespace

TEST(PieceList, PlacingMovesEveryShapeAndKeepsItsVolume)
{
    PieceList pieces{cubeAt(10.0, 0.0, 0.5), cubeAt(0.0, 10.0, 0.5)};
    pieces.rotate(M_PI / 2);
    EXPECT_NEAR(pieces.at(0).shape().center().y, 10.0, 1e-9);
    EXPECT_NEAR(pieces.at(1).shape().center().x, -10.0, 1e-9);

    pieces.moveZ(4.0);
    EXPECT_NEAR(pieces.at(0).shape().center().z, 4.5, 1e-9);
    pieces.mirrorXY();
    EXPECT_NEAR(pieces.at(0).shape().center().z, -4.5, 1e-9);
    EXPECT_NEAR(pieces.at(0).shape().volume(), 1.0, 1e-9);

    const servoce::point3 before = pieces.at(1).shape().center();
    pieces.rotate(1e-8);
    pieces.moveZ(-1e-8);
    EXPECT_DOUBLE_EQ(pieces.at(1).shape().center().x, before.x) << "negligible moves are none";
    EXPECT_DOUBLE_EQ(pieces.at(1).shape().center().z, before.z);
}

TEST(PieceList, SortingGoesRoundFromZeroAndThenUpTheAxis)
{
    PieceList pieces{cubeAtAngle(200.0), cubeAtAngle(359.9999999999), cubeAtAngle(90.0), cubeAtAngle(-30.0)};
    pieces.sortByAngle();
    EXPECT_NEAR(std::remainder(angleOf(pieces.at(0)), 360.0), 0.0, 1e-6) << "a full turn counts as 0";
    EXPECT_NEAR(angleOf(pieces.at(1)), 90.0, 1e-9);
    EXPECT_NEAR(angleOf(pieces.at(2)), 200.0, 1e-9);
    EXPECT_NEAR(angleOf(pieces.at(3)), 330.0, 1e-9);

    PieceList stacked{cubeAtAngle(90.0, 5.0), cubeAtAngle(180.0, 0.0), cubeAtAngle(10.0, 5.0 + 1e-9),
                      cubeAtAngle(45.0, 0.0)};
    stacked.sortByHeightAndAngle();
    EXPECT_NEAR(angleOf(stacked.at(0)), 45.0, 1e-9);
    EXPECT_NEAR(angleOf(stacked.at(1)), 180.0, 1e-9);
    EXPECT_NEAR(angleOf(stacked.at(2)), 10.0, 1e-9) << "heights within 1e-7 are one level";
    EXPECT_NEAR(angleOf(stacked.at(3)), 90.0, 1e-9);
}

TEST(PieceList, KindsAndRadialRange)
{
    PieceList pieces{cubeAt<WindingMaterial>(10.0, 0.0, 0.0), cubeAt(20.0, 0.0, 0.0),
                     cubeAt<WindingMaterial>(0.0, -30.0, 0.0)};
    const PieceList windings = pieces.ofKind(AbstractMaterial::WindingKind);
    ASSERT_EQ(windings.size(), 2);
    EXPECT_NEAR(windings.at(1).shape().center().y, -30.0, 1e-9);

    const QPair<double, double> range = pieces.radialRange();
    EXPECT_NEAR(range.first, std::hypot(9.5, 0.5), 1e-9);
    EXPECT_NEAR(range.second, std::hypot(30.5, 0.5), 1e-9);
}

TEST(PoleBorders, NeighbouringMagnetsOfOneFieldJoinInPairsUnlessTheyKeepTheirBorder)
{
    const auto magnet = [](double x, double angle, bool savePoleBorder) {
        return Piece(servoce::box(1.0, 1.0, 1.0, true).translated(x, 10.0, 0.0),
                     QSharedPointer<MagnetParallelMaterial>::create(angle, QVector<double>(), savePoleBorder));
    };
    // Boxes side by side along x, sorted by angle from the right.
    PieceList joined = BodyPieces::joinedAtPoleBorders({magnet(0.5, 0.0, false), magnet(-0.5, 0.0, false)});
    ASSERT_EQ(joined.size(), 1);
    EXPECT_NEAR(joined.first().shape().volume(), 2.0, 1e-9);

    EXPECT_EQ(BodyPieces::joinedAtPoleBorders({magnet(0.5, 0.0, true), magnet(-0.5, 0.0, true)}).size(), 2);
    EXPECT_EQ(BodyPieces::joinedAtPoleBorders({magnet(0.5, 0.0, false), magnet(-0.5, 90.0, false)}).size(), 2)
        << "fields that differ keep their border";
    EXPECT_EQ(BodyPieces::joinedAtPoleBorders(
                  {magnet(1.5, 0.0, false), magnet(0.5, 0.0, false), magnet(-0.5, 0.0, false)})
                  .size(),
              3)
        << "an odd number stays apart";
}
