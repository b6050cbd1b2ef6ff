#include "geometry/GeometryScriptResult.h"

#include <QJSValueIterator>

#include "QmlScripting/QmlShape.h"
#include "geometry/Piece.h"
#include "geometry/SimDomain.h"
#include "materials/BasicMaterials.h"

namespace {

bool holds(const QVariant &value, int type)
{
    return value.userType() == type;
}

QString typeNameOf(const QVariant &value)
{
    return QLatin1String(value.isValid() ? value.typeName() : "undefined");
}

QVariant piecesValue(const PieceList &pieces)
{
    return QVariant::fromValue(pieces);
}

} // namespace

GeometryScriptResult::GeometryScriptResult(Report report)
    : m_report(std::move(report))
{
}

QVariantMap GeometryScriptResult::read(const QJSValue &result) const
{
    const QVariant value = result.toVariant();
    if (holds(value, qMetaTypeId<QmlShape>())) {
        const QmlShape shape = value.value<QmlShape>();
        if (shape.is_empty()) {
            m_report(tr("Function 'getGeometry' returned empty shape"));
            return {};
        }
        return {{QStringLiteral("pieces"), piecesValue({Piece(shape, QSharedPointer<EmptyMaterial>::create())})}};
    }
    if (holds(value, qMetaTypeId<Piece>())) {
        const Piece piece = value.value<Piece>();
        if (piece.shape().is_empty()) {
            m_report(tr("Function getGeometry return piece with empty shape"));
            return {};
        }
        return {{QStringLiteral("pieces"), piecesValue({piece})}};
    }
    if (result.isArray())
        return {{QStringLiteral("pieces"), readShapesAndPieces(result)}};
    if (result.isObject() && !result.isVariant() && !result.isQObject() && !result.isCallable())
        return readObject(result);
    m_report(tr("Function 'getGeometry' returned unsupported type: %1").arg(typeNameOf(value)));
    return {};
}

QVariantMap GeometryScriptResult::readObject(const QJSValue &object) const
{
    QVariantMap map;
    QJSValueIterator it(object);
    while (it.hasNext()) {
        it.next();
        const QString key = it.name();
        const QJSValue value = it.value();
        if (key == QLatin1String("pieces")) {
            map.insert(key, readPieces(value));
        } else if (key == QLatin1String("simDomain")) {
            QVariant simDomain;
            if (readSimDomain(value, simDomain))
                map.insert(key, simDomain);
        } else if (key == QLatin1String("simRadialOuterDomain")) {
            map.insert(key, value.toNumber());
        } else if (key == QLatin1String("coefs3D") || key == QLatin1String("Nmagnetsegments")) {
            map.insert(key, value.toVariant());
        } else {
            m_report(tr("Function 'getGeometry' returned unsupported variable: %1").arg(key));
        }
    }
    return map;
}

QVariant GeometryScriptResult::readPieces(const QJSValue &array) const
{
    PieceList pieces;
    const int length = array.property(QStringLiteral("length")).toInt();
    for (int i = 0; i < length; ++i) {
        const QVariant member = array.property(quint32(i)).toVariant();
        if (!holds(member, qMetaTypeId<Piece>())) {
            m_report(tr("Function 'getGeometry' returned unsupported type: %1").arg(typeNameOf(member)));
            continue;
        }
        const Piece piece = member.value<Piece>();
        if (piece.shape().is_empty()) {
            m_report(tr("Function 'getGeometry' returned piece with empty shape"));
            continue;
        }
        pieces.append(piece);
    }
    return piecesValue(pieces);
}

QVariant GeometryScriptResult::readShapesAndPieces(const QJSValue &array) const
{
    PieceList pieces;
    const int length = array.property(QStringLiteral("length")).toInt();
    for (int i = 0; i < length; ++i) {
        const QVariant member = array.property(quint32(i)).toVariant();
        if (holds(member, qMetaTypeId<QmlShape>())) {
            const QmlShape shape = member.value<QmlShape>();
            if (shape.is_empty())
                m_report(tr("Function 'getGeometry' returned empty shape"));
            else
                pieces.append(Piece(shape, QSharedPointer<DummyMaterial>::create()));
        } else if (holds(member, qMetaTypeId<Piece>())) {
            const Piece piece = member.value<Piece>();
            if (piece.shape().is_empty())
                m_report(tr("Function 'getGeometry' returned piece with empty shape"));
            else
                pieces.append(piece);
        } else {
            m_report(tr("Function 'getGeometry' returned array of an unsupported type: %1").arg(typeNameOf(member)));
        }
    }
    return piecesValue(pieces);
}

bool GeometryScriptResult::readSimDomain(const QJSValue &value, QVariant &simDomain) const
{
    for (const char *field : {"inner", "outer"}) {
        if (!value.hasProperty(QLatin1String(field))) {
            m_report(tr("'simDomain' must contain field '%1'").arg(QLatin1String(field)));
            return false;
        }
    }
    SimDomain domain;
    domain.inner = value.property(QStringLiteral("inner")).toNumber();
    domain.outer = value.property(QStringLiteral("outer")).toNumber();
    simDomain = QVariant::fromValue(domain);
    return true;
}
