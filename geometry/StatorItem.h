#pragma once

#include "geometry/MotorItem.h"

class Stator;

// A stator body: one slot pitch of the stator's script replicated over all slots.
class StatorItem : public MotorItem
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

    StatorItem(Stator *stator, ID id);

    ID id() const { return m_id; }
    Stator *stator() const { return m_stator; }

    QPair<double, double> range() const override;

    Q_INVOKABLE bool isUpper() const;
    Q_INVOKABLE bool isMiddle() const override;
    Q_INVOKABLE bool isLower() const;

signals:
    void areaWindingSlotChanged();

protected:
    ScriptConsole *console() const override;

private:
    Stator *m_stator;
    ID m_id;
};
