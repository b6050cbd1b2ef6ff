#include <QMap>
#include <QSharedPointer>
#include <QtMath>
#include <cmath>
#include <gtest/gtest.h>

#include "geometry/SlotWindingPieces.h"
#include "geometry/servoce/solid.h"
#include "materials/WindingMaterial.h"

namespace {

// A coil side: a small box at radius 100, at a polar angle in degrees and a height.
Piece side(double degrees, double z = 0.0, double width = 2.0)
{
    const double a = qDegreesToRadians(degrees);
    return Piece(servoce::box(4.0, width, 4.0, true).translated(100.0 * std::cos(a), 100.0 * std::sin(a), z),
                 QSharedPointer<WindingMaterial>::create(7));
}

int layerOf(const Piece &piece)
{
    return static_cast<const WindingMaterial *>(piece.material().data())->layer();
}

double angleOf(const Piece &piece)
{
    const servoce::point3 c = piece.shape().center();
    const double degrees = qRadiansToDegrees(std::atan2(c.y, c.x));
    return degrees < 0.0 ? degrees + 360.0 : degrees;
}

// Numbering with the messages it reports collected.
struct Numbering
{
    explicit Numbering(const SlotWindingPieces::Build &build)
        : pieces(build, [this](const QString &message) { messages << message; })
    {
    }

    QStringList messages;
    SlotWindingPieces pieces;
};

SlotWindingPieces::Build build(int layers, Winding::LayersOrientation orientation, bool middle = false,
                               ElementTypes::MiddleType type = ElementTypes::Yoke)
{
    SlotWindingPieces::Build b;
    b.numberLayers = layers;
    b.orientation = orientation;
    b.middle = middle;
    b.middleType = type;
    return b;
}

} // namespace

TEST(SlotWindingPieces, LeftAndRightSidesAreTheTwoLayersOfADoubleLayerSlot)
{
    Numbering numbering(build(2, Winding::LeftRight));
    const PieceList pitch = numbering.pieces.numberedPitch({side(-3.0), side(3.0)});
    ASSERT_EQ(pitch.size(), 2);
    EXPECT_NEAR(angleOf(pitch.at(0)), 3.0, 1e-9);
    EXPECT_EQ(layerOf(pitch.at(0)), 2) << "the smaller polar angle is layer 2";
    EXPECT_EQ(layerOf(pitch.at(1)), 1);
    EXPECT_TRUE(numbering.messages.isEmpty());
}

TEST(SlotWindingPieces, UpperAndLowerHalvesFollowTheHeight)
{
    Numbering numbering(build(2, Winding::UpperLower));
    const PieceList pitch =
        numbering.pieces.numberedPitch({side(14.0, 10.0), side(-14.0, 0.0), side(-14.0, 10.0), side(14.0, 0.0)});
    ASSERT_EQ(pitch.size(), 4);
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(layerOf(pitch.at(k)), pitch.at(k).shape().center().z < 5.0 ? 1 : 2) << k;
}

TEST(SlotWindingPieces, AWrongCountIsReportedAndLeavesThePieces)
{
    Numbering numbering(build(2, Winding::UpperLower));
    const PieceList pitch = numbering.pieces.numberedPitch({side(-3.0), side(3.0)});
    ASSERT_EQ(numbering.messages.size(), 1);
    EXPECT_EQ(numbering.messages.first(),
              QStringLiteral("Geometry script of stator1 must return 4 winding piece for Double layer, Upper / Lower "
                             "orientation"));
    ASSERT_EQ(pitch.size(), 2);
    EXPECT_EQ(layerOf(pitch.at(0)), 7);
}

TEST(SlotWindingPieces, AYokelessMiddleBodyJoinsTheSidesOfBothFaces)
{
    Numbering numbering(build(2, Winding::LeftRight, true, ElementTypes::Yokeless));
    // Each side stands on both faces of the body: pieces that touch at z = 0.
    const PieceList pitch =
        numbering.pieces.numberedPitch({side(-3.0, -2.0), side(-3.0, 2.0), side(3.0, -2.0), side(3.0, 2.0)});
    ASSERT_EQ(pitch.size(), 2);
    EXPECT_NEAR(pitch.at(0).shape().volume(), 2 * 4.0 * 2.0 * 4.0, 1e-6);
    EXPECT_EQ(layerOf(pitch.at(0)) + layerOf(pitch.at(1)), 3);
}

TEST(SlotWindingPieces, HalvesOfEachSlotJoinOverTheWholeBody)
{
    Numbering numbering(build(1, Winding::UpperLower));
    // Six slots at 30, 90, ... degrees, each with its two halves on either side.
    PieceList halves;
    for (int slot = 0; slot < 6; ++slot) {
        halves << side(30.0 + 60.0 * slot - 0.5, 0.0, 1.0) << side(30.0 + 60.0 * slot + 0.5, 0.0, 1.0);
    }
    const PieceList body = numbering.pieces.numberedBody(halves, 6);
    ASSERT_EQ(body.size(), 6);
    for (const Piece &coil : body) {
        EXPECT_EQ(layerOf(coil), 1);
        EXPECT_NEAR(std::fmod(angleOf(coil) - 30.0 + 360.0, 60.0), 0.0, 0.05);
    }

    halves << side(1.0) << side(2.0) << side(3.0) << side(4.0) << side(5.0) << side(6.0);
    EXPECT_EQ(numbering.pieces.numberedBody(halves, 6).size(), 18);
    EXPECT_TRUE(numbering.messages.last().contains(QStringLiteral("must return 3 winding piece")));
}

TEST(SlotWindingPieces, AMiddleBodyWithAYokeCarriesOneLayoutOnEachFace)
{
    SlotWindingPieces::Build rules = build(1, Winding::UpperLower, true, ElementTypes::Yoke);
    rules.machine = Machine::RSR;
    Numbering numbering(rules);
    // Three slots; on each face the two halves of every coil side.
    PieceList halves;
    for (double z : {2.0, 22.0}) {
        for (int slot = 0; slot < 3; ++slot)
            halves << side(60.0 + 120.0 * slot - 0.5, z, 1.0) << side(60.0 + 120.0 * slot + 0.5, z, 1.0);
    }
    const PieceList body = numbering.pieces.numberedBody(halves, 3);
    ASSERT_EQ(body.size(), 6);
    EXPECT_TRUE(numbering.messages.isEmpty()) << numbering.messages.join('\n').toStdString();
    for (const Piece &coil : body) {
        const auto *material = static_cast<const WindingMaterial *>(coil.material().data());
        EXPECT_EQ(material->layout(), coil.shape().center().z < 10.0 ? 1 : 2) << "each face is a layout of its own";
        EXPECT_EQ(material->slot(), int(std::lround((angleOf(coil) - 60.0) / 120.0)) + 1)
            << "both faces of a slot share its number";
    }
}

TEST(SlotWindingPieces, AMiddleBodyWithAYokeHasBothLayersOnEachFace)
{
    SlotWindingPieces::Build rules = build(2, Winding::UpperLower, true, ElementTypes::Yoke);
    rules.machine = Machine::RSR;
    Numbering numbering(rules);
    // Three slots; on each face two layers of coil sides, each drawn as two halves.
    const double heights[] = {2.0, 6.0, 18.0, 22.0};
    PieceList halves;
    for (double z : heights) {
        for (int slot = 0; slot < 3; ++slot)
            halves << side(60.0 + 120.0 * slot - 0.5, z, 1.0) << side(60.0 + 120.0 * slot + 0.5, z, 1.0);
    }
    const PieceList body = numbering.pieces.numberedBody(halves, 3);
    ASSERT_EQ(body.size(), 12);
    EXPECT_TRUE(numbering.messages.isEmpty()) << numbering.messages.join('\n').toStdString();
    QMap<QPair<int, int>, int> sidesOfLayoutAndLayer;
    for (const Piece &coil : body) {
        const auto *material = static_cast<const WindingMaterial *>(coil.material().data());
        const double z = coil.shape().center().z;
        EXPECT_EQ(material->layout(), z < 10.0 ? 1 : 2) << z;
        // Layer 1 is the lower of each face, as in the pitch.
        EXPECT_EQ(material->layer(), (z < 4.0 || (z > 10.0 && z < 20.0)) ? 1 : 2) << z;
        ++sidesOfLayoutAndLayer[{material->layout(), material->layer()}];
    }
    EXPECT_EQ(sidesOfLayoutAndLayer.size(), 4) << "each face's layout has both layers";
    for (int count : sidesOfLayoutAndLayer)
        EXPECT_EQ(count, 3);
}
