#include <QDir>
#include <QFile>
#include <QList>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>

#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "geometry/MotorItem.h"
#include "geometry/SimDomain.h"
#include "meshing/CDT.h"
#include "meshing/Mesh.h"
#include "ShippedMachine.h"

using namespace shipped;

namespace {

bool near(double a, double b)
{
    return std::abs(a - b) <= 1e-7;
}

bool hasVertex(const CDT::Snapshot &mesh, double x, double y)
{
    return std::any_of(mesh.vertices.cbegin(), mesh.vertices.cend(),
                       [&](const CDT::Vertex &vertex) { return near(vertex.point.x(), x) && near(vertex.point.y(), y); });
}

// Constraints that lie along the ordinate.
int constraintsAlong(const CDT::Snapshot &mesh, double y)
{
    int count = 0;
    for (const CDT::Edge &edge : mesh.constraints) {
        count += near(mesh.vertices.at(edge.vertex0).point.y(), y) && near(mesh.vertices.at(edge.vertex1).point.y(), y)
                     ? 1
                     : 0;
    }
    return count;
}

class RadialMeshTest : public ShippedMachineTest
{
protected:
    void build(int layers, int slices)
    {
        ASSERT_TRUE(makeMachine(Machine::SR));
        doc.airgap(Airgap::ID1)->setNumberLayers(layers);
        mesh->setAutoSizeBound(false);
        mesh->setSizeBound(6.0);
        mesh->setNumberSlices(slices);
        mesh->createMeshSlices();
        ASSERT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    }
};

} // namespace

// The solver slides the rotor along the two rows beside the middle band: those
// are marked as its own, but where they meet the frame and the edges of the
// active part; the other rows of a gap have done their work and are no
// constraint. Three layers have no other rows.
TEST_F(RadialMeshTest, RowsBesideTheMiddleBandAreTheSolversAndTheOthersAreFreed)
{
    for (const int layers : {3, 5}) {
        SCOPED_TRACE(QStringLiteral("%1 layers").arg(layers).toStdString());
        build(layers, 2);
        const CDT::Snapshot radial = mesh->meshRadial().snapshot();
        const Airgap *gap = doc.airgap(Airgap::ID1);
        const double h = gap->thickness() / layers;
        const SimDomain domain = doc.simDomain();
        const QList<double> frameAbscissas{0.0, domain.inner, domain.outer, mesh->radialOuterRadius()};
        for (int k = 1; k < layers; ++k) {
            SCOPED_TRACE(QStringLiteral("row %1").arg(k).toStdString());
            const double y = gap->posBottom() + k * h;
            const bool central = k == layers / 2 || k == layers / 2 + 1;
            EXPECT_EQ(constraintsAlong(radial, y) > 0, central);
            int rowVertices = 0;
            for (const CDT::Vertex &vertex : radial.vertices) {
                if (!near(vertex.point.y(), y))
                    continue;
                ++rowVertices;
                const bool onFrame = std::any_of(frameAbscissas.cbegin(), frameAbscissas.cend(),
                                                 [&](double x) { return near(vertex.point.x(), x); });
                EXPECT_EQ(vertex.type, central && !onFrame ? CDT::VertexAirgapRow : CDT::VertexBase)
                    << "at " << vertex.point.x();
            }
            EXPECT_GT(rowVertices, 4);
            for (const double x : frameAbscissas)
                EXPECT_TRUE(hasVertex(radial, x, y)) << "no row vertex at " << x;
        }
    }
}

// The radial model meets every slice on a vertex row, and the edges of the
// active part meet each face of a body in a vertex.
TEST_F(RadialMeshTest, EverySliceRadiusAndEdgeOfTheActivePartHasVerticesOnTheFaces)
{
    build(3, 3);
    const CDT::Snapshot radial = mesh->meshRadial().snapshot();
    const SimDomain domain = doc.simDomain();
    QList<double> abscissas = mesh->sliceRadii();
    abscissas << domain.inner << domain.outer;
    for (const MotorElement *element : {static_cast<MotorElement *>(doc.stator()), static_cast<MotorElement *>(doc.rotor())}) {
        for (const MotorItem *item : element->activeItems()) {
            for (const double x : abscissas) {
                EXPECT_TRUE(hasVertex(radial, x, item->range().first)) << item->objectName().toStdString() << " at " << x;
                EXPECT_TRUE(hasVertex(radial, x, item->range().second)) << item->objectName().toStdString() << " at " << x;
            }
        }
    }
}

// A new number of slices moves the rows of the radial model: the old mesh goes at once.
TEST_F(RadialMeshTest, ANewNumberOfSlicesDropsTheRadialMeshUntilTheNextBuild)
{
    build(3, 1);
    EXPECT_GT(mesh->meshRadial().numberOfFaces(), 0);
    mesh->setNumberSlices(2);
    EXPECT_EQ(mesh->meshRadial().numberOfVertices(), 0);
    mesh->createMeshSlices();
    EXPECT_GT(mesh->meshRadial().numberOfFaces(), 0);
    EXPECT_FALSE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
}

// A stator script may end the radial model within the active part: that model
// is refused with a reason, and the slices are still made.
TEST_F(RadialMeshTest, ARadialModelEndingWithinTheActivePartGivesAMeshError)
{
    QTemporaryDir scripts;
    ASSERT_TRUE(scripts.isValid());
    const QDir folder(scripts.path());
    ASSERT_TRUE(folder.mkpath(QStringLiteral("stator")) && folder.mkpath(QStringLiteral("include")));
    for (const QString name : {QStringLiteral("BodyScript.js"), QStringLiteral("SlottedStatorBody.js")})
        ASSERT_TRUE(QFile::copy(scriptFile(QStringLiteral("include"), name), folder.filePath("include/" + name)));
    QFile script(folder.filePath(QStringLiteral("stator/ShortRadialStator.js")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly | QIODevice::Text));
    script.write("include(\"../include/BodyScript.js\");\n"
                 "include(\"../include/SlottedStatorBody.js\");\n"
                 "var StatorGeom = function () {};\n"
                 "var stator = { slotWidth: 10, slotDepth: 12, coilClearance: 0.5, layerGap: 1 };\n"
                 "stator.getGeometry = function (id) {\n"
                 "    var result = slottedStatorGeometry(stator, id, false);\n"
                 "    result.simRadialOuterDomain = 120;\n"
                 "    return result;\n"
                 "};\n"
                 "function createStatorUI(widget) {}\n");
    script.close();

    ASSERT_TRUE(makeMachine(Machine::SR));
    ASSERT_TRUE(doc.stator()->readScript(script.fileName()));
    mesh->setAutoSizeBound(false);
    mesh->setSizeBound(6.0);
    mesh->setNumberSlices(2);
    QSignalSpy errors(mesh->console(), &ScriptConsole::signalError);
    mesh->createMeshSlices();
    EXPECT_TRUE(mesh->meshErrors().testFlag(CoreMotorElement::MeshBuildFailed));
    ASSERT_EQ(errors.count(), 1);
    EXPECT_TRUE(errors.last().at(1).toString().contains("radial model ends at 120 mm")) << errors.last().at(1).toString().toStdString();
    EXPECT_EQ(mesh->meshRadial().numberOfVertices(), 0);
    for (const CDT &slice : mesh->meshSlices())
        EXPECT_GT(slice.numberOfFaces(), 0);
}
