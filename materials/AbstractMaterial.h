#pragma once

#include <QBrush>
#include <QColor>
#include <QCoreApplication>
#include <QPixmap>
#include <QString>

#include "materials/QPersistence.h"

class QPainter;
class QPainterPath;
class QRectF;

// The role of a body in the machine. Which catalogue material fills the role is kept
// apart, by the stator and the rotor, so that one geometry serves every choice of
// material. Bodies share their material object through a QSharedPointer; a derived
// role is reached with a dynamic cast.
class AbstractMaterial : public QPersistence<AbstractMaterial>
{
    Q_DECLARE_TR_FUNCTIONS(AbstractMaterial)
public:
    enum Kind : qint32 {
        EmptyKind = 0,
        GeneralKind = 1,
        IronKind = 2,
        MagnetKind = 3,
        WindingKind = 4,
        ConductorKind = 5,
        EndturnKind = 6,
        CustomKind = 7,
        DummyKind = 8,
    };

    Kind kind() const { return m_kind; }

    // Bodies with the same key are grouped as one material.
    virtual QString key() const;
    virtual QColor color() const;
    virtual QBrush brush() const;
    // Paints a body of this role. Path and clipRect are in the painter's coordinates,
    // the section plane with its y axis up; scale is the view's pixels per unit.
    virtual void draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
                      bool noOutline) const;
    virtual QString description() const;
    virtual bool equals(const AbstractMaterial &other) const;

protected:
    explicit AbstractMaterial(Kind kind);
    AbstractMaterial(const AbstractMaterial &) = default;
    AbstractMaterial &operator=(const AbstractMaterial &) = default;

private:
    Kind m_kind;
};

// Text and default colour of a kind; any other value is an unknown kind.
QString materialTypeName(qint32 kind);
QColor materialTypeColor(qint32 kind);

// A round swatch of the role with the first letter of its kind, cached per kind and size.
QPixmap pixmapOf(const AbstractMaterial &material, int size);
