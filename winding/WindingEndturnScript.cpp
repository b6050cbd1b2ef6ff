// The end-turn script of a winding: reading it into an engine of the winding's own,
// asking it for the paths of the coil ends and checking what it gives back.

#include "winding/WindingObject.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlShape.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "geometry/servoce/curve.h"

namespace {

const QString pathFunction = QStringLiteral("calcEndturnPaths");

QmlPoint3 scriptPoint(const Winding::Point3 &point)
{
    return QmlPoint3(servoce::point3(point.x, point.y, point.z));
}

Winding::Point3 plainPoint(const servoce::point3 &point)
{
    return {point.x, point.y, point.z};
}

QString pointText(const servoce::point3 &point)
{
    return QStringLiteral("(%1, %2, %3)").arg(point.x).arg(point.y).arg(point.z);
}

QString pointText(const Winding::Point3 &point)
{
    return pointText(servoce::point3(point.x, point.y, point.z));
}

// The texts of the two radii differ only in the word, and in one verb of old.
struct PathTexts
{
    QString emptyPath;
    QString zeroLength;
    QString noEdges;
    QString noRange;
    QString emptyRange;
    QString begin;
    QString end;
    QString missingField;
};

const PathTexts &textsOf(Winding::EndturnKind kind)
{
    static const PathTexts inner{
        QStringLiteral("Layout #%1, innerPath is empty"),
        QStringLiteral("Inner endturn path: %1 %2 contains item with zero length"),
        QStringLiteral("inner wire, edges is empty"),
        QStringLiteral("inner wire: firstParameter == lastParameter)"),
        QStringLiteral("Layout #%1, %2, for inner endturn the path is empty"),
        QStringLiteral("Layout #%1, %2, for inner endturn the begin of path: %3 must equal the center of slot: %4"),
        QStringLiteral("Layout #%1, %2, for inner endturn the end of path: %3 must equal the center of slot: %4"),
        QStringLiteral("The function '%1' must return an array of objects with field 'innerPath'"),
    };
    static const PathTexts outer{
        QStringLiteral("Layout #%1, outerPath is empty"),
        QStringLiteral("Outer endturn path: %1 %2 contain item with zero length"),
        QStringLiteral("outer wire, edges is empty"),
        QStringLiteral("outer wire: firstParameter == lastParameter)"),
        QStringLiteral("Layout #%1, %2, for outer endturn the path is empty"),
        QStringLiteral("Layout #%1, %2, for outer endturn the begin of path: %3 must equal the center of slot: %4"),
        QStringLiteral("Layout #%1, %2, for outer endturn the end of path: %3 must equal the center of slot: %4"),
        QStringLiteral("The function '%1' must return an array of objects with field 'outerPath'"),
    };
    return kind == Winding::EndturnKind::Inner ? inner : outer;
}

} // namespace

QString WindingObject::endturnsScriptPath() const
{
    return QDir::toNativeSeparators(ScriptDescribeList::endturns().folder() + QLatin1Char('/') + m_endturnsScript);
}

void WindingObject::endturnScriptFailure(const QString &message) const
{
    qCritical().noquote() << "Error:" << message;
    m_console->error(message);
}

bool WindingObject::loadEndturnScript()
{
    // A fresh engine: nothing of an earlier script may linger in its globals.
    m_scriptLoaded = false;
    m_engine = std::make_unique<JSEngine>(document(), nullptr);
    m_engine->installObject(QStringLiteral("console"), m_console);
    connect(m_engine.get(), &QQmlEngine::warnings, this, [this](const QList<QQmlError> &errors) {
        for (const QQmlError &error : errors)
            endturnScriptFailure(error.toString());
    });
    const QString path = endturnsScriptPath();
    QFile file(path);
    if (!file.exists()) {
        endturnScriptFailure(tr("File %1 does not exist").arg(path));
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        endturnScriptFailure(tr("Can't open file %1 for reading").arg(path));
        return false;
    }
    QJSValue global = m_engine->globalObject();
    global.setProperty(QStringLiteral("scriptFile"), path);
    global.setProperty(QStringLiteral("includeBasePath"), QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    QJSValue result;
    {
        const QScopedValueRollback<bool> running(m_scriptRunning, true);
        result = m_engine->evaluate(QString::fromUtf8(file.readAll()), path, 1);
    }
    if (result.isError()) {
        endturnScriptFailure(JSEngine::errorString(result));
        return false;
    }
    m_scriptLoaded = true;
    return true;
}

QJSValue WindingObject::endturnsToScript(const QVector<Winding::Endturns> &coils) const
{
    auto side = [this](const Winding::CoilSide &coilSide) {
        QJSValue value = m_engine->newObject();
        value.setProperty(QStringLiteral("slot"), coilSide.slot + 1);
        value.setProperty(QStringLiteral("layer"), coilSide.layer + 1);
        value.setProperty(QStringLiteral("center"), m_engine->toScriptValue(scriptPoint(coilSide.center)));
        value.setProperty(QStringLiteral("profile"),
                          m_engine->toScriptValue(QmlShape(coilSide.profile, m_engine.get())));
        return value;
    };
    auto end = [this, &side](const Winding::Endturn &endturn) {
        QJSValue value = m_engine->newObject();
        value.setProperty(QStringLiteral("dir"), int(endturn.dir));
        value.setProperty(QStringLiteral("begin"), side(endturn.begin));
        value.setProperty(QStringLiteral("end"), side(endturn.end));
        return value;
    };
    QJSValue array = m_engine->newArray(uint(coils.size()));
    for (int index = 0; index < coils.size(); ++index) {
        QJSValue coil = m_engine->newObject();
        coil.setProperty(QStringLiteral("outer"), end(coils.at(index).outer));
        coil.setProperty(QStringLiteral("inner"), end(coils.at(index).inner));
        array.setProperty(quint32(index), coil);
    }
    return array;
}

bool WindingObject::calcEndturnPaths(int layoutNumber, double innerRadius, double outerRadius,
                                     QVector<Winding::Endturns> &coils)
{
    if (!m_engine || !m_scriptLoaded)
        return false;
    const QJSValue function = m_engine->globalObject().property(pathFunction);
    if (function.isUndefined()) {
        endturnScriptFailure(tr("Not found function '%1'").arg(pathFunction));
        return false;
    }
    if (function.property(QStringLiteral("length")).toInt() != 7) {
        endturnScriptFailure(tr("The function '%1' must has 7 arguments").arg(pathFunction));
        return false;
    }
    const QJSValue endturns = endturnsToScript(coils);
    m_console->log(QStringLiteral(">>> call %1(%2, %3, %4, %5, endturns[%6])")
                       .arg(pathFunction)
                       .arg(m_widthWindingCoil)
                       .arg(m_heightWindingCoil)
                       .arg(innerRadius)
                       .arg(outerRadius)
                       .arg(coils.size()));
    QJSValue result;
    {
        const QScopedValueRollback<bool> running(m_scriptRunning, true);
        result = QJSValue(function).call({m_widthWindingCoil, m_heightWindingCoil, innerRadius, outerRadius, endturns,
                                          m_autoCalcOverhangEndturns && m_generateShapes, m_generateShapes});
    }
    if (result.isError()) {
        m_console->error(QStringLiteral(">>> %1 completed with error").arg(pathFunction));
        endturnScriptFailure(JSEngine::errorString(result));
        return false;
    }
    m_console->log(QStringLiteral(">>> %1 completed").arg(pathFunction));

    if (!result.isObject() || result.isArray()) {
        endturnScriptFailure(tr("The function '%1' must return an object").arg(pathFunction));
        return false;
    }
    const QJSValue paths = result.property(QStringLiteral("paths"));
    if (paths.isUndefined()) {
        endturnScriptFailure(tr("The function '%1' must return the object with field 'paths'").arg(pathFunction));
        return false;
    }
    const int count = paths.property(QStringLiteral("length")).toInt();
    if (!paths.isArray() || count != coils.size()) {
        endturnScriptFailure(tr("The function '%1' must return the array of objects { innerPath, outerPath } with "
                                "the size(%2) equals the size(%3) of the array of endturns")
                                 .arg(pathFunction)
                                 .arg(count)
                                 .arg(coils.size()));
        return false;
    }

    WindingErrors errors = m_windingErrors;
    bool complete = true;
    for (int index = 0; index < coils.size(); ++index) {
        const QJSValue item = paths.property(quint32(index));
        Winding::Endturns &coil = coils[index];
        if (!item.isObject()) {
            endturnScriptFailure(
                tr("The function '%1' must return an array of objects { innerPath, outerPath }").arg(pathFunction));
            complete = false;
            continue;
        }
        const struct
        {
            const char *field;
            Winding::Endturn &endturn;
            CoreMotorElement::WindingError bit;
        } ends[] = {{"innerPath", coil.inner, CoreMotorElement::InnerFilaments},
                    {"outerPath", coil.outer, CoreMotorElement::OuterFilaments}};
        for (const auto &end : ends) {
            const QJSValue path = item.property(QLatin1String(end.field));
            if (path.isUndefined()) {
                endturnScriptFailure(textsOf(end.endturn.kind).missingField.arg(pathFunction));
                complete = false;
                continue;
            }
            const bool faultless =
                takePath(layoutNumber, coil.phase, QmlShape::fromVariant(path.toVariant()), end.endturn);
            errors.setFlag(end.bit, !faultless);
            complete = complete && !end.endturn.path.is_null();
        }
    }
    errors.setFlag(CoreMotorElement::EndWindingFailed, !complete);
    if (errors != m_windingErrors) {
        m_windingErrors = errors;
        emit windingErrorsChanged();
    }
    return complete;
}

bool WindingObject::takePath(int layoutNumber, Winding::Phase phase, const servoce::shape &path,
                             Winding::Endturn &endturn) const
{
    const PathTexts &texts = textsOf(endturn.kind);
    const QString heading = Winding::endturnHeading(phase, endturn.ends());
    endturn.path = servoce::shape();
    if (path.is_null()) {
        m_console->error(texts.emptyPath.arg(layoutNumber));
        return false;
    }
    // An edge of no length is reported and left out; the path may still be whole without it.
    bool faultless = true;
    std::vector<servoce::shape> kept;
    for (const servoce::edge_shape &edge : path.edges()) {
        if (qAbs(edge.last_parameter() - edge.first_parameter()) <= Numeric::zeroTolerance) {
            m_console->error(texts.zeroLength.arg(Winding::toString(phase), Winding::endturnDescription(endturn.ends())));
            faultless = false;
            continue;
        }
        kept.push_back(edge);
    }
    if (kept.empty()) {
        qCritical().noquote() << texts.noEdges;
        return false;
    }
    const servoce::wire_shape wire = servoce::make_wire(kept);
    if (wire.is_null() || qAbs(wire.last_parameter() - wire.first_parameter()) <= Numeric::zeroTolerance) {
        qCritical().noquote() << texts.noRange;
        m_console->error(texts.emptyRange.arg(layoutNumber).arg(heading));
        return false;
    }
    bool valid = true;
    const servoce::point3 first = wire.value(wire.first_parameter());
    if (!Winding::isAtCenter(plainPoint(first), endturn.begin.center)) {
        m_console->error(texts.begin.arg(layoutNumber).arg(heading, pointText(first), pointText(endturn.begin.center)));
        valid = false;
    }
    const servoce::point3 last = wire.value(wire.last_parameter());
    if (!Winding::isAtCenter(plainPoint(last), endturn.end.center)) {
        m_console->error(texts.end.arg(layoutNumber).arg(heading, pointText(last), pointText(endturn.end.center)));
        valid = false;
    }
    if (valid)
        endturn.path = wire;
    return valid && faultless;
}
