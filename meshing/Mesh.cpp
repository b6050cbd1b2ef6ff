#include "meshing/Mesh.h"

#include <CGAL/exceptions.h>
#include <QDataStream>
#include <QDebug>
#include <QMetaEnum>
#include <algorithm>
#include <iterator>

#include "base/Assign.h"
#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"

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

} // namespace

Mesh::Mesh(Document *document)
    : CoreMotorElement(document)
    , m_console(new ScriptConsole(ScriptConsole::Mesh, this))
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
    if (m_meshModified && !m_meshInvalid)
        clearGeometry();
}

void Mesh::setMeshInvalid(bool invalid)
{
    m_meshInvalid = invalid;
}

void Mesh::clearGeometry()
{
    // No slice geometry or triangulation is held yet: what remains is the mark
    // that the meshes must be rebuilt.
    setMeshInvalid(true);
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
    in >> m_numberSlices >> m_airgapQuality >> m_reserved >> m_autoSizeBound >> m_sizeBound
        >> m_horizontalSymmetry;
    if (version >= 2)
        in >> m_boundCylinderRadius >> m_boundCylinderAxialExtension;
    return true;
}
