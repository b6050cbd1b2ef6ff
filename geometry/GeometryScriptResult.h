#pragma once

#include <QCoreApplication>
#include <QJSValue>
#include <QVariantMap>
#include <functional>

// Reads what a body script's getGeometry returned into the program's terms: a map
// with the keys "pieces" (a PieceList), "simDomain" (a SimDomain),
// "simRadialOuterDomain" (double), "coefs3D" and "Nmagnetsegments" as they came.
// A script may answer with a shape, a piece, an array of them or an object with
// those keys; whatever does not fit is reported and passed over, so that the rest
// of a result still counts.
class GeometryScriptResult
{
    Q_DECLARE_TR_FUNCTIONS(GeometryScriptResult)
public:
    using Report = std::function<void(const QString &message)>;

    explicit GeometryScriptResult(Report report);

    QVariantMap read(const QJSValue &result) const;

private:
    QVariantMap readObject(const QJSValue &object) const;
    QVariant readPieces(const QJSValue &array) const;
    QVariant readShapesAndPieces(const QJSValue &array) const;
    bool readSimDomain(const QJSValue &value, QVariant &simDomain) const;

    Report m_report;
};
