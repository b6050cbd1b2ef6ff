#pragma once

#include <QString>
#include <QVector>
#include <cmath>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

// A machine of the shipped scripts, with closed forms of its cuts.
namespace shipped {

constexpr double innerRadius = 50.0;
constexpr double outerRadius = 150.0;
constexpr double statorHeight = 40.0;
constexpr double rotorHeight = 12.0;
constexpr double gap = 3.0;
// The defaults of the shipped scripts: parallel-sided slots and a magnet on the gap face.
constexpr double slotWidth = 10.0;
constexpr double slotDepth = 12.0;
constexpr double clearance = 0.5;
constexpr double layerGap = 1.0;
constexpr double slotPitch = 30.0;
constexpr double polePitch = 36.0;
constexpr double magnetArc = 0.8;
constexpr double magnetThickness = 3.0;

inline QString scriptFile(const QString &folder, const QString &name)
{
    return QStringLiteral(ZDS_SOURCE_DIR "/assets/scripts/%1/%2").arg(folder, name);
}

// The unrolled arc of a parallel-sided strip 2a wide at the radius.
inline double stripArc(double a, double radius)
{
    return 2.0 * radius * std::asin(a / radius);
}

// A slotted stator and a surface magnet rotor, 12 slots and 10 poles unless
// asked for others, as shipped.
class ShippedMachineTest : public ::testing::Test
{
protected:
    ShippedMachineTest() { doc.start(); }

    // The type comes first: its change hands the configuration's values to the elements again.
    bool makeMachine(Machine::Type type, int numberSlots = 12, int polePairs = 5)
    {
        doc.setMachineType(type);
        const QVector<MotorElement *> elements{doc.stator(), doc.rotor()};
        for (MotorElement *element : elements) {
            element->setInnerDiameter(2 * innerRadius);
            element->setOuterDiameter(2 * outerRadius);
        }
        doc.stator()->setNumberSlots(numberSlots);
        doc.winding()->setNumberLayers(2);
        doc.winding()->setLayersOrientation(Winding::LeftRight);
        doc.rotor()->setNumberPolePairs(polePairs);
        for (MotorItem *item : doc.stator()->activeItems())
            item->setHeight(statorHeight);
        for (MotorItem *item : doc.rotor()->activeItems())
            item->setHeight(rotorHeight);
        doc.airgap(Airgap::ID1)->setThickness(gap);
        doc.stator()->clearCashPieces();
        doc.rotor()->clearCashPieces();
        return doc.stator()->readScript(scriptFile("stator", "SlottedStator.js"))
               && doc.rotor()->readScript(scriptFile("rotor", "SurfaceMagnetRotor.js"));
    }

    Document doc{nullptr};
    Mesh *mesh = doc.mesh();
};

} // namespace shipped
