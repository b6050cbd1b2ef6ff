#include "materials/AbstractMaterial.h"

AbstractMaterial::AbstractMaterial(Kind kind)
    : m_kind(kind)
{
}

QString AbstractMaterial::key() const
{
    return materialTypeName(m_kind);
}

QColor AbstractMaterial::color() const
{
    return materialTypeColor(m_kind);
}

QBrush AbstractMaterial::brush() const
{
    return QBrush(color());
}

QString AbstractMaterial::description() const
{
    return materialTypeName(m_kind);
}

bool AbstractMaterial::equals(const AbstractMaterial &other) const
{
    return m_kind == other.m_kind;
}

QString materialTypeName(qint32 kind)
{
    switch (kind) {
    case AbstractMaterial::EmptyKind:
        return AbstractMaterial::tr("Not assigned");
    case AbstractMaterial::GeneralKind:
        return AbstractMaterial::tr("General");
    case AbstractMaterial::IronKind:
        return AbstractMaterial::tr("Iron");
    case AbstractMaterial::MagnetKind:
        return AbstractMaterial::tr("Magnet");
    case AbstractMaterial::WindingKind:
        return AbstractMaterial::tr("Winding");
    case AbstractMaterial::ConductorKind:
        return AbstractMaterial::tr("Conductor");
    case AbstractMaterial::EndturnKind:
        return AbstractMaterial::tr("EndTurn");
    case AbstractMaterial::CustomKind:
        return AbstractMaterial::tr("Custom");
    default:
        return AbstractMaterial::tr("Unknown material type");
    }
}

QColor materialTypeColor(qint32 kind)
{
    switch (kind) {
    case AbstractMaterial::EmptyKind:
        return QColor(245, 245, 245, 0);
    case AbstractMaterial::GeneralKind:
        return QColor(128, 255, 255);
    case AbstractMaterial::IronKind:
        return QColor(213, 221, 224);
    case AbstractMaterial::MagnetKind:
        return QColor(255, 211, 168);
    case AbstractMaterial::WindingKind:
        return QColor(255, 140, 105);
    case AbstractMaterial::ConductorKind:
        return QColor(255, 219, 139);
    case AbstractMaterial::EndturnKind:
        return QColor(255, 161, 110);
    case AbstractMaterial::CustomKind:
        return QColor(128, 128, 128);
    case AbstractMaterial::DummyKind:
        return QColor(153, 153, 204);
    default:
        return QColor(128, 128, 128);
    }
}
