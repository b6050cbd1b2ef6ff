#include "QmlScripting/QmlMaterialProvider.h"

#include "QmlScripting/JSEngine.h"

#include <QDebug>
#include <QtQml>

#include <cmath>

namespace {
// Of the two IronMaterial functions the later one stands: IronMaterial() reaches the
// two-argument slot with undefined arguments.
const char prologue[] =
    "function EmptyMaterial(){return Material.empty();}\n"
    "function GeneralMaterial(){return Material.general();}\n"
    "function IronMaterial(){return Material.iron();}\n"
    "function IronMaterial(fillCoefs, dsomaloy){return Material.iron(fillCoefs, dsomaloy);}\n"
    "function ConductorMaterial(){return Material.conductor();}\n"
    "function WindingMaterial(layer = 0){return Material.winding(layer);}\n"
    "function EndturnMaterial(){return Material.endturn();}\n"
    "function MagnetRadialMaterial(angle = 0, segmentRadiuses = null){return Material.magnetRadial(angle, "
    "segmentRadiuses);}\n"
    "function MagnetParallelMaterial(angle = 0, segmentRadiuses = null, savePoleBorder = true){return "
    "Material.magnetParallel(angle, segmentRadiuses, savePoleBorder);}\n"
    "function CustomMaterial(color = \"red\"){return Material.custom(color);}\n";
} // namespace

QmlMaterialProvider::QmlMaterialProvider(QObject *parent)
    : QObject(parent)
{
    setObjectName(QStringLiteral("QmlMaterialProvider"));
}

void QmlMaterialProvider::initialize(JSEngine *engine)
{
    QmlMaterials::registerTypes();
    qmlRegisterType<QmlMaterialProvider>("QmlMaterialProvider", 1, 0, "QmlMaterialProvider");
    engine->installObject(QStringLiteral("Material"), new QmlMaterialProvider(engine));
    engine->globalObject().setProperty(QStringLiteral("Magnetization"),
                                       engine->newQMetaObject(&Magnetization::staticMetaObject));
    const QJSValue result = engine->evaluate(QString::fromLatin1(prologue), QString(), 1);
    if (result.isError())
        qCritical().noquote() << JSEngine::errorString(result);
}

QmlEmptyMaterial QmlMaterialProvider::empty() const
{
    return {};
}

QmlGeneralMaterial QmlMaterialProvider::general() const
{
    return {};
}

QmlIronMaterial QmlMaterialProvider::iron() const
{
    return {};
}

QmlIronMaterial QmlMaterialProvider::iron(const QVariantList &fillCoefs, double dsomaloy) const
{
    // IronMaterial() of the prologue passes undefined, which arrives as NaN.
    return QmlIronMaterial(doubles(fillCoefs), std::isnan(dsomaloy) ? 0.0 : dsomaloy);
}

QmlConductorMaterial QmlMaterialProvider::conductor() const
{
    return {};
}

QmlWindingMaterial QmlMaterialProvider::winding(int layer) const
{
    return QmlWindingMaterial(layer);
}

QmlWindingMaterial QmlMaterialProvider::winding() const
{
    return QmlWindingMaterial(0);
}

QmlEndturnMaterial QmlMaterialProvider::endturn() const
{
    return {};
}

QmlMagnetParallelMaterial QmlMaterialProvider::magnetParallel(double angle, const QVariantList &segmentRadiuses,
                                                              bool savePoleBorder) const
{
    return QmlMagnetParallelMaterial(angle, doubles(segmentRadiuses), savePoleBorder);
}

QmlMagnetParallelMaterial QmlMaterialProvider::magnetParallel(double angle,
                                                              const QVariantList &segmentRadiuses) const
{
    return QmlMagnetParallelMaterial(angle, doubles(segmentRadiuses));
}

QmlMagnetParallelMaterial QmlMaterialProvider::magnetParallel(double angle) const
{
    return QmlMagnetParallelMaterial(angle);
}

QmlMagnetParallelMaterial QmlMaterialProvider::magnetParallel() const
{
    return QmlMagnetParallelMaterial();
}

QmlMagnetRadialMaterial QmlMaterialProvider::magnetRadial(Magnetization::Direction direction, const QPointF &center,
                                                          const QVariantList &segmentRadiuses) const
{
    return QmlMagnetRadialMaterial(direction, center, doubles(segmentRadiuses));
}

QmlMagnetRadialMaterial QmlMaterialProvider::magnetRadial(Magnetization::Direction direction,
                                                          const QPointF &center) const
{
    return QmlMagnetRadialMaterial(direction, center);
}

QmlMagnetRadialMaterial QmlMaterialProvider::magnetRadial(Magnetization::Direction direction) const
{
    return QmlMagnetRadialMaterial(direction);
}

QmlMagnetRadialMaterial QmlMaterialProvider::magnetRadial() const
{
    return QmlMagnetRadialMaterial();
}

QmlCustomMaterial QmlMaterialProvider::custom(const QColor &color) const
{
    return QmlCustomMaterial(color);
}

QmlCustomMaterial QmlMaterialProvider::custom() const
{
    return QmlCustomMaterial();
}

QVector<double> QmlMaterialProvider::doubles(const QVariantList &list)
{
    QVector<double> values;
    for (const QVariant &member : list) {
        if (member.userType() == QMetaType::Double)
            values.append(member.toDouble());
    }
    return values;
}
