#include <gtest/gtest.h>

#include "document/Document.h"
#include "meshing/Mesh.h"
#include "winding/BlockStream.h"

namespace {

// A mesh block as each version wrote it; version 1 ends before the bound cylinder.
QByteArray meshBlock(qint32 version, bool reserved)
{
    return streamBytes([version, reserved](QDataStream &out) {
        out << version << qint32(5) << 1.0 << reserved << false << 3.5 << false;
        if (version >= 2)
            out << 12.5 << 7.5;
    });
}

class MeshStreamTest : public ::testing::Test
{
protected:
    Document doc{nullptr};
    Mesh *mesh = doc.mesh();
};

} // namespace

TEST_F(MeshStreamTest, EveryFieldSurvivesSaveAndLoad)
{
    mesh->setNumberSlices(5);
    mesh->setAirgapQuality(1.0);
    mesh->setAutoSizeBound(false);
    mesh->setSizeBound(3.5);
    mesh->setHorizontalSymmetry(false);
    mesh->setBoundCylinderRadius(12.5);
    mesh->setBoundCylinderAxialExtension(7.5);
    const QByteArray bytes = savedBlock(*mesh);
    EXPECT_EQ(savedBlock(*mesh), bytes);

    Document other(nullptr);
    Mesh &read = *other.mesh();
    const LoadResult result = loadBlock(read, bytes);
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);
    EXPECT_EQ(read.numberSlices(), 5);
    EXPECT_DOUBLE_EQ(read.airgapQuality(), 1.0);
    EXPECT_FALSE(read.autoSizeBound());
    EXPECT_DOUBLE_EQ(read.sizeBound(), 3.5);
    EXPECT_FALSE(read.horizontalSymmetry());
    EXPECT_DOUBLE_EQ(read.boundCylinderRadius(), 12.5);
    EXPECT_DOUBLE_EQ(read.boundCylinderAxialExtension(), 7.5);
    EXPECT_EQ(savedBlock(read), bytes);
}

TEST_F(MeshStreamTest, ReservedFieldIsTrueForANewMeshAndWrittenBackAsRead)
{
    // Behind the version, the number of slices and the air-gap quality.
    const int reservedOffset = 4 + 4 + 8;
    EXPECT_EQ(savedBlock(*mesh).at(reservedOffset), char(1));

    EXPECT_TRUE(loadBlock(*mesh, meshBlock(2, false)).usedUp);
    EXPECT_EQ(savedBlock(*mesh), meshBlock(2, false));
}

TEST_F(MeshStreamTest, Version1HasNoBoundCylinder)
{
    const double radius = mesh->boundCylinderRadius();
    const double extension = mesh->boundCylinderAxialExtension();
    const LoadResult result = loadBlock(*mesh, meshBlock(1, true));
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);
    EXPECT_EQ(mesh->numberSlices(), 5);
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), 3.5);
    EXPECT_DOUBLE_EQ(mesh->boundCylinderRadius(), radius);
    EXPECT_DOUBLE_EQ(mesh->boundCylinderAxialExtension(), extension);
}

TEST_F(MeshStreamTest, NewerVersionIsRefusedWithoutAChange)
{
    const int slices = mesh->numberSlices();
    EXPECT_FALSE(loadBlock(*mesh, meshBlock(3, true)).accepted);
    EXPECT_EQ(mesh->numberSlices(), slices);
}
