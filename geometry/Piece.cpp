#include "geometry/Piece.h"

#include "materials/AbstractMaterial.h"

Piece::Piece(const servoce::shape &shape, const QSharedPointer<AbstractMaterial> &material, Scope scope)
    : m_shape(shape)
    , m_material(material)
    , m_scope(scope)
{
}

void Piece::translate(double dx, double dy, double dz)
{
    m_shape = m_shape.translated(dx, dy, dz);
}
