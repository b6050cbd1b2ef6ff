#pragma once

#include <QMutex>
#include <QPair>
#include <optional>

#include "document/CoreMotorElement.h"
#include "geometry/Piece.h"

class Airgap;
class ScriptConsole;

// One body of the machine, stator or rotor, stacked along the axis. It turns the
// geometry of one slot or pole pitch into the whole body and caches the result.
class MotorItem : public CoreMotorElement
{
    Q_OBJECT
    Q_PROPERTY(double height READ height WRITE setHeight NOTIFY heightChanged)
    Q_PROPERTY(double angularDisplacement READ angularDisplacement WRITE setAngularDisplacement NOTIFY angularDisplacementChanged)

public:
    enum Layer {
        Lower = 1,
        Upper = 2,
    };
    Q_ENUM(Layer)

    explicit MotorItem(Document *document, QObject *parent = nullptr);

    double height() const { return m_height; }
    void setHeight(double height);
    // Degrees, from 0 up to 360.
    double angularDisplacement() const { return m_angularDisplacement; }
    void setAngularDisplacement(double angle);

    // Bottom and top of the body along the axis, the first body starting at z = 0.
    virtual QPair<double, double> range() const = 0;
    double position() const { return range().first; }
    Q_INVOKABLE double posBottom() const { return range().first; }
    Q_INVOKABLE double posTop() const { return range().second; }

    Q_INVOKABLE virtual bool isMiddle() const = 0;

    // The pieces lie with the body's bottom at z = 0; the caller moves them to position().
    bool hasCachedPieces() const;
    void createPieces();
    PieceList cachedPieces() const;
    void clearCashPieces();

signals:
    void heightChanged(double height);
    void angularDisplacementChanged(double angularDisplacement);
    void itemChanged();

protected:
    QPair<double, double> rangeAbove(const Airgap *gapBelow) const;
    // The console of the element that owns the body.
    virtual ScriptConsole *console() const = 0;

private:
    double m_height = 50.0;
    double m_angularDisplacement = 0.0;
    mutable QMutex m_piecesMutex;
    std::optional<PieceList> m_pieces;
};
