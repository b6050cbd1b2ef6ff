// The end-turn script of a winding: reading it into an engine of the winding's own,
// asking it for the paths of the coil ends and checking what it gives back.

#include "winding/WindingObject.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <BRepBndLib.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <Bnd_Box.hxx>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlShape.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "base/FileWatcher.h"
#include "base/Numeric.h"
#include "base/Tbb.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "geometry/Piece.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/curve.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/trans.h"
#include "materials/WindingMaterial.h"

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

struct ClosestPoints
{
    double distance;
    servoce::point3 first;
    servoce::point3 second;
};

// Where two shapes come closest, when the extrema calculation finds it.
std::optional<ClosestPoints> closestPoints(const servoce::shape &first, const servoce::shape &second)
{
    BRepExtrema_DistShapeShape extrema(first.Shape(), second.Shape());
    if (!extrema.IsDone() || extrema.NbSolution() < 1)
        return std::nullopt;
    auto point = [](const gp_Pnt &p) { return servoce::point3(p.X(), p.Y(), p.Z()); };
    return ClosestPoints{extrema.Value(), point(extrema.PointOnShape1(1)), point(extrema.PointOnShape2(1))};
}

// The least distance between two paths of a pair that counts. The gap between two bounding
// boxes is a lower bound of the paths' distance: pairs are measured from the closest boxes on,
// and those whose boxes lie farther apart than the smallest distance found cannot change it.
double smallestDistance(const std::vector<servoce::shape> &paths, const std::function<bool(size_t, size_t)> &counts)
{
    std::vector<Bnd_Box> boxes(paths.size());
    for (size_t i = 0; i < paths.size(); ++i)
        BRepBndLib::Add(paths[i].Shape(), boxes[i]);
    struct Pair
    {
        double boxGap;
        size_t first;
        size_t second;
    };
    std::vector<Pair> pairs;
    for (size_t i = 0; i < paths.size(); ++i) {
        for (size_t k = i + 1; k < paths.size(); ++k) {
            if (!counts(i, k))
                continue;
            const bool bounded = !boxes[i].IsVoid() && !boxes[k].IsVoid();
            pairs.push_back({bounded ? boxes[i].Distance(boxes[k]) : 0.0, i, k});
        }
    }
    std::sort(pairs.begin(), pairs.end(), [](const Pair &a, const Pair &b) { return a.boxGap < b.boxGap; });
    double smallest = std::numeric_limits<double>::max();
    for (const Pair &pair : pairs) {
        if (pair.boxGap >= smallest)
            break;
        if (const auto points = closestPoints(paths[pair.first], paths[pair.second]))
            smallest = std::min(smallest, points->distance);
    }
    return smallest;
}

// Where the end turns of two layouts on the faces of one body come closer than the bundles are
// thick: the script sees one layout at a time. Sets the overlap warnings and tells of each.
QStringList facesMeeting(const QVector<QVector<Winding::Endturns>> &all, double thickness,
                         const std::function<int(int)> &itemOfLayout, CoreMotorElement::WindingErrors &warnings)
{
    QStringList meetings;
    for (int a = 0; a < all.size(); ++a) {
        for (int b = a + 1; b < all.size(); ++b) {
            if (itemOfLayout(a) != itemOfLayout(b))
                continue;
            for (const bool outer : {true, false}) {
                std::vector<servoce::shape> paths;
                for (const int layout : {a, b}) {
                    for (const Winding::Endturns &coil : all.at(layout))
                        paths.push_back(outer ? coil.outer.path : coil.inner.path);
                }
                const size_t first = size_t(all.at(a).size());
                const double distance =
                    smallestDistance(paths, [first](size_t i, size_t k) { return (i < first) != (k < first); });
                if (distance >= 0.99 * thickness)
                    continue;
                warnings |= outer ? CoreMotorElement::OuterEndturnsOverlap : CoreMotorElement::InnerEndturnsOverlap;
                meetings << WindingObject::tr("The %1 end turns of the two faces of stator%2 meet: closest %3 mm "
                                              "apart, bundles %4 mm thick")
                                .arg(outer ? WindingObject::tr("outer") : WindingObject::tr("inner"))
                                .arg(itemOfLayout(a))
                                .arg(distance, 0, 'f', 3)
                                .arg(thickness, 0, 'f', 3);
            }
        }
    }
    return meetings;
}

bool isScriptShape(const QJSValue &value)
{
    return value.toVariant().userType() == qMetaTypeId<QmlShape>();
}

const QString distanceSlot = QStringLiteral("distanceBetweenEndturns");

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

void WindingObject::watchEndturnScript(const QString &path)
{
    if (path == m_watchedScript)
        return;
    if (!m_watchedScript.isEmpty())
        m_watcher->removePath(m_watchedScript);
    m_watchedScript = path;
    m_watcher->addPath(path);
}

void WindingObject::reReadEndturnScript()
{
    reloadEndturnScript(tr("Re-read Script '%1'").arg(QDir::toNativeSeparators(endturnsScriptPath())));
}

void WindingObject::reloadEndturnScript(const QString &announcement)
{
    m_console->log(announcement);
    // What the old script found of its end turns does not hold for the new one.
    const WindingErrors endturnFaults = WindingErrors(InnerFilaments) | OuterFilaments | EndWindingFailed
                                        | InnerEndturnsOverlap | OuterEndturnsOverlap;
    bool loaded = false;
    {
        const QSignalBlocker blocker(this);
        m_windingErrors &= ~endturnFaults;
        m_windingWarnings &= ~endturnFaults;
        loaded = loadEndturnScript();
    }
    emit windingErrorsChanged();
    emit windingWarningsChanged();
    if (!loaded)
        return;
    emit endturnsScriptLoaded();
    dropEndturns();
    updateEndturns();
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
    if (!ScriptDescribeList::endturns().holds(m_endturnsScript)) {
        endturnScriptFailure(tr("The script %1 is outside the script folder %2: it is not run")
                                 .arg(m_endturnsScript,
                                      QDir::toNativeSeparators(ScriptDescribeList::endturns().folder())));
        return false;
    }
    const QString path = endturnsScriptPath();
    watchEndturnScript(path);
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
        value.setProperty(QStringLiteral("towardsBack"), coilSide.towardsBack);
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
    takeOverlapWarnings(layoutNumber, result);
    return complete;
}

void WindingObject::takeOverlapWarnings(int layoutNumber, const QJSValue &result)
{
    WindingErrors warnings = m_windingWarnings;
    for (const auto &[field, bit] : {std::make_pair("innerOverlap", CoreMotorElement::InnerEndturnsOverlap),
                                     std::make_pair("outerOverlap", CoreMotorElement::OuterEndturnsOverlap)}) {
        const bool overlap = result.property(QLatin1String(field)).toBool();
        warnings.setFlag(bit, overlap || (layoutNumber > 1 && m_windingWarnings.testFlag(bit)));
    }
    const WindingErrors overlaps = CoreMotorElement::InnerEndturnsOverlap | CoreMotorElement::OuterEndturnsOverlap;
    // The page shows no warning bar of its own: the console tells of a new overlap.
    if ((warnings & overlaps) && !(m_windingWarnings & overlaps))
        m_console->warn(windingErrorMessage(CoreMotorElement::InnerEndturnsOverlap));
    setWindingWarnings(warnings);
}

void WindingObject::throwScriptError(const QString &message) const
{
    qCritical().noquote() << "Error:" << message;
    if (m_engine)
        m_engine->throwError(message);
}

bool WindingObject::readEndturnItems(const QJSValue &items, std::vector<servoce::shape> &paths) const
{
    auto lacking = [](const QJSValue &object, std::initializer_list<const char *> names) -> QString {
        for (const char *name : names) {
            if (!object.hasProperty(QLatin1String(name)))
                return QLatin1String(name);
        }
        return QString();
    };
    const int count = items.property(QStringLiteral("length")).toInt();
    for (int index = 0; index < count; ++index) {
        const QJSValue item = items.property(quint32(index));
        if (!item.isObject()) {
            throwScriptError(tr("Must be with second argument of array of objects"));
            return false;
        }
        QString missing = lacking(item, {"dir", "begin", "end", "path"});
        for (const char *side : {"begin", "end"}) {
            if (missing.isEmpty())
                missing = lacking(item.property(QLatin1String(side)), {"slot", "layer", "center", "profile"});
        }
        if (!missing.isEmpty()) {
            throwScriptError(tr("Item is not contains variable '%1'").arg(missing));
            return false;
        }
        const servoce::shape path = QmlShape::fromVariant(item.property(QStringLiteral("path")).toVariant());
        if (!path.is_null())
            paths.push_back(path);
    }
    return true;
}

double WindingObject::distanceBetweenEndturns(const QJSValue &items)
{
    m_console->log(QStringLiteral("call %1()").arg(distanceSlot));
    if (!items.isArray()) {
        throwScriptError(tr("The function '%1' must be with second argument of array").arg(distanceSlot));
        return 0.0;
    }
    const int count = items.property(QStringLiteral("length")).toInt();
    if (count < 2) {
        m_console->log(QStringLiteral("%1, for %2 item(s) check skipped").arg(distanceSlot).arg(count));
        return 0.0;
    }
    std::vector<servoce::shape> paths;
    if (!readEndturnItems(items, paths))
        return 0.0;
    return smallestDistance(paths, [](size_t, size_t) { return true; });
}

QJSValue WindingObject::extremaBetweenEndturns(const QJSValue &first, const QJSValue &second)
{
    if (!isScriptShape(first)) {
        throwScriptError(tr("The first argument must be type of 'shape'"));
        return QJSValue();
    }
    if (!isScriptShape(second)) {
        throwScriptError(tr("The second argument must be type of 'shape'"));
        return QJSValue();
    }
    const servoce::shape a = QmlShape::fromVariant(first.toVariant());
    const servoce::shape b = QmlShape::fromVariant(second.toVariant());
    if (!m_engine || a.is_null() || b.is_null())
        return QJSValue();
    const auto points = closestPoints(a, b);
    if (!points)
        return QJSValue();
    QJSValue result = m_engine->newObject();
    result.setProperty(QStringLiteral("p1"), m_engine->toScriptValue(QmlPoint3(points->first)));
    result.setProperty(QStringLiteral("p2"), m_engine->toScriptValue(QmlPoint3(points->second)));
    return result;
}

bool WindingObject::checkOverlapEndturns(const QJSValue &)
{
    m_console->log(QStringLiteral("checkOverlapEndturns() always return true!!!"));
    return true;
}

double WindingObject::volumeOverlapEndturns(const QJSValue &)
{
    m_console->log(QStringLiteral("call volumeOverlapEndturns()"));
    return 0.0;
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

namespace {

// The coil side of one layer where it leaves the slot of the lowest number: its angle,
// the height of its middle and the radii at which its section ends.
struct SlotSectionRecord
{
    double angle = 0.0; // radians
    double z = 0.0;
    double innerRadius = 0.0;
    double outerRadius = 0.0;
    // Of the section: across the slot and along the machine's axis, mm.
    double width = 0.0;
    double height = 0.0;
    // The coil's cross-section across the radius, its middle at the origin, in the plane x = 0.
    servoce::shape profile;
};

SlotSectionRecord measured(const servoce::shape &side)
{
    const servoce::boundbox around = side.bounding_box();
    SlotSectionRecord record;
    record.angle = std::atan2((around.ymin + around.ymax) / 2.0, (around.xmin + around.xmax) / 2.0);
    // Turned onto the x axis, the section spans the radii along x.
    const servoce::boundbox along = side.transformed(servoce::rotateZ(-record.angle)).bounding_box();
    const double ym = (along.ymin + along.ymax) / 2.0;
    record.z = (along.zmin + along.zmax) / 2.0;
    record.innerRadius = std::hypot(along.xmin, ym);
    record.outerRadius = std::hypot(along.xmax, ym);
    record.width = along.ymax - along.ymin;
    record.height = along.zmax - along.zmin;
    const double middle = (along.xmin + along.xmax) / 2.0;
    const servoce::shape turned = side.transformed(servoce::rotateZ(-record.angle));
    record.profile = servoce::make_intersect(turned, servoce::infplane({middle, 0.0, 0.0}, {1.0, 0.0, 0.0}), true)
                         .transformed(servoce::translate(-middle, -ym, -record.z));
    return record;
}

// Away from the air gap: down in a lower body, up in an upper one, towards the middle from each
// face of a body between two gaps. Coils through a body without yoke keep the sense of a lower body.
int towardsBackOf(const StatorItem &item, const QVector<SlotSectionRecord> &records)
{
    if (item.isUpper())
        return 1;
    if (!item.isMiddle())
        return -1;
    double z = 0.0;
    for (const SlotSectionRecord &record : records)
        z += record.z / records.size();
    return z < (item.posBottom() + item.posTop()) / 2.0 - Numeric::zeroTolerance ? 1 : -1;
}

Winding::CoilSide coilSide(int slot, int layer, double pitch, const SlotSectionRecord &record, double radius,
                           int towardsBack)
{
    Winding::CoilSide side;
    side.slot = slot;
    side.layer = layer;
    side.towardsBack = towardsBack;
    side.angle = record.angle + slot * pitch;
    side.center = {radius * std::cos(side.angle), radius * std::sin(side.angle), record.z};
    if (!record.profile.is_null())
        side.profile = record.profile.transformed(servoce::translate(radius, 0.0, record.z))
                           .transformed(servoce::rotateZ(side.angle));
    return side;
}

} // namespace

void WindingObject::updateEndturns()
{
    if (!document()->isReady() || m_endturns)
        return;
    QVector<QVector<Winding::Endturns>> all(m_countLayouts);
    const bool layoutsFilled = std::all_of(m_coilLayouts.cbegin(), m_coilLayouts.cbegin() + m_countLayouts,
                                           [](const Winding::Layout &layout) {
                                               return std::none_of(layout.cbegin(), layout.cend(),
                                                                   [](const Winding::CoilList &list) {
                                                                       return list.isEmpty();
                                                                   });
                                           });
    if (layoutsFilled)
        makeEndturns(all);
    m_endturns = all;
    emit endturnsChanged();
}

void WindingObject::makeEndturns(QVector<QVector<Winding::Endturns>> &all)
{
    if (!m_engine)
        loadEndturnScript();
    // For each layout, the side of each layer in the slot of the lowest number; a body
    // with coils on both faces numbers the layers of its second face on from the first.
    QMap<int, QMap<int, QPair<int, servoce::shape>>> firstSides;
    for (const Piece &piece : document()->pieces()) {
        const auto *material = dynamic_cast<const WindingMaterial *>(piece.material().data());
        if (!material)
            continue;
        QMap<int, QPair<int, servoce::shape>> &sides = firstSides[material->layout() - 1];
        if (!sides.contains(material->layer()) || material->slot() < sides.value(material->layer()).first)
            sides.insert(material->layer(), qMakePair(material->slot(), piece.shape()));
    }
    const int layers = effectiveNumberLayers();
    const double pitch = 2.0 * M_PI / numberSlots();
    for (int index = 0; index < m_countLayouts; ++index) {
        QVector<SlotSectionRecord> records;
        for (const QPair<int, servoce::shape> &side : firstSides.value(index)) {
            if (records.size() < layers)
                records << measured(side.second);
        }
        if (records.size() < layers) {
            const QString fault = tr("The stator has winding pieces of %1 layer(s) for layout %2, not %3: its end "
                                     "turns are not made")
                                      .arg(records.size())
                                      .arg(index + 1)
                                      .arg(layers);
            qCritical().noquote() << "Error:" << fault;
            m_console->error(fault);
            continue;
        }
        // The first stator face gives the coil's section.
        if (index == 0) {
            setWidthWindingCoil(records.first().width);
            setHeightWindingCoil(records.first().height);
        }
        const QVector<StatorItem *> items = document()->stator()->items();
        const auto item = std::find_if(items.cbegin(), items.cend(), [this, index](const StatorItem *candidate) {
            return candidate->id() == statorItemOfLayout(index);
        });
        const int towardsBack = item != items.cend() ? towardsBackOf(**item, records) : -1;
        const double coilRadius = 1.05 * qMax(m_widthWindingCoil, m_heightWindingCoil) / 2.0;
        QVector<Winding::Endturns> coils;
        const Winding::Layout &layout = m_coilLayouts.at(index);
        for (int phase = Winding::A; phase < Winding::Count; ++phase) {
            for (const Winding::Coil &coil : layout.at(phase)) {
                if (coil.layerFrom >= layers || coil.layerTo >= layers)
                    continue;
                const SlotSectionRecord &from = records.at(coil.layerFrom);
                const SlotSectionRecord &to = records.at(coil.layerTo);
                Winding::Endturns ends;
                ends.phase = Winding::Phase(phase);
                ends.outer.kind = Winding::EndturnKind::Outer;
                ends.outer.dir = coil.orientation;
                ends.outer.begin = coilSide(coil.slotFrom, coil.layerFrom, pitch, from, from.outerRadius, towardsBack);
                ends.outer.end = coilSide(coil.slotTo, coil.layerTo, pitch, to, to.outerRadius, towardsBack);
                ends.inner.kind = Winding::EndturnKind::Inner;
                ends.inner.dir = Winding::Coil::Orientation(-coil.orientation);
                ends.inner.begin = coilSide(coil.slotTo, coil.layerTo, pitch, to, to.innerRadius, towardsBack);
                ends.inner.end = coilSide(coil.slotFrom, coil.layerFrom, pitch, from, from.innerRadius, towardsBack);
                coils << ends;
            }
        }
        calcEndturnPaths(index + 1, records.first().innerRadius, records.first().outerRadius, coils);
        tbb::parallel_for(0, int(coils.size()), [&coils](int k) {
            for (Winding::Endturn *end : {&coils[k].inner, &coils[k].outer}) {
                end->filaments.clear();
                const std::vector<servoce::point3> points = servoce::deflection_points(end->path, 10.0);
                for (size_t n = 1; n < points.size(); ++n)
                    end->filaments.append({plainPoint(points[n - 1]), plainPoint(points[n])});
            }
        });
        for (const Winding::Endturns &coil : coils) {
            for (const Winding::Endturn *end : {&coil.inner, &coil.outer}) {
                const QStringList faults = Winding::filamentFaults(end->filaments, end->kind, coilRadius,
                                                                   Winding::endturnHeading(coil.phase, end->ends()));
                for (const QString &fault : faults) {
                    qCritical().noquote() << "Error:" << fault;
                    m_console->error(fault);
                }
            }
        }
        all[index] = coils;
    }
    WindingErrors warnings = m_windingWarnings;
    for (const QString &meeting : facesMeeting(all, std::min(m_widthWindingCoil, m_heightWindingCoil),
                                               [this](int index) { return statorItemOfLayout(index); }, warnings))
        m_console->warn(meeting);
    setWindingWarnings(warnings);
}

