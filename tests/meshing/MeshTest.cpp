#include <CGAL/exceptions.h>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"

namespace {

class MeshTest : public ::testing::Test
{
protected:
    // Sets one key of the present map, so that the other keys change nothing.
    void setProperty(const QString &key, const QVariant &value)
    {
        QVariantMap map = mesh->properties();
        map[key] = value;
        mesh->setProperties(map);
    }

    double automaticSize() const
    {
        return 0.1 * qMax(doc.stator()->outerDiameter(), doc.rotor()->outerDiameter());
    }

    Document doc{nullptr};
    Mesh *mesh = doc.mesh();
};

} // namespace

TEST(MeshQuality, GradesHaveNames)
{
    EXPECT_EQ(Mesh::airgapQualityName(1.0), "High");
    EXPECT_EQ(Mesh::airgapQualityName(1.5), "Medium");
    EXPECT_EQ(Mesh::airgapQualityName(2.0), "Low");
    EXPECT_EQ(Mesh::airgapQualityName(1.2), "Unknown");
    EXPECT_DOUBLE_EQ(Mesh::airgapQualityValue("Low"), 2.0);
    EXPECT_DOUBLE_EQ(Mesh::airgapQualityValue("Fine"), 1.5);
}

TEST_F(MeshTest, SetterMarksTheMeshAndEmitsNothingOnEqualValue)
{
    mesh->setMeshModified(false);
    QSignalSpy qualitySpy(mesh, &Mesh::airgapQualityChanged);
    QSignalSpy modifiedSpy(mesh, &Mesh::meshModifiedChanged);

    mesh->setAirgapQuality(5.0);
    EXPECT_DOUBLE_EQ(mesh->airgapQuality(), 2.0);
    EXPECT_EQ(Mesh::airgapQualityName(mesh->airgapQuality()), "Low");
    EXPECT_EQ(qualitySpy.count(), 1);
    ASSERT_EQ(modifiedSpy.count(), 1);
    EXPECT_TRUE(modifiedSpy.at(0).at(0).toBool());
    EXPECT_TRUE(mesh->isMeshInvalid());
    EXPECT_TRUE(doc.isGeometryModified());

    mesh->setAirgapQuality(2.0 + 1e-14);
    mesh->setAirgapQuality(0.2);
    EXPECT_DOUBLE_EQ(mesh->airgapQuality(), 1.0);
    EXPECT_EQ(qualitySpy.count(), 2);
}

TEST_F(MeshTest, NumberSlicesIsLimited)
{
    QSignalSpy slicesSpy(mesh, &Mesh::numberSlicesChanged);
    mesh->setNumberSlices(25);
    EXPECT_EQ(mesh->numberSlices(), 20);
    mesh->setNumberSlices(0);
    EXPECT_EQ(mesh->numberSlices(), 1);
    mesh->setNumberSlices(-3);
    EXPECT_EQ(slicesSpy.count(), 2);
}

TEST_F(MeshTest, AutomaticSizeBoundFollowsTheDiametersAndKeepsTheManualValue)
{
    ASSERT_TRUE(mesh->autoSizeBound());
    mesh->setSizeBound(3.0);
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), 10.0);

    mesh->adjustSizeBound();
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), automaticSize());

    mesh->setAutoSizeBound(false);
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), 10.0);
    mesh->setSizeBound(3.0);
    mesh->setAutoSizeBound(true);
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), automaticSize());
    mesh->setAutoSizeBound(false);
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), 3.0);
}

TEST_F(MeshTest, ModifiedMarkInvalidatesTheMesh)
{
    EXPECT_TRUE(mesh->isMeshInvalid());

    // As after a build: valid, while the mark of a change since saving stands.
    mesh->setMeshModified(true);
    mesh->setMeshInvalid(false);
    QSignalSpy modifiedSpy(mesh, &Mesh::meshModifiedChanged);
    mesh->setMeshModified(true);
    EXPECT_TRUE(mesh->isMeshInvalid());
    EXPECT_EQ(modifiedSpy.count(), 0);

    mesh->setMeshModified(false);
    mesh->setMeshInvalid(false);
    mesh->setMeshModified(false);
    EXPECT_FALSE(mesh->isMeshInvalid());
    mesh->clearGeometry();
    EXPECT_TRUE(mesh->isMeshInvalid());
}

TEST_F(MeshTest, MaxTriangleSideSwitchesTheAutomaticSize)
{
    setProperty("maxTriangleSide", 4.0);
    EXPECT_FALSE(mesh->autoSizeBound());
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), 4.0);
    EXPECT_DOUBLE_EQ(mesh->properties().value("maxTriangleSide").toDouble(), 4.0);

    setProperty("maxTriangleSide", "abc");
    EXPECT_TRUE(mesh->autoSizeBound());
    EXPECT_EQ(mesh->properties().value("maxTriangleSide").toString(), "Auto");

    setProperty("maxTriangleSide", 4.0);
    setProperty("maxTriangleSide", 0.05);
    EXPECT_TRUE(mesh->autoSizeBound());
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), automaticSize());
    setProperty("maxTriangleSide", "Auto");
    EXPECT_TRUE(mesh->autoSizeBound());

    setProperty("maxTriangleSide", "0.1");
    EXPECT_FALSE(mesh->autoSizeBound());
    EXPECT_DOUBLE_EQ(mesh->sizeBound(), 0.1);
}

TEST_F(MeshTest, PropertiesLimitSlicesLayersAndQuality)
{
    setProperty("nSlices", 25);
    EXPECT_EQ(mesh->numberSlices(), 20);
    setProperty("nSlices", 0);
    EXPECT_EQ(mesh->numberSlices(), 1);

    setProperty("nAirGapLayers", 7);
    EXPECT_EQ(doc.airgap(Airgap::ID1)->numberLayers(), 7);
    setProperty("nAirGapLayers", 4);
    EXPECT_EQ(doc.airgap(Airgap::ID1)->numberLayers(), 3);

    setProperty("airgapMeshQuality", "High");
    EXPECT_DOUBLE_EQ(mesh->airgapQuality(), 1.0);
    setProperty("airgapMeshQuality", "Finest");
    EXPECT_DOUBLE_EQ(mesh->airgapQuality(), 1.5);
}

TEST_F(MeshTest, PeriodicBoundaryKeySetsTheDocumentMode)
{
    EXPECT_EQ(mesh->properties().value("perbndcnd").toString(), "Auto");

    setProperty("perbndcnd", "None");
    EXPECT_EQ(doc.boundaryConditionMode(), Document::Manual);
    EXPECT_EQ(doc.boundaryCondition(), Document::None);
    EXPECT_EQ(mesh->properties().value("perbndcnd").toString(), "None");

    setProperty("perbndcnd", "Sometimes");
    EXPECT_EQ(doc.boundaryConditionMode(), Document::Automatic);

    setProperty("perbndcnd", "None");
    setProperty("perbndcnd", "Auto");
    EXPECT_EQ(doc.boundaryConditionMode(), Document::Automatic);
}

TEST_F(MeshTest, PropertiesRoundTrip)
{
    mesh->setNumberSlices(5);
    mesh->setAirgapQuality(1.0);
    mesh->setAutoSizeBound(false);
    mesh->setSizeBound(2.5);
    const QVariantMap map = mesh->properties();

    Document other(nullptr);
    other.mesh()->setProperties(map);
    EXPECT_EQ(other.mesh()->properties(), map);

    QSignalSpy changedSpy(mesh, &Mesh::meshChanged);
    mesh->setProperties(map);
    mesh->setProperties(QVariantMap());
    EXPECT_EQ(changedSpy.count(), 0);
}

TEST_F(MeshTest, BuildErrorsReachConsoleFlagsAndText)
{
    QSignalSpy errorsSpy(mesh, &Mesh::meshErrorsChanged);
    QSignalSpy consoleSpy(mesh->console(), &ScriptConsole::signalError);
    EXPECT_EQ(mesh->elementErrors(), "");

    const CGAL::Failure_exception withMessage("CGAL", "a < b", "mesh.cpp", 12, "boom");
    mesh->onError("Critical error while generating mesh slice 1", &withMessage);
    ASSERT_EQ(consoleSpy.count(), 1);
    EXPECT_EQ(consoleSpy.at(0).at(1).toString(), "Critical error while generating mesh slice 1, error: boom");

    const CGAL::Failure_exception withExpression("CGAL", "a < b", "mesh.cpp", 12, "");
    mesh->onError("Critical error while reordering edges in airgap", &withExpression);
    EXPECT_EQ(consoleSpy.at(1).at(1).toString(),
              "Critical error while reordering edges in airgap, expression: a < b, file: mesh.cpp L: 12");

    mesh->onError("Critical error while reflecting rotor mesh.");
    EXPECT_EQ(consoleSpy.at(2).at(1).toString(), "Critical error while reflecting rotor mesh.");

    EXPECT_EQ(mesh->meshErrors(), MeshErrors(CoreMotorElement::MeshBuildFailed));
    EXPECT_EQ(errorsSpy.count(), 1);
    EXPECT_EQ(mesh->elementErrors(), "Critical error while building mesh.");
}
