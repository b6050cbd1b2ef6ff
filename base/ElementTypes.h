#pragma once

#include <QObject>

// The root class of the design elements. It holds the enumerations that layers below
// the elements (the controls, the script catalogue, the body pieces) must name; the
// elements and scripts reach them as their own (MotorElement::Yoke, Stator.Yoke).
class ElementTypes : public QObject
{
    Q_OBJECT
public:
    // Whether a stator or rotor body has a yoke.
    enum MiddleType {
        UnknownType = 0,
        Yokeless = 1,
        Yoke = 2,
    };
    Q_ENUM(MiddleType)

protected:
    using QObject::QObject;
};
