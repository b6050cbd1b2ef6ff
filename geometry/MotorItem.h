#pragma once

#include <QDataStream>
#include <mutex>
#include <QPair>
#include <optional>

#include "document/CoreMotorElement.h"
#include "geometry/BodyPieces.h"
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
    // Without a loaded script, with diameters in the wrong order or without the
    // configuration a body has no pieces.
    bool hasCachedPieces() const;
    void createPieces();
    PieceList cachedPieces() const;
    // The script's pitch, prepared: what the whole body is made of.
    PieceList basePieces();
    // Where the pieces of the pitch meet each other or leave its sector; found with the pitch.
    QVector<servoce::shape> overlapShapes() const;
    // This body's angular displacement less the smallest one of the element's bodies, degrees.
    double relativeDisplacement() const;
    // Stator1 to Stator3 or Rotor1 to Rotor3 by the id.
    Piece::Scope scope() const;
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
    virtual Piece::Scope firstScope() const = 0;
    // Degrees of one slot or pole pitch.
    virtual double pitch() const = 0;
    // Whether the body may take the first body's pitch, when its height is the same.
    virtual bool reusesFirstDrawing() const = 0;
    // The script's result for this body, read by the element.
    virtual QVariantMap scriptGeometry() const = 0;
    // The pieces of the result, ready to be placed.
    virtual PieceList prepared(PieceList pieces) const = 0;
    // The whole body from the prepared pitch.
    virtual PieceList builtBody(const PieceList &base) = 0;
    // Where the pitch goes in the stack, with the body's rules for middle bodies.
    BodyPieces::Placement placement(bool withDisplacement) const;

private:
    MotorElement *m_element;
    ID m_id;
    double m_height = 50.0;
    double m_angularDisplacement = 0.0;
    bool canHavePieces() const;

    mutable std::mutex m_piecesMutex;
    std::optional<PieceList> m_pieces;
    mutable std::mutex m_baseMutex;
    std::optional<PieceList> m_basePieces;
    QVector<servoce::shape> m_overlaps;
};
