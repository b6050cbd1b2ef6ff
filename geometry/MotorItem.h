#pragma once

#include <QDataStream>
#include <QMutex>
#include <QPair>
#include <optional>

#include "document/CoreMotorElement.h"
#include "geometry/Piece.h"

class Airgap;
class MotorElement;

// One body of the machine, stator or rotor, stacked along the axis. It turns the
// geometry of one slot or pole pitch into the whole body and caches the result.
class MotorItem : public CoreMotorElement
{
    Q_OBJECT
    Q_PROPERTY(double height READ height WRITE setHeight NOTIFY heightChanged)
    Q_PROPERTY(double angularDisplacement READ angularDisplacement WRITE setAngularDisplacement NOTIFY angularDisplacementChanged)
    Q_PROPERTY(ID id READ id CONSTANT)

public:
    enum Layer {
        Lower = 1,
        Upper = 2,
    };
    Q_ENUM(Layer)

    enum ID {
        Empty = 0,
        ID1 = 1,
        ID2 = 2,
        ID3 = 3,
    };
    Q_ENUM(ID)

    ID id() const { return m_id; }

    double height() const { return m_height; }
    void setHeight(double height);
    // Degrees, from 0 up to 360.
    double angularDisplacement() const { return m_angularDisplacement; }
    void setAngularDisplacement(double angle);

    // Bottom and top of the body along the axis, the first body starting at z = 0.
    QPair<double, double> range() const;
    double position() const { return range().first; }
    Q_INVOKABLE double posBottom() const { return range().first; }
    Q_INVOKABLE double posTop() const { return range().second; }

    Q_INVOKABLE virtual bool isUpper() const = 0;
    Q_INVOKABLE virtual bool isMiddle() const = 0;
    Q_INVOKABLE virtual bool isLower() const = 0;

    // The pieces lie with the body's bottom at z = 0; the caller moves them to position().
    bool hasCachedPieces() const;
    void createPieces();
    PieceList cachedPieces() const;
    // The block of a document file; false for a block of a newer program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

    void clearCashPieces();

signals:
    void heightChanged(double height);
    void angularDisplacementChanged(double angularDisplacement);
    void itemChanged();

protected:
    // Named after the element: "statorItem1" and so on.
    MotorItem(MotorElement *element, ID id);

    MotorElement *element() const { return m_element; }
    // The gap on the body's lower face; none for the lowest body of the stack.
    virtual Airgap *gapBelow() const = 0;

private:
    MotorElement *m_element;
    ID m_id;
    double m_height = 50.0;
    double m_angularDisplacement = 0.0;
    mutable QMutex m_piecesMutex;
    std::optional<PieceList> m_pieces;
};
