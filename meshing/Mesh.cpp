#include "meshing/Mesh.h"

#include <CGAL/exceptions.h>
#include <QDataStream>
#include <QDebug>
#include <QElapsedTimer>
#include <QMetaEnum>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include "base/Assign.h"
#include "base/Numeric.h"
#include "base/ScriptConsole.h"
#include "base/StreamChecks.h"
#include "base/Tbb.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/MotorItem.h"
#include "geometry/Rotor.h"
#include "geometry/SimDomain.h"
#include "geometry/Stator.h"
#include "meshing/Mesh3D.h"
#include "meshing/RadialMesher.h"
#include "meshing/SliceGeometry.h"
#include "meshing/SliceMesher.h"
#include "meshing/WindingPoints.h"
#include "winding/WindingObject.h"

namespace {

const QString autoText = QStringLiteral("Auto");

// Version of the mesh's block in a document file.
const qint32 streamVersion = 2;

struct QualityGrade
{
    double value;
    const char *name;
};

const QualityGrade qualityGrades[] = {
    {1.0, "High"},
    {1.5, "Medium"},
    {2.0, "Low"},
};

const Document::BoundaryCondition namedConditions[] = {Document::Antiperiodic, Document::Periodic,
                                                       Document::None};

QString boundaryConditionName(Document::BoundaryCondition condition)
{
    return QString::fromLatin1(QMetaEnum::fromType<Document::BoundaryCondition>().valueToKey(condition));
}

std::optional<QPair<double, double>> rangeOf(const Airgap *gap)
{
    if (!gap)
        return std::nullopt;
    return qMakePair(gap->posBottom(), gap->posTop());
}

// The pieces of one body, out of those of the machine.
PieceList piecesOf(const MotorItem *item, const PieceList &pieces)
{
    PieceList own;
    for (const Piece &piece : pieces) {
        if (piece.scope() == item->scope())
            own.append(piece);
    }
    return own;
}

std::optional<GapRows> gapRows(const Airgap *gap)
{
    if (!gap)
        return std::nullopt;
    return GapRows{gap->posBottom(), gap->posTop(), gap->numberLayers()};
}

// Which bodies of each machine type are meshed: -1 not, 0 alone, else with the
// body of that id as its image in the central plane. A symmetric machine is
// meshed on one side of that plane.
struct MeshedItems
{
    int stator[3];
    int rotor[3];
};

const MeshedItems meshedItems[] = {
    {{-1, -1, -1}, {-1, -1, -1}}, // UnknownType
    {{0, 0, 0}, {0, 0, 0}},       // SR
    {{2, -1, -1}, {0, -1, -1}},   // SRS
    {{3, 0, -1}, {2, -1, -1}},    // SRSRS
    {{0, -1, -1}, {2, -1, -1}},   // RSR
    {{2, -1, -1}, {3, 0, -1}},    // RSRSR
};

MeshBody meshBody(const MotorItem *item, const PieceList &pieces, double pitch, double height, bool symmetric,
                  const Airgap *below, const Airgap *above)
{
    MeshBody body;
    body.name = item->objectName();
    body.pieces = piecesOf(item, pieces);
    body.displacement = item->relativeDisplacement();
    const QPair<double, double> range = item->range();
    body.bottom = range.first;
    body.top = range.second;
    body.pitch = pitch;
    // In a symmetric machine a body on the central plane is its own image there.
    const bool centre = symmetric && range.first < height / 2 - Numeric::zeroTolerance
                        && range.second > height / 2 + Numeric::zeroTolerance;
    body.mirrored = centre || item->isMiddle();
    body.middle = item->isMiddle() ? (range.first + range.second) / 2 : height / 2;
    body.gapBelow = gapRows(below);
    body.gapAbove = gapRows(above);
    return body;
}

SliceBody sliceBody(const MotorItem *item, double pitch, const Airgap *below, const Airgap *above,
                    const PieceList &pieces)
{
    SliceBody body;
    body.name = item->objectName();
    body.scope = item->scope();
    body.pieces = piecesOf(item, pieces);
    body.displacement = item->relativeDisplacement();
    body.pitch = pitch;
    body.middle = item->isMiddle();
    const QPair<double, double> range = item->range();
    body.bottom = range.first;
    body.top = range.second;
    body.gapBelow = rangeOf(below);
    body.gapAbove = rangeOf(above);
    return body;
}

} // namespace

Mesh::Mesh(Document *document)
    : CoreMotorElement(document)
    , m_geometrySlices(m_numberSlices)
    , m_meshSlices(m_numberSlices)
    , m_console(new ScriptConsole(ScriptConsole::Mesh, this))
    , m_mesh3D(new Mesh3D(this))
{
    setObjectName(QStringLiteral("mesh"));
}

template <typename Signal>
void Mesh::announce(Signal signal)
{
    m_meshInvalid = true;
    emit(this->*signal)();
    emit meshChanged();
    setMeshModified(true);
    document()->setGeometryModified(true);
}

template <typename T, typename Signal>
void Mesh::assign(T &field, T value, Signal signal)
{
    if (assignChanged(field, value))
        announce(signal);
}

double Mesh::automaticSizeBound() const
{
    return 0.1 * qMax(document()->stator()->outerDiameter(), document()->rotor()->outerDiameter());
}

void Mesh::setAutoSizeBound(bool automatic)
{
    if (automatic == m_autoSizeBound)
        return;
    m_autoSizeBound = automatic;
    double size = m_storedSizeBound;
    if (automatic) {
        m_storedSizeBound = m_sizeBound;
        size = automaticSizeBound();
    }
    m_meshInvalid = true;
    emit autoSizeBoundChanged();
    if (!qFuzzyCompare(size, m_sizeBound)) {
        m_sizeBound = size;
        emit sizeBoundChanged();
    }
    emit meshChanged();
    setMeshModified(true);
    document()->setGeometryModified(true);
}

void Mesh::setSizeBound(double size)
{
    if (m_autoSizeBound)
        return;
    assign(m_sizeBound, size, &Mesh::sizeBoundChanged);
}

void Mesh::adjustSizeBound()
{
    if (!m_autoSizeBound)
        return;
    assign(m_sizeBound, automaticSizeBound(), &Mesh::sizeBoundChanged);
}

void Mesh::setAirgapQuality(double quality)
{
    assign(m_airgapQuality, qBound(1.0, quality, 2.0), &Mesh::airgapQualityChanged);
}

QString Mesh::airgapQualityName(double quality)
{
    for (const QualityGrade &grade : qualityGrades) {
        if (qFuzzyCompare(grade.value, quality))
            return QString::fromLatin1(grade.name);
    }
    return QStringLiteral("Unknown");
}

double Mesh::airgapQualityValue(const QString &name)
{
    for (const QualityGrade &grade : qualityGrades) {
        if (name == QLatin1String(grade.name))
            return grade.value;
    }
    return 1.5;
}

void Mesh::setNumberSlices(int numberSlices)
{
    const int limited = qBound(1, numberSlices, 20);
    if (limited == m_numberSlices)
        return;
    m_numberSlices = limited;
    clearGeometry();
    clearMeshes();
    // The slices cut the pieces at other radii.
    document()->stator()->clearCashPieces();
    document()->rotor()->clearCashPieces();
    emit numberSlicesChanged();
    emit meshChanged();
    setMeshModified(true);
    document()->setGeometryModified(true);
}

void Mesh::setHorizontalSymmetry(bool symmetry)
{
    assign(m_horizontalSymmetry, symmetry, &Mesh::horizontalSymmetryChanged);
}

void Mesh::setBoundCylinderRadius(double radius)
{
    assign(m_boundCylinderRadius, radius, &Mesh::boundCylinderRadiusChanged);
}

void Mesh::setBoundCylinderAxialExtension(double extension)
{
    assign(m_boundCylinderAxialExtension, extension, &Mesh::boundCylinderAxialExtensionChanged);
}

void Mesh::setMeshModified(bool modified)
{
    if (modified != m_meshModified) {
        m_meshModified = modified;
        m_meshInvalid = m_meshInvalid || modified;
        emit meshModifiedChanged(modified);
    }
    // A change after the last build makes that build stale.
    if (m_meshModified && !m_meshInvalid) {
        clearGeometry();
        clearMeshes();
    }
}

void Mesh::setMeshInvalid(bool invalid)
{
    if (invalid && !m_meshInvalid) {
        clearGeometry();
        clearMeshes();
    }
    m_meshInvalid = invalid;
}

double Mesh::radialOuterRadius() const
{
    const Document *doc = document();
    const double outer = doc->simRadialOuterDomain();
    return Numeric::isZero(outer) ? qMax(doc->stator()->outerRadius(), doc->rotor()->outerRadius()) : outer;
}

void Mesh::clearGeometry()
{
    m_geometrySlices = QVector<GeometryData>(m_numberSlices);
    m_geometryRadial = GeometryData();
    m_meshInvalid = true;
}

void Mesh::clearMeshes()
{
    m_meshSlices = QVector<CDT>(m_numberSlices);
    m_meshRadial = CDT();
}

void Mesh::createMeshSlices()
{
    if (!m_meshInvalid)
        return;
    m_meshInvalid = false;
    m_meshing = true;
    if (m_meshErrors) {
        m_meshErrors = {};
        emit meshErrorsChanged(m_meshErrors);
    }
    emit generateMeshStart();
    QElapsedTimer timer;
    timer.start();

    clearMeshes();
    if (checkMachine()) {
        const MeshSettings settings = meshSettings();
        createWindingPoints(settings);
        const QVector<MeshBody> bodies = meshBodies();
        const MeshStepError report = [this](const QString &text, const CGAL::Failure_exception *failure) {
            onError(text, failure);
        };
        const SliceMesher mesher(settings, bodies, report);
        const RadialMesher radial(settings, radialFrame(), bodies, report);
        const QList<double> radii = sliceRadii();
        // Each task writes its own entry only; the radial mesh goes beside the slices.
        CDT *slices = m_meshSlices.data();
        tbb::task_group group;
        if (checkRadialModel())
            group.run([this, &radial] { m_meshRadial = radial.createMeshRadial(); });
        tbb::parallel_for(0, int(radii.size()), [slices, &mesher, &radii](int index) {
            slices[index] = mesher.slice(index, radii.at(index));
        });
        group.wait();
    }

    qDebug() << "Create mesh finished at" << timer.elapsed() << "ms";
    m_meshing = false;
    emit generateMeshFinished();
}

QList<double> Mesh::sliceRadii() const
{
    const SimDomain domain = document()->simDomain();
    return SliceGeometry::sliceRadii(domain.inner, domain.outer, m_numberSlices);
}

QList<double> Mesh::sliceWidths() const
{
    const SimDomain domain = document()->simDomain();
    return SliceGeometry::sliceWidths(domain.inner, domain.outer, m_numberSlices);
}

double Mesh::maxSectionSize() const
{
    return qMin(document()->airgap(Airgap::ID1)->thickness() / 3.0, m_sizeBound);
}

bool Mesh::checkMachine()
{
    Document *doc = document();
    const SimDomain domain = doc->simDomain();
    if (domain.inner < 0.0 || domain.outer - domain.inner <= Numeric::zeroTolerance) {
        onError(tr("Critical error while building mesh: the slices' radii %1 to %2 mm lie outside the machine")
                    .arg(domain.inner)
                    .arg(domain.outer));
        return false;
    }
    for (const Airgap *gap : doc->airgaps()) {
        if (gap->thickness() <= Numeric::zeroTolerance) {
            onError(tr("Critical error while building mesh: air gap %1 has no thickness").arg(gap->id()));
            return false;
        }
    }
    // The domain comes from the stator's script, which may not have drawn what it says.
    const QPair<double, double> reach = doc->pieces().radialRange();
    for (const double radius : sliceRadii()) {
        if (radius < reach.first - Numeric::zeroTolerance || radius > reach.second + Numeric::zeroTolerance) {
            onError(tr("Critical error while building mesh: the slice radius %1 mm lies outside the machine")
                        .arg(radius));
            return false;
        }
    }
    return true;
}

bool Mesh::checkRadialModel()
{
    const double end = radialOuterRadius();
    const double outer = document()->simDomain().outer;
    if (end >= outer - Numeric::zeroTolerance)
        return true;
    onError(tr("Critical error while building mesh: the radial model ends at %1 mm, within the active part up to %2 mm")
                .arg(end)
                .arg(outer));
    return false;
}

SliceMachine Mesh::sliceMachine()
{
    Document *doc = document();
    SliceMachine machine;
    machine.pieces = doc->pieces();
    qDebug() << "Pieces initialized";
    for (const MotorItem *item : doc->stator()->activeItems()) {
        machine.bodies.append(sliceBody(item, doc->stator()->slotAngleSpan(), doc->airgapOfStatorItem(item->id(), 1),
                                        doc->airgapOfStatorItem(item->id(), 2), machine.pieces));
    }
    for (const MotorItem *item : doc->rotor()->activeItems()) {
        machine.bodies.append(sliceBody(item, doc->rotor()->poleAngleSpan(), doc->airgapOfRotorItem(item->id(), 1),
                                        doc->airgapOfRotorItem(item->id(), 2), machine.pieces));
    }
    machine.periodicity = doc->periodicity();
    machine.angleSpan = doc->periodicityAngleSpan();
    machine.sectorRadius = 1.1 * qMax(doc->stator()->outerRadius(), doc->rotor()->outerRadius());
    machine.height = doc->height();
    machine.sizeLimit = maxSectionSize();
    machine.scopeAt = [doc](const QPointF &point) { return doc->scopeAt(point); };
    return machine;
}

MeshSettings Mesh::meshSettings() const
{
    const Document *doc = document();
    MeshSettings settings;
    settings.height = doc->height();
    settings.angleSpan = doc->periodicityAngleSpan();
    settings.sectorRadius = 1.1 * qMax(doc->stator()->outerRadius(), doc->rotor()->outerRadius());
    settings.sizeLimit = maxSectionSize();
    settings.sizeBound = m_sizeBound;
    settings.airgapQuality = m_airgapQuality;
    for (const Airgap *gap : doc->airgaps())
        settings.gaps.append(*gapRows(gap));
    return settings;
}

void Mesh::createWindingPoints(const MeshSettings &settings)
{
    Document *doc = document();
    m_windingPoints.clear();
    if (doc->stator()->geometryErrors())
        return;
    const QVector<MotorItem *> items = doc->stator()->activeItems();
    m_windingPoints.resize(items.size());
    if (!doc->winding()->isEndturnScriptLoaded())
        return;
    const SliceGeometry geometry(sliceMachine());
    const WindingPoints maker(settings, geometry, sliceRadii(),
                              [this](const QString &text, const CGAL::Failure_exception *failure) {
                                  onError(text, failure);
                              });
    const PieceList pieces = doc->pieces();
    const bool symmetric = doc->machineType() != Machine::SR;
    // Each task writes its own entry only.
    QVector<QList<PointF>> *entries = m_windingPoints.data();
    tbb::parallel_for(0, int(items.size()), [&](int i) {
        const MotorItem *item = items.at(i);
        const MeshBody body = meshBody(item, pieces, doc->stator()->slotAngleSpan(), doc->height(), symmetric,
                                       doc->airgapOfStatorItem(item->id(), 1), doc->airgapOfStatorItem(item->id(), 2));
        entries[i] = maker.createGeometryWinding(body);
    });
}

RadialFrame Mesh::radialFrame() const
{
    const SimDomain domain = document()->simDomain();
    return RadialFrame{radialOuterRadius(), domain.inner, domain.outer, sliceRadii()};
}

QVector<MeshBody> Mesh::meshBodies()
{
    Document *doc = document();
    const PieceList pieces = doc->pieces();
    const double height = doc->height();
    const Machine::Type type = doc->machineType();
    QVector<MeshBody> bodies;
    const auto add = [&](const QVector<MotorItem *> &items, const int (&partners)[3], double pitch, bool stator) {
        for (const MotorItem *item : items) {
            const int partner = partners[item->id() - 1];
            if (partner < 0)
                continue;
            const int id = item->id();
            MeshBody body = meshBody(item, pieces, pitch, height, type != Machine::SR,
                                     stator ? doc->airgapOfStatorItem(id, 1) : doc->airgapOfRotorItem(id, 1),
                                     stator ? doc->airgapOfStatorItem(id, 2) : doc->airgapOfRotorItem(id, 2));
            if (partner > 0)
                body.partnerDisplacement = items.at(partner - 1)->relativeDisplacement();
            if (stator)
                body.windingPoints = m_windingPoints.value(id - 1);
            bodies.append(body);
        }
    };
    const MeshedItems &meshed = meshedItems[type];
    add(doc->stator()->activeItems(), meshed.stator, doc->stator()->slotAngleSpan(), true);
    add(doc->rotor()->activeItems(), meshed.rotor, doc->rotor()->poleAngleSpan(), false);
    return bodies;
}

void Mesh::createGeometrySlices()
{
    if (m_geometrySlices.size() == m_numberSlices && !m_geometrySlices.first().subdomains.isEmpty())
        return;
    QElapsedTimer timer;
    timer.start();
    m_generatingGeometry = true;
    emit generateGeomertyStart();
    qDebug() << "Start create geometry";

    m_geometrySlices = QVector<GeometryData>(m_numberSlices);
    if (checkMachine()) {
        const SliceGeometry geometry(sliceMachine());
        const QList<double> radii = sliceRadii();
        const SimDomain domain = document()->simDomain();
        qDebug() << "Start create geometry slices";
        // Each task writes its own entry only; the radial cut goes beside the slices.
        GeometryData *slices = m_geometrySlices.data();
        tbb::task_group group;
        if (checkRadialModel()) {
            group.run([this, &geometry, &domain] {
                m_geometryRadial = geometry.createRadial(radialOuterRadius(), domain.inner, domain.outer);
            });
        }
        tbb::parallel_for(0, int(radii.size()), [slices, &geometry, &radii](int index) {
            slices[index] = geometry.createSlice(radii.at(index));
        });
        group.wait();
    }

    m_generatingGeometry = false;
    emit generateGeomertyFinished();
    qDebug() << "Create geometry finished at" << timer.elapsed() << "ms";
}

void Mesh::onError(QString text, const CGAL::Failure_exception *failure)
{
    if (failure) {
        if (!failure->message().empty()) {
            text += QStringLiteral(", error: %1").arg(QString::fromStdString(failure->message()));
        } else if (!failure->expression().empty()) {
            text += QStringLiteral(", expression: %1, file: %2 L: %3")
                        .arg(QString::fromStdString(failure->expression()),
                             QString::fromStdString(failure->filename()))
                        .arg(failure->line_number());
        }
    }
    m_console->error(text);
    qCritical().noquote() << text;
    const std::lock_guard locker(m_errorMutex);
    if (m_meshErrors.testFlag(CoreMotorElement::MeshBuildFailed))
        return;
    m_meshErrors |= CoreMotorElement::MeshBuildFailed;
    emit meshErrorsChanged(m_meshErrors);
}

QString Mesh::elementErrors() const
{
    return elementErrorText(m_meshErrors, {CoreMotorElement::MeshBuildFailed}, objectName(), meshErrorMessage);
}

QVariantMap Mesh::properties() const
{
    const Document *doc = document();
    const QVariantMap map{
        {QStringLiteral("nAirGapLayers"), doc->airgap(Airgap::ID1)->numberLayers()},
        {QStringLiteral("nSlices"), m_numberSlices},
        {QStringLiteral("perbndcnd"), doc->boundaryConditionMode() == Document::Automatic
                                          ? autoText
                                          : boundaryConditionName(doc->boundaryCondition())},
        {QStringLiteral("maxTriangleSide"), m_autoSizeBound ? QVariant(autoText) : QVariant(m_sizeBound)},
        {QStringLiteral("airgapMeshQuality"), airgapQualityName(m_airgapQuality)},
    };
    qDebug() << "Get Mesh::properties:" << map;
    return map;
}

void Mesh::setProperties(const QVariantMap &map)
{
    if (map.isEmpty())
        return;
    qDebug() << "Mesh::setProperties:" << map;
    Document *doc = document();

    const uint layers = map.value(QStringLiteral("nAirGapLayers")).toUInt();
    const bool oddLayers = layers == 3 || layers == 5 || layers == 7 || layers == 9;
    doc->airgap(Airgap::ID1)->setNumberLayers(oddLayers ? int(layers) : 3);

    setNumberSlices(map.value(QStringLiteral("nSlices")).toInt());

    const QString condition = map.value(QStringLiteral("perbndcnd")).toString();
    const auto named = std::find_if(std::cbegin(namedConditions), std::cend(namedConditions),
                                    [&condition](Document::BoundaryCondition c) {
                                        return condition == boundaryConditionName(c);
                                    });
    if (condition == autoText || named == std::cend(namedConditions)) {
        doc->setBoundaryConditionMode(Document::Automatic);
    } else {
        doc->setBoundaryConditionMode(Document::Manual);
        doc->setBoundaryCondition(*named);
    }

    bool isNumber = false;
    const double size = map.value(QStringLiteral("maxTriangleSide")).toString().toDouble(&isNumber);
    if (!isNumber || size < 0.1) {
        setAutoSizeBound(true);
    } else {
        setAutoSizeBound(false);
        setSizeBound(size);
    }

    setAirgapQuality(airgapQualityValue(map.value(QStringLiteral("airgapMeshQuality")).toString()));
}

void Mesh::save(QDataStream &out) const
{
    out << streamVersion << m_numberSlices << m_airgapQuality << m_reserved << m_autoSizeBound << m_sizeBound
        << m_horizontalSymmetry << m_boundCylinderRadius << m_boundCylinderAxialExtension;
}

bool Mesh::load(QDataStream &in)
{
    qint32 version = 0;
    in >> version;
    if (version > streamVersion)
        return false;
    qint32 numberSlices = 0;
    double airgapQuality = 0.0;
    double sizeBound = 0.0;
    double boundCylinderRadius = m_boundCylinderRadius;
    double boundCylinderAxialExtension = m_boundCylinderAxialExtension;
    in >> numberSlices >> airgapQuality >> m_reserved >> m_autoSizeBound >> sizeBound >> m_horizontalSymmetry;
    if (version >= 2)
        in >> boundCylinderRadius >> boundCylinderAxialExtension;
    if (in.status() != QDataStream::Ok)
        return true;
    // The slices are counted out into tables and the sizes bound the meshes' triangles:
    // a damaged value would exhaust memory or time when the mesh is made.
    const auto finite = [](double value, double lowest, double highest) {
        return std::isfinite(value) && value >= lowest && value <= highest;
    };
    if (numberSlices < 1 || numberSlices > 20) {
        StreamChecks::refuse(in, QStringLiteral("the number of mesh slices %1 is outside 1 to 20").arg(numberSlices));
    } else if (!finite(airgapQuality, 1.0, 2.0)) {
        StreamChecks::refuse(in, QStringLiteral("the air gap quality %1 is outside 1 to 2").arg(airgapQuality));
    } else if (!finite(sizeBound, 0.0, 1e6) || !finite(boundCylinderRadius, 0.0, 1e6)
               || !finite(boundCylinderAxialExtension, 0.0, 1e6)) {
        StreamChecks::refuse(in, QStringLiteral("a size of the mesh is outside the values a design may have"));
    } else {
        m_numberSlices = numberSlices;
        m_airgapQuality = airgapQuality;
        m_sizeBound = sizeBound;
        m_boundCylinderRadius = boundCylinderRadius;
        m_boundCylinderAxialExtension = boundCylinderAxialExtension;
    }
    return true;
}
