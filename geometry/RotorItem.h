#pragma once

#include "geometry/MotorItem.h"

class Rotor;

// A rotor body: one pole pitch of the rotor's script replicated over all poles.
class RotorItem : public MotorItem
{
    Q_OBJECT
    Q_PROPERTY(ID id READ id CONSTANT)

public:
    enum ID {
        Empty = 0,
        ID1 = 1,
        ID2 = 2,
        ID3 = 3,
    };
    Q_ENUM(ID)

    RotorItem(Rotor *rotor, ID id);

    ID id() const { return m_id; }
    Rotor *rotor() const { return m_rotor; }

    QPair<double, double> range() const override;

    Q_INVOKABLE bool isUpper() const;
    Q_INVOKABLE bool isMiddle() const override;
    Q_INVOKABLE bool isLower() const;

protected:
    ScriptConsole *console() const override;

private:
    Rotor *m_rotor;
    ID m_id;
};
