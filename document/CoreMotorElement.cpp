#include "document/CoreMotorElement.h"

#include "document/Document.h"

CoreMotorElement::CoreMotorElement(Document *document, QObject *parent)
    : ElementTypes(parent ? parent : static_cast<QObject *>(document))
    , m_document(document)
{
}

CoreMotorElement::~CoreMotorElement() = default;

QString geometryErrorMessage(GeometryErrors flag)
{
    switch (int(flag)) {
    case CoreMotorElement::DiametersOrder:
        return QObject::tr("The outer diameter of the %1 must be larger than the inner diameter of the %1.");
    case CoreMotorElement::ThicknessZero:
        return QObject::tr("Thickness of the %1 is zero.");
    case CoreMotorElement::HeightZero:
        return QObject::tr("Height of the %1 is zero.");
    case CoreMotorElement::GeometryEmpty:
        return QObject::tr("The %1 geometry is empty.");
    case CoreMotorElement::NotSymmetrical:
        return QObject::tr("The %1 geometry is not symmetrical.");
    case CoreMotorElement::BodiesOverlap:
        return QObject::tr("The %1 geometry dimensions are inconsistent: some bodies overlap.");
    default:
        return QStringLiteral("Unknown geometry error!");
    }
}

QString materialErrorMessage(MaterialErrors flag)
{
    switch (int(flag)) {
    case CoreMotorElement::IronNotFound:
        return QObject::tr("%1 iron material is not found.");
    case CoreMotorElement::WindingNotFound:
        return QObject::tr("%1 winding material is not found.");
    case CoreMotorElement::MagnetNotFound:
        return QObject::tr("%1 magnet material is not found.");
    case CoreMotorElement::StatorIronNotAssigned:
        return QObject::tr("Stator iron material is not assigned.");
    case CoreMotorElement::StatorWindingNotAssigned:
        return QObject::tr("Stator winding material is not assigned.");
    case CoreMotorElement::RotorIronNotAssigned:
        return QObject::tr("Rotor iron material is not assigned.");
    case CoreMotorElement::RotorMagnetNotAssigned:
        return QObject::tr("Rotor magnet material is not assigned.");
    case CoreMotorElement::RotorConductorNotAssigned:
        return QObject::tr("Rotor conductor material is not assigned.");
    case CoreMotorElement::CoreFillCoefCount:
        return QObject::tr("Number of elements in \"CoreFillCoef\" must be equal to the number of mesh slices.");
    default:
        return QStringLiteral("Unknown material error!");
    }
}

QString windingErrorMessage(WindingErrors flag)
{
    switch (int(flag)) {
    case CoreMotorElement::SlotPoleNotFeasible:
        return QObject::tr("Not feasible slot/pole combination.");
    case CoreMotorElement::SlotsNotEven:
        return QObject::tr("Number of slots must be even for single layer winding.");
    case CoreMotorElement::LayoutIncorrect:
        return QObject::tr("Incorrect winding layout.");
    case CoreMotorElement::ParallelPathsIncorrect:
        return QObject::tr("Incorrect number of winding parallel paths.");
    case CoreMotorElement::LayoutEmpty:
        return QObject::tr("Winding layout is empty.");
    case CoreMotorElement::LayoutParallelPathNumber:
        return QObject::tr("Winding layout has incorrect parallel path number(s).");
    case CoreMotorElement::LayoutNumber:
        return QObject::tr("Winding layout has incorrect layout number(s).");
    case CoreMotorElement::Unbalanced:
        return QObject::tr("Unbalanced winding.");
    case CoreMotorElement::NotSupported:
        return QObject::tr("Not supported winding configuration.");
    case CoreMotorElement::InnerFilaments:
        return QObject::tr("Incorrect inner filaments path.");
    case CoreMotorElement::OuterFilaments:
        return QObject::tr("Incorrect outer filaments path.");
    case CoreMotorElement::EndWindingFailed:
        return QObject::tr("Failed to generate end winding.");
    case CoreMotorElement::EndWindingStale:
        return QObject::tr("End winding needs to be regenerated");
    case CoreMotorElement::InnerEndturnsOverlap:
    case CoreMotorElement::OuterEndturnsOverlap:
        return QObject::tr("Some inner and outer end turns overlap.");
    default:
        return QStringLiteral("Unknown winding error!");
    }
}

QString meshErrorMessage(MeshErrors flag)
{
    switch (int(flag)) {
    case CoreMotorElement::MeshBuildFailed:
        return QObject::tr("Critical error while building mesh.");
    default:
        return QStringLiteral("Unknown mesh error!");
    }
}
