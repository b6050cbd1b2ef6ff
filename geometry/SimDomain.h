#pragma once

#include <QMetaType>
#include <QObject>

// The radial range of the active part of the machine, between the radii
// `inner` and `outer`.
struct SimDomain
{
    Q_GADGET
    Q_PROPERTY(double inner MEMBER inner)
    Q_PROPERTY(double outer MEMBER outer)

public:
    Q_INVOKABLE double range() const { return outer - inner; }

    double inner = 0.0;
    double outer = 0.0;
};

Q_DECLARE_METATYPE(SimDomain)
