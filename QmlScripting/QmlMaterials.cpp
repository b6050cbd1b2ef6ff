#include "QmlScripting/QmlMaterials.h"

namespace QmlMaterials {

void registerTypes()
{
    qRegisterMetaType<Magnetization::Direction>("Magnetization::Direction");
    qRegisterMetaType<QmlEmptyMaterial>("QmlEmptyMaterial");
    qRegisterMetaType<QmlGeneralMaterial>("QmlGeneralMaterial");
    qRegisterMetaType<QmlIronMaterial>("QmlIronMaterial");
    qRegisterMetaType<QmlConductorMaterial>("QmlConductorMaterial");
    qRegisterMetaType<QmlWindingMaterial>("QmlWindingMaterial");
    qRegisterMetaType<QmlEndturnMaterial>("QmlEndturnMaterial");
    qRegisterMetaType<QmlMagnetParallelMaterial>("QmlMagnetParallelMaterial");
    qRegisterMetaType<QmlMagnetRadialMaterial>("QmlMagnetRadialMaterial");
    qRegisterMetaType<QmlCustomMaterial>("QmlCustomMaterial");
}

namespace {
template <typename Material>
const AbstractMaterial *held(const QVariant &value)
{
    if (value.userType() != qMetaTypeId<Material>())
        return nullptr;
    return static_cast<const Material *>(value.constData());
}
} // namespace

const AbstractMaterial *pieceMaterial(const QVariant &value)
{
    for (const auto material :
         {held<QmlGeneralMaterial>(value), held<QmlIronMaterial>(value), held<QmlWindingMaterial>(value),
          held<QmlEndturnMaterial>(value), held<QmlMagnetParallelMaterial>(value),
          held<QmlMagnetRadialMaterial>(value), held<QmlConductorMaterial>(value), held<QmlCustomMaterial>(value)}) {
        if (material)
            return material;
    }
    return nullptr;
}

} // namespace QmlMaterials
