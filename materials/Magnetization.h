#pragma once

#include <QCoreApplication>
#include <QDataStream>
#include <QMetaType>
#include <QPointF>
#include <QString>

// The field pattern of a magnet, a plain value. Scripts reach its enumerations through
// its meta-object (Magnetization.From, Magnetization.CCW, ...).
class Magnetization
{
    Q_GADGET
    Q_DECLARE_TR_FUNCTIONS(Magnetization)
public:
    enum class Type : qint32 {
        Radial = 0,
        Parallel = 1,
        Unknown = -1,
    };
    Q_ENUM(Type)

    // Away from or toward the centre, or about it.
    enum class Direction : qint32 {
        From = 0,
        Toward = 1,
        CW = 2,
        CCW = 3,
        Unknown = -1,
    };
    Q_ENUM(Direction)

    Type type = Type::Unknown;
    Direction direction = Direction::Unknown;
    QPointF center;
    double angle = 0.0; // degrees, of a parallel pattern

    // The angle the field points to: a reversed sense turns it by half a turn.
    double effectiveAngle() const;

    // The type text and, for a radial pattern, sense and centre, for a parallel one the
    // effective angle.
    QString text() const;

    static QString typeText(Type type);
    static QString directionText(Direction direction);

    // Makes "Magnetization" known to QVariant with its stream form and its text, so that
    // stored values can be read back by type name. Safe to call more than once.
    static void registerMetaType();
};

Q_DECLARE_METATYPE(Magnetization)

// Angles and centre compare as their types do, the angle with a relative tolerance of 1e-12.
bool operator==(const Magnetization &a, const Magnetization &b);
bool operator!=(const Magnetization &a, const Magnetization &b);

// Stream order: type, center, direction, angle.
QDataStream &operator<<(QDataStream &out, const Magnetization &magnetization);
QDataStream &operator>>(QDataStream &in, Magnetization &magnetization);

