#pragma once

#include <QFlags>
#include <QObject>
#include <QString>

#include "base/ElementTypes.h"

class Document;

// Base of the design elements: each belongs to one document, which is its QObject
// parent unless another parent is given. It also names the flag sets by which
// elements report what is wrong with them.
class CoreMotorElement : public ElementTypes
{
    Q_OBJECT
public:
    enum GeometryError {
        DiametersOrder = 1,
        ThicknessZero = 16,
        HeightZero = 32,
        GeometryEmpty = 64,
        NotSymmetrical = 128,
        BodiesOverlap = 256,
    };
    Q_DECLARE_FLAGS(GeometryErrors, GeometryError)

    enum MaterialError {
        IronNotFound = 1,
        WindingNotFound = 2,
        MagnetNotFound = 4,
        StatorIronNotAssigned = 8,
        StatorWindingNotAssigned = 16,
        RotorIronNotAssigned = 32,
        RotorMagnetNotAssigned = 64,
        RotorConductorNotAssigned = 128,
        CoreFillCoefCount = 256,
    };
    Q_DECLARE_FLAGS(MaterialErrors, MaterialError)

    enum WindingError {
        SlotPoleNotFeasible = 1,
        SlotsNotEven = 2,
        LayoutIncorrect = 4,
        ParallelPathsIncorrect = 8,
        LayoutEmpty = 16,
        LayoutParallelPathNumber = 32,
        LayoutNumber = 64,
        Unbalanced = 128,
        NotSupported = 256,
        InnerFilaments = 512,
        OuterFilaments = 1024,
        EndWindingFailed = 2048,
        EndWindingStale = 4096,
        InnerEndturnsOverlap = 8192,
        OuterEndturnsOverlap = 16384,
    };
    Q_DECLARE_FLAGS(WindingErrors, WindingError)

    enum MeshError {
        MeshBuildFailed = 1,
    };
    Q_DECLARE_FLAGS(MeshErrors, MeshError)

    explicit CoreMotorElement(Document *document, QObject *parent = nullptr);
    ~CoreMotorElement() override;

    Document *document() const { return m_document; }

private:
    Document *m_document;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CoreMotorElement::GeometryErrors)
Q_DECLARE_OPERATORS_FOR_FLAGS(CoreMotorElement::MaterialErrors)
Q_DECLARE_OPERATORS_FOR_FLAGS(CoreMotorElement::WindingErrors)
Q_DECLARE_OPERATORS_FOR_FLAGS(CoreMotorElement::MeshErrors)

using GeometryErrors = CoreMotorElement::GeometryErrors;
using MaterialErrors = CoreMotorElement::MaterialErrors;
using WindingErrors = CoreMotorElement::WindingErrors;
using MeshErrors = CoreMotorElement::MeshErrors;

// Files store these by their short names.
Q_DECLARE_METATYPE(GeometryErrors)
Q_DECLARE_METATYPE(MaterialErrors)
Q_DECLARE_METATYPE(WindingErrors)
Q_DECLARE_METATYPE(MeshErrors)

// One message a flag; any other value, a combination included, gives the "Unknown" text.
QString geometryErrorMessage(GeometryErrors flag);
QString materialErrorMessage(MaterialErrors flag);
QString windingErrorMessage(WindingErrors flag);
QString meshErrorMessage(MeshErrors flag);

// Joins the messages of the set flags, in the given order, filling %1 with the
// element's object name where a message has one.
template <typename Flags, typename MessageOf>
QString elementErrorText(Flags errors, std::initializer_list<typename Flags::enum_type> order,
                         const QString &objectName, MessageOf messageOf)
{
    QStringList lines;
    for (auto flag : order) {
        if (!errors.testFlag(flag))
            continue;
        QString text = messageOf(Flags(flag));
        if (text.contains(QLatin1String("%1")))
            text = text.arg(objectName);
        lines << text;
    }
    return lines.join(QLatin1Char('\n'));
}
