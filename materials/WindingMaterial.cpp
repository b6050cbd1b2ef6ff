#include "materials/WindingMaterial.h"

namespace {

const AbstractMaterial::Record windingRecord{"WindingMaterial", 1, &AbstractMaterial::createDefault<WindingMaterial>};
const AbstractMaterial::Registration windingRegistration(windingRecord);

const AbstractMaterial::Record endturnRecord{"EndturnMaterial", 1, &AbstractMaterial::createDefault<EndturnMaterial>};
const AbstractMaterial::Registration endturnRegistration(endturnRecord);

// Phases are named by one letter of "ABC", as the winding names them.
QString phaseName(int phase)
{
    const QString names = QStringLiteral("ABC");
    return phase >= 0 && phase < names.size() ? QString(names.at(phase)) : QString();
}

} // namespace

WindingMaterial::WindingMaterial(int layer)
    : AbstractMaterial(WindingKind)
    , m_layer(layer)
{
}

const AbstractMaterial::Record &WindingMaterial::persistenceKey() const
{
    return windingRecord;
}

void WindingMaterial::save(QDataStream &out) const
{
    out << qint32(m_layer);
}

void WindingMaterial::load(QDataStream &in)
{
    qint32 layer = 0;
    in >> layer;
    m_layer = layer;
}

QSharedPointer<AbstractMaterial> WindingMaterial::clone() const
{
    return QSharedPointer<WindingMaterial>::create(*this);
}

QColor WindingMaterial::color() const
{
    if (m_layer < 0)
        return QColor(253, 124, 110);
    if (m_layer == 0)
        return QColor(255, 130, 105);
    if (m_layer % 2 == 1)
        return QColor(255, 180, 105);
    return QColor(230, 255, 105);
}

QString WindingMaterial::description() const
{
    return tr("%1, layer %2, slot %3, layout %4")
        .arg(materialTypeName(kind()), layerName())
        .arg(m_slot)
        .arg(m_layout);
}

bool WindingMaterial::equals(const AbstractMaterial &other) const
{
    const auto *winding = dynamic_cast<const WindingMaterial *>(&other);
    return winding && AbstractMaterial::equals(other) && winding->m_layer == m_layer
        && winding->m_slot == m_slot && winding->m_layout == m_layout;
}

QString WindingMaterial::layerName() const
{
    return m_layer == -1 ? tr("None") : QString::number(m_layer);
}

EndturnMaterial::EndturnMaterial(int phase, int layout)
    : AbstractMaterial(EndturnKind)
    , m_phase(phase)
    , m_layout(layout)
{
}

const AbstractMaterial::Record &EndturnMaterial::persistenceKey() const
{
    return endturnRecord;
}

QSharedPointer<AbstractMaterial> EndturnMaterial::clone() const
{
    return QSharedPointer<EndturnMaterial>::create(*this);
}

QString EndturnMaterial::description() const
{
    if (m_layout < 1)
        return materialTypeName(kind());
    return tr("%1, phase %2, layout %3")
        .arg(materialTypeName(kind()), phaseName(m_phase))
        .arg(m_layout);
}

bool EndturnMaterial::equals(const AbstractMaterial &other) const
{
    const auto *endturn = dynamic_cast<const EndturnMaterial *>(&other);
    return endturn && AbstractMaterial::equals(other) && endturn->m_phase == m_phase
        && endturn->m_layout == m_layout;
}
