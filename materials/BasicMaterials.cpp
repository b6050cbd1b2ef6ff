#include "materials/BasicMaterials.h"

namespace {

const AbstractMaterial::Record emptyRecord{"EmptyMaterial", 1, &AbstractMaterial::createDefault<EmptyMaterial>};
const AbstractMaterial::Registration emptyRegistration(emptyRecord);

const AbstractMaterial::Record generalRecord{"GeneralMaterial", 1, &AbstractMaterial::createDefault<GeneralMaterial>};
const AbstractMaterial::Registration generalRegistration(generalRecord);

const AbstractMaterial::Record conductorRecord{"ConductorMaterial", 1, &AbstractMaterial::createDefault<ConductorMaterial>};
const AbstractMaterial::Registration conductorRegistration(conductorRecord);

const AbstractMaterial::Record dummyRecord{"DummyMaterial", 1, &AbstractMaterial::createDefault<DummyMaterial>};
const AbstractMaterial::Registration dummyRegistration(dummyRecord);

const AbstractMaterial::Record customRecord{"CustomMaterial", 1, &AbstractMaterial::createDefault<CustomMaterial>};
const AbstractMaterial::Registration customRegistration(customRecord);

const AbstractMaterial::Record ironRecord{"IronMaterial", 1, &AbstractMaterial::createDefault<IronMaterial>};
const AbstractMaterial::Registration ironRegistration(ironRecord);

} // namespace

EmptyMaterial::EmptyMaterial()
    : AbstractMaterial(EmptyKind)
{
}

const AbstractMaterial::Record &EmptyMaterial::persistenceKey() const
{
    return emptyRecord;
}

QSharedPointer<AbstractMaterial> EmptyMaterial::clone() const
{
    return QSharedPointer<EmptyMaterial>::create(*this);
}

GeneralMaterial::GeneralMaterial()
    : AbstractMaterial(GeneralKind)
{
}

const AbstractMaterial::Record &GeneralMaterial::persistenceKey() const
{
    return generalRecord;
}

QSharedPointer<AbstractMaterial> GeneralMaterial::clone() const
{
    return QSharedPointer<GeneralMaterial>::create(*this);
}

ConductorMaterial::ConductorMaterial()
    : AbstractMaterial(ConductorKind)
{
}

const AbstractMaterial::Record &ConductorMaterial::persistenceKey() const
{
    return conductorRecord;
}

QSharedPointer<AbstractMaterial> ConductorMaterial::clone() const
{
    return QSharedPointer<ConductorMaterial>::create(*this);
}

bool ConductorMaterial::equals(const AbstractMaterial &other) const
{
    return AbstractMaterial::equals(other) && dynamic_cast<const ConductorMaterial *>(&other);
}

DummyMaterial::DummyMaterial()
    : AbstractMaterial(DummyKind)
{
}

const AbstractMaterial::Record &DummyMaterial::persistenceKey() const
{
    return dummyRecord;
}

QSharedPointer<AbstractMaterial> DummyMaterial::clone() const
{
    return QSharedPointer<DummyMaterial>::create(*this);
}

CustomMaterial::CustomMaterial(const QColor &color)
    : AbstractMaterial(CustomKind)
    , m_color(color)
{
}

const AbstractMaterial::Record &CustomMaterial::persistenceKey() const
{
    return customRecord;
}

QSharedPointer<AbstractMaterial> CustomMaterial::clone() const
{
    return QSharedPointer<CustomMaterial>::create(*this);
}

QString CustomMaterial::key() const
{
    return QStringLiteral("%1_%2").arg(materialTypeName(kind()), m_color.name());
}

QColor CustomMaterial::color() const
{
    return m_color;
}

QString CustomMaterial::description() const
{
    return tr("%1, color %2").arg(materialTypeName(kind()), m_color.name());
}

bool CustomMaterial::equals(const AbstractMaterial &other) const
{
    const auto *custom = dynamic_cast<const CustomMaterial *>(&other);
    return custom && AbstractMaterial::equals(other) && custom->m_color == m_color;
}

IronMaterial::IronMaterial()
    : AbstractMaterial(IronKind)
{
}

IronMaterial::IronMaterial(const QVector<double> &fillCoefs, double dsomaloy)
    : AbstractMaterial(IronKind)
    , m_fillCoefs(fillCoefs)
    , m_dsomaloy(dsomaloy)
{
}

const AbstractMaterial::Record &IronMaterial::persistenceKey() const
{
    return ironRecord;
}

QSharedPointer<AbstractMaterial> IronMaterial::clone() const
{
    return QSharedPointer<IronMaterial>::create(*this);
}
