#pragma once

#include <QMetaType>
#include <QPointF>
#include <QString>
#include <QVariant>

#include "materials/BasicMaterials.h"
#include "materials/MagnetMaterial.h"
#include "materials/WindingMaterial.h"

// The roles of bodies as scripts hold them: the program's material values with a
// meta-object, so that they travel through QVariant and show their fields to the
// script. Each adds nothing but what a script reads and writes.

class QmlEmptyMaterial : public EmptyMaterial
{
    Q_GADGET
public:
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlGeneralMaterial : public GeneralMaterial
{
    Q_GADGET
public:
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlIronMaterial : public IronMaterial
{
    Q_GADGET
public:
    QmlIronMaterial() = default;
    QmlIronMaterial(const QVector<double> &fillCoefs, double dsomaloy)
        : IronMaterial(fillCoefs, dsomaloy)
    {
    }
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlConductorMaterial : public ConductorMaterial
{
    Q_GADGET
public:
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlWindingMaterial : public WindingMaterial
{
    Q_GADGET
    Q_PROPERTY(int layer READ layer WRITE setLayer)
public:
    explicit QmlWindingMaterial(int layer = -1)
        : WindingMaterial(layer)
    {
    }
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlEndturnMaterial : public EndturnMaterial
{
    Q_GADGET
public:
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlMagnetParallelMaterial : public MagnetParallelMaterial
{
    Q_GADGET
    Q_PROPERTY(double angle MEMBER angle)
public:
    explicit QmlMagnetParallelMaterial(double angle = 0.0, const QVector<double> &segmentRadiuses = {},
                                       bool savePoleBorder = true)
        : MagnetParallelMaterial(angle, segmentRadiuses, savePoleBorder)
    {
    }
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlMagnetRadialMaterial : public MagnetRadialMaterial
{
    Q_GADGET
    Q_PROPERTY(QPointF center MEMBER center)
    Q_PROPERTY(Magnetization::Direction direction MEMBER direction)
public:
    explicit QmlMagnetRadialMaterial(Direction direction = Direction::From, const QPointF &center = {},
                                     const QVector<double> &segmentRadiuses = {})
        : MagnetRadialMaterial(direction, center, segmentRadiuses)
    {
    }
    Q_INVOKABLE QString toString() const { return description(); }
};

class QmlCustomMaterial : public CustomMaterial
{
    Q_GADGET
public:
    explicit QmlCustomMaterial(const QColor &color = Qt::red)
        : CustomMaterial(color)
    {
    }
    Q_INVOKABLE QString toString() const { return description(); }
};

Q_DECLARE_METATYPE(QmlEmptyMaterial)
Q_DECLARE_METATYPE(QmlGeneralMaterial)
Q_DECLARE_METATYPE(QmlIronMaterial)
Q_DECLARE_METATYPE(QmlConductorMaterial)
Q_DECLARE_METATYPE(QmlWindingMaterial)
Q_DECLARE_METATYPE(QmlEndturnMaterial)
Q_DECLARE_METATYPE(QmlMagnetParallelMaterial)
Q_DECLARE_METATYPE(QmlMagnetRadialMaterial)
Q_DECLARE_METATYPE(QmlCustomMaterial)

namespace QmlMaterials {
// Makes the script materials known by name; safe to call more than once.
void registerTypes();

// The material a script value holds, if it is one that a piece may carry; null for
// anything else, the empty material included.
const AbstractMaterial *pieceMaterial(const QVariant &value);
} // namespace QmlMaterials
