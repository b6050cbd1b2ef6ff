#pragma once

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QVariantList>

#include "QmlScripting/QmlMaterials.h"

class JSEngine;

// The object scripts reach as `Material`: it makes the roles of bodies. Scripts
// write the prologue's functions (IronMaterial(), WindingMaterial(1), ...) rather
// than these slots. It holds no widgets, so scripts may call it on any thread.
class QmlMaterialProvider : public QObject
{
    Q_OBJECT
public:
    explicit QmlMaterialProvider(QObject *parent = nullptr);

    // Installs the one provider of the engine as `Material`, `Magnetization` with its
    // enumerations, and the prologue's functions.
    static void initialize(JSEngine *engine);

public slots:
    QmlEmptyMaterial empty() const;
    QmlGeneralMaterial general() const;
    QmlIronMaterial iron() const;
    QmlIronMaterial iron(const QVariantList &fillCoefs, double dsomaloy) const;
    QmlConductorMaterial conductor() const;
    QmlWindingMaterial winding(int layer) const;
    QmlWindingMaterial winding() const;
    QmlEndturnMaterial endturn() const;
    QmlMagnetParallelMaterial magnetParallel(double angle, const QVariantList &segmentRadiuses,
                                             bool savePoleBorder) const;
    QmlMagnetParallelMaterial magnetParallel(double angle, const QVariantList &segmentRadiuses) const;
    QmlMagnetParallelMaterial magnetParallel(double angle) const;
    QmlMagnetParallelMaterial magnetParallel() const;
    QmlMagnetRadialMaterial magnetRadial(Magnetization::Direction direction, const QPointF &center,
                                         const QVariantList &segmentRadiuses) const;
    QmlMagnetRadialMaterial magnetRadial(Magnetization::Direction direction, const QPointF &center) const;
    QmlMagnetRadialMaterial magnetRadial(Magnetization::Direction direction) const;
    QmlMagnetRadialMaterial magnetRadial() const;
    QmlCustomMaterial custom(const QColor &color) const;
    QmlCustomMaterial custom() const;

private:
    // Only members held as doubles count: a number the engine keeps as an integer
    // is passed over.
    static QVector<double> doubles(const QVariantList &list);
};
