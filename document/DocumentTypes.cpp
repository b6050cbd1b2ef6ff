#include "document/DocumentTypes.h"

#include <QMetaType>
#include <mutex>

#include "QmlScripting/JSEngine.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/CoreMotorElement.h"
#include "document/Document.h"
#include "geometry/MotorElement.h"
#include "geometry/PoleArrangement.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "materials/Magnetization.h"
#include "winding/Winding.h"
#include "winding/WindingObject.h"

namespace {

template <typename T>
void registerAsInt(const char *name)
{
    qRegisterMetaType<T>(name);
    qRegisterMetaTypeStreamOperators<T>(name);
}

} // namespace

void registerDocumentTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        registerAsInt<Document::BoundaryConditionMode>("Document::BoundaryConditionMode");
        registerAsInt<Document::BoundaryCondition>("Document::BoundaryCondition");
        registerAsInt<GeometryErrors>("GeometryErrors");
        registerAsInt<MaterialErrors>("MaterialErrors");
        registerAsInt<WindingErrors>("WindingErrors");
        registerAsInt<MeshErrors>("MeshErrors");
        qRegisterMetaType<Machine::Type>("Machine::Type");
        qRegisterMetaType<Machine::Type>("Document::MachineType");
        qRegisterMetaType<MotorElement::MiddleType>("MotorElement::MiddleType");
        qRegisterMetaType<PoleArrangement::Type>("PoleArrangement::Type");
        // Scripts get bodies from their element.
        qRegisterMetaType<MotorItem *>("MotorItem*");
        qRegisterMetaType<MotorItem::ID>("MotorItem::ID");
        Magnetization::registerMetaType();
        registerWindingTypes();
        registerAnalysisTypes();
        // Scripts write the enumerators of the design's classes by class name.
        JSEngine::exposeClass(QStringLiteral("Motor"), &Document::staticMetaObject);
        JSEngine::exposeClass(QStringLiteral("Rotor"), &Rotor::staticMetaObject);
        JSEngine::exposeClass(QStringLiteral("RotorItem"), &RotorItem::staticMetaObject);
        JSEngine::exposeClass(QStringLiteral("Stator"), &Stator::staticMetaObject);
        JSEngine::exposeClass(QStringLiteral("StatorItem"), &StatorItem::staticMetaObject);
        JSEngine::exposeClass(QStringLiteral("WindingObject"), &WindingObject::staticMetaObject);
    });
}
