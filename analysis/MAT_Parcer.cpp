#include "analysis/MAT_Parcer.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonValue>
#include <QThread>
#include <cmath>
#include <optional>

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "analysis/MatFileCheck.h"
#include "base/Numeric.h"
#include "base/SafeWrite.h"
#include "base/Tbb.h"
#include "base/UserMessage.h"
#include "document/Airgap.h"
#include "document/CommandSetPropertyObject.h"
#include "document/Document.h"
#include "document/MaterialMasses.h"
#include "geometry/MotorItem.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/BasicMaterials.h"
#include "materials/MagnetMaterial.h"
#include "materials/WindingMaterial.h"
#include "meshing/Mesh.h"
#include "meshing/SliceData.h"
#include "winding/WindingObject.h"

namespace {

using C = MAT_Converter;

const QString motorPropsName = QStringLiteral("motorProps");

// A MAT file is written beside its destination and takes its place only when
// complete, so that a failed run never leaves half a file where a good one was.
class MatFileWriter
{
public:
    MatFileWriter(const QString &path, int attempts)
        : m_replacement(path)
    {
        const QByteArray name = QFile::encodeName(QDir::toNativeSeparators(m_replacement.temporaryPath()));
        for (int attempt = 1; attempt <= attempts && !m_mat; ++attempt) {
            m_mat = Mat_CreateVer(name.constData(), nullptr, MAT_FT_MAT5);
            if (m_mat)
                break;
            qCritical() << "Can't create MAT file" << path << "attempt:" << attempt;
            if (attempt < attempts)
                QThread::msleep(100);
        }
    }

    ~MatFileWriter()
    {
        if (m_mat)
            Mat_Close(m_mat);
    }

    MatFileWriter(const MatFileWriter &) = delete;
    MatFileWriter &operator=(const MatFileWriter &) = delete;

    bool isOpen() const { return m_mat != nullptr; }

    void write(const MatVarPointer &variable, const QString &name)
    {
        if (!variable || Mat_VarWrite(m_mat, variable.data(), MAT_COMPRESSION_NONE) != 0)
            qCritical().noquote() << "Error: Can't create variable for " + name;
    }

    bool commit()
    {
        Mat_Close(m_mat);
        m_mat = nullptr;
        return m_replacement.commit();
    }

private:
    SafeWrite::Replacement m_replacement;
    mat_t *m_mat = nullptr;
};

QString motorTypeText(Machine::Type type)
{
    switch (type) {
    case Machine::SR: return QStringLiteral("stator-rotor");
    case Machine::SRS: return QStringLiteral("stator-rotor-stator");
    case Machine::SRSRS: return QStringLiteral("stator-rotor-stator-rotor-stator");
    case Machine::RSR: return QStringLiteral("rotor-stator-rotor");
    case Machine::RSRSR: return QStringLiteral("rotor-stator-rotor-stator-rotor");
    default: return QStringLiteral("UnknowMachineType");
    }
}

QVector<double> itemHeights(const QVector<MotorItem *> &items)
{
    QVector<double> heights;
    for (const MotorItem *item : items)
        heights.append(item->height());
    return heights;
}

// Slots and layers from 1; a single layer needs no layer columns.
matvar_t *coilTable(const Winding::CoilList &coils, bool singleLayer)
{
    const int columns = singleLayer ? 4 : 6;
    const int rows = coils.size();
    QVector<double> values(rows * columns);
    for (int r = 0; r < rows; ++r) {
        const Winding::Coil &coil = coils.at(r);
        const QVector<double> row = singleLayer
                                        ? QVector<double>{double(r + 1), double(coil.slotFrom + 1),
                                                          double(coil.slotTo + 1), double(coil.parallelPath)}
                                        : QVector<double>{double(r + 1),          double(coil.slotFrom + 1),
                                                          double(coil.layerFrom + 1), double(coil.slotTo + 1),
                                                          double(coil.layerTo + 1), double(coil.parallelPath)};
        for (int c = 0; c < columns; ++c)
            values[r + c * rows] = row.at(c);
    }
    return C::matrix(values, rows, QString());
}

// Pieces of one side and one kind, in mm³.
// Metres, with what is zero to the program written as 0.
double metres(double millimetres)
{
    const double value = millimetres / 1000.0;
    return std::abs(value) <= Numeric::zeroTolerance ? 0.0 : value;
}

matvar_t *pointsVar(const CDT::Snapshot &mesh)
{
    QVector<double> values;
    values.reserve(mesh.vertices.size() * 2);
    for (const CDT::Vertex &vertex : mesh.vertices)
        values << metres(vertex.point.x()) << metres(vertex.point.y());
    return C::matrix(values, 2, QString());
}

// Constrained edges, but the rows of the air gaps, which the solver slides.
matvar_t *edgesVar(const CDT::Snapshot &mesh)
{
    QVector<double> values;
    for (const CDT::Edge &edge : mesh.constraints) {
        if (mesh.vertices.at(edge.vertex0).type == CDT::VertexAirgapRow
            && mesh.vertices.at(edge.vertex1).type == CDT::VertexAirgapRow)
            continue;
        values << edge.vertex0 + 1 << edge.vertex1 + 1 << 0 << 0 << 0 << 0 << 0;
    }
    return C::matrix(values, 7, QString());
}

matvar_t *trianglesVar(const SliceData &slice)
{
    QVector<double> values;
    values.reserve(slice.meshFaces().size() * 4);
    for (const MeshFace &face : slice.meshFaces()) {
        values << face.vertices[0] + 1 << face.vertices[1] + 1 << face.vertices[2] + 1
               << (face.subdomain ? slice.indexSubdomain(*face.subdomain) : 0);
    }
    return C::matrix(values, 4, QString());
}

matvar_t *metresVar(const QList<double> &millimetres, const QString &name)
{
    QVector<double> values;
    for (double value : millimetres)
        values.append(value / 1000.0);
    return C::matVar(values, name);
}

} // namespace

MAT_Parcer::MAT_Parcer(Document *document)
    : m_document(document)
{
}

void MAT_Parcer::showCritical(const QString &text) const
{
    if (m_showMessageBoxes)
        UserMessage::critical(text);
}

bool MAT_Parcer::write(const QString &path)
{
    MatFileWriter file(path, 3);
    if (!file.isOpen())
        return false;
    if (m_document->isProtectedFile()) {
        for (const char *name : {"Geometry", "Windings", "Mesh", "Materials", "cell_MaterialType", "cell_Properties",
                                 "RadMesh", "motorProps", "Weight"})
            file.write(MatVarPointer(C::empty(QString::fromLatin1(name))), QString::fromLatin1(name));
        return file.commit();
    }
    file.write(geometryToMAT(), QStringLiteral("Geometry"));
    file.write(windingToMAT(), QStringLiteral("Windings"));
    const QList<MatVarPointer> meshes = meshToMAT();
    const QStringList meshNames{"cell_Properties", "cell_MaterialType", "Mesh", "RadMesh"};
    for (int i = 0; i < meshes.size(); ++i)
        file.write(meshes.at(i), meshNames.at(i));
    file.write(materialsToMAT(), QStringLiteral("Materials"));
    file.write(errorToMAT(), QStringLiteral("Error"));
    file.write(motorPropertiesToMAT(), motorPropsName);
    file.write(weightToMAT(), QStringLiteral("Weight"));
    return file.commit();
}

MatVarPointer MAT_Parcer::geometryToMAT() const
{
    const Document *doc = m_document;
    const WindingObject *winding = doc->winding();
    return MatVarPointer(C::structVar(
        QStringLiteral("Geometry"),
        {
            {"motortype", C::matVar(motorTypeText(doc->machineType()), "motortype")},
            {"Ns", C::matVar(doc->stator()->numberSlots(), "Ns")},
            {"lag", C::matVar(doc->airgap(Airgap::ID1)->thickness(), "lag")},
            {"slotlayertype", C::matVar(Winding::numberLayersString(winding->numberLayers()), "slotlayertype")},
            {"layerpos", C::matVar(Winding::toString(winding->layersOrientation()), "layerpos")},
            {"Ls", C::matVar(itemHeights(doc->stator()->activeItems()), "Ls")},
            {"Lr", C::matVar(itemHeights(doc->rotor()->activeItems()), "Lr")},
            {"coefs3D", C::matVar(doc->rotor()->coefs3D(), "coefs3D")},
        }));
}

MatVarPointer MAT_Parcer::windingToMAT() const
{
    const WindingObject *winding = m_document->winding();
    const bool singleLayer = winding->effectiveNumberLayers() == 1;
    const int countLayouts = winding->countLayouts();
    const QVector<Winding::Layout> layouts = winding->coilLayouts();
    QVector<QVector<matvar_t *>> phases(Winding::Count);
    for (int phase = Winding::A; phase < Winding::Count; ++phase) {
        for (int index = 0; index < countLayouts && index < layouts.size(); ++index)
            phases[phase].append(coilTable(layouts.at(index).at(phase), singleLayer));
    }
    return MatVarPointer(C::structVar(
        QStringLiteral("Windings"),
        {
            {"Npp", C::matVar(winding->parallelPaths(), "Npp")},
            {"W", C::matVar(winding->numberLayers() * winding->numberTurns(), "W")},
            {"nstrands", C::matVar(winding->strandsConductor(), "nstrands")},
            {"fillfactor", C::matVar(winding->coilFillFactor(), "fillfactor")},
            {"statorcircuit", C::matVar(Winding::toString(winding->circuit()), "statorcircuit")},
            {"nPolePairs", C::matVar(m_document->rotor()->numberPolePairs(), "nPolePairs")},
            {"layout1", C::matVar(phases.at(Winding::A), "layout1")},
            {"layout2", C::matVar(phases.at(Winding::B), "layout2")},
            {"layout3", C::matVar(phases.at(Winding::C), "layout3")},
            {"Hsew_outer", C::matVar(winding->heightOuterEndturn(), "Hsew_outer")},
            {"Hsew_inner", C::matVar(winding->heightInnerEndturn(), "Hsew_inner")},
            {"Lsew_inputmethod",
             C::matVar(winding->autoCalcEndInductance() ? "Automatic" : "Manual", "Lsew_inputmethod")},
            {"Lsew", C::matVar(winding->endInductance(), "Lsew")},
            {"Rs", C::matVar(winding->phaseResistance(), "Rs")},
            {"layoutmethod", C::matVar(Winding::toString(winding->modeLayout()), "layoutmethod")},
            {"nLayouts", C::matVar(countLayouts, "nLayouts")},
            {"statorconnection",
             C::matVar(countLayouts < 2 ? QString() : winding->connection(), "statorconnection")},
        }));
}

MatVarPointer MAT_Parcer::materialsToMAT() const
{
    const Stator *stator = m_document->stator();
    const Rotor *rotor = m_document->rotor();
    return MatVarPointer(C::structVar(
        QStringLiteral("Materials"),
        {
            {"statorwindingmaterial", C::matVar(stator->windingMaterial(), "statorwindingmaterial")},
            {"statorironmaterial", C::matVar(stator->ironMaterial(), "statorironmaterial")},
            {"k_st_stator", C::matVar(stator->ironStacking(), "k_st_stator")},
            {"rotorironmaterial", C::matVar(rotor->ironMaterial(), "rotorironmaterial")},
            {"k_st_rotor", C::matVar(rotor->ironStacking(), "k_st_rotor")},
            {"magnetmaterial", C::matVar(rotor->magnetMaterial(), "magnetmaterial")},
            {"Nmagnetsegments", C::matVar(rotor->magnetSegmentsRadialDirection(), "Nmagnetsegments")},
            {"conductormaterial", C::matVar(rotor->conductorMaterial(), "conductormaterial")},
            {"Tsw", C::matVar(stator->windingTemperature(), "Tsw")},
            {"Tpm", C::matVar(rotor->magnetTemperature(), "Tpm")},
            {"Tcon", C::matVar(rotor->conductorTemperature(), "Tcon")},
        }));
}

MatVarPointer MAT_Parcer::motorPropertiesToMAT() const
{
    return MatVarPointer(C::structVar(
        motorPropsName,
        {
            {"stator", C::matVar(m_document->stator()->properties(), "stator")},
            {"rotor", C::matVar(m_document->rotor()->properties(), "rotor")},
            {"windings", C::matVar(m_document->winding()->properties(), "windings")},
            {"airgap", C::matVar(m_document->airgap(Airgap::ID1)->thickness(), "airgap")},
            {"mesh", C::matVar(m_document->mesh()->properties(), "mesh")},
        }));
}

MatVarPointer MAT_Parcer::weightToMAT() const
{
    // The rotor iron goes as solid iron, without its stacking factor.
    const MaterialMasses masses = MaterialMasses::of(*m_document, m_document->pieces());
    return MatVarPointer(C::structVar(QStringLiteral("Weight"),
                                      {
                                          {"statoriron", C::matVar(masses.statorIron.orZero(), "statoriron")},
                                          {"rotoriron", C::matVar(masses.rotorIron.orZero(), "rotoriron")},
                                          {"statorwinding", C::matVar(masses.statorWinding.orZero(), "statorwinding")},
                                          {"magnet", C::matVar(masses.rotorMagnet.orZero(), "magnet")},
                                          {"conductor", C::matVar(masses.rotorConductor.orZero(), "conductor")},
                                      }));
}

MatVarPointer MAT_Parcer::errorToMAT() const
{
    QString text = m_document->errorText();
    text.replace(QLatin1Char('\n'), QStringLiteral(". "));
    return MatVarPointer(C::matVar(text.toUtf8(), QStringLiteral("Error")));
}

MatVarPointer MAT_Parcer::settingsMagnetostaticToMAT() const
{
    const MagnetostaticAnalysis *analysis = m_document->analysis();
    const DriveSettings *drive = m_document->driveSettings();
    return MatVarPointer(C::structVar(
        QStringLiteral("settingsMagnetostatic"),
        {
            {"MS_solvertype", C::matVar(MagnetostaticAnalysis::solverTypeName(analysis->solverType()), "MS_solvertype")},
            {"MS_tol", C::matVar(analysis->converganceTolerance(), "MS_tol")},
            {"MS_npoints", C::matVar(analysis->solverNumberPoints(), "MS_npoints")},
            {"MS_speed", C::matVar(analysis->mechanicalSpeed(), "MS_speed")},
            {"MS_currentwaveform", C::matVar(DriveSettings::waveformCurrentName(drive->waveformCurrent()), "MS_currentwaveform")},
            {"MS_gamma", C::matVar(analysis->advanceAngle(), "MS_gamma")},
            {"MS_currentinputmethod",
             C::matVar(DriveSettings::methodInputCurrentName(drive->methodInputCurrent()), "MS_currentinputmethod")},
            {"MS_I", C::matVar(drive->currentValue(), "MS_I")},
            {"MS_coggingtorque", C::matVar(analysis->computeCoggingTorque(), "MS_coggingtorque")},
            {"MS_saveeachsolution", C::matVar(analysis->saveEachFieldSolution(), "MS_saveeachsolution")},
            {"MS_saveeachsolutionfolder", C::matVar(analysis->folderFieldsSolution(), "MS_saveeachsolutionfolder")},
            {"MS_accuracy", C::matVar(MagnetostaticAnalysis::accuracyName(analysis->accuracy()), "MS_accuracy")},
            {"MS_timeselection",
             C::matVar(MagnetostaticAnalysis::timePeriodModeName(analysis->timePeriodMode()), "MS_timeselection")},
            {"MS_timefrom", C::matVar(analysis->timePeriod().first, "MS_timefrom")},
            {"MS_timeto", C::matVar(analysis->timePeriod().second, "MS_timeto")},
        }));
}

QVector<quint32> MAT_Parcer::scopesOf(bool stator) const
{
    QVector<quint32> scopes;
    const QVector<MotorItem *> items =
        stator ? m_document->stator()->activeItems() : m_document->rotor()->activeItems();
    for (const MotorItem *item : items)
        scopes.append(item->scope());
    return scopes;
}

QList<MatVarPointer> MAT_Parcer::meshToMAT() const
{
    QElapsedTimer timer;
    timer.start();
    const Mesh *mesh = m_document->mesh();
    const QVector<GeometryData> &geometries = mesh->geometrySlices();
    const QVector<CDT> &meshes = mesh->meshSlices();
    const int count = qMin(geometries.size(), meshes.size());
    const QVector<quint32> rotorScopes = scopesOf(false);
    const QVector<quint32> statorScopes = scopesOf(true);

    // The slices and, last, the radial model.
    std::vector<std::optional<SliceData>> made(static_cast<std::size_t>(count) + 1);
    tbb::parallel_for(0, count + 1, [&](int i) {
        if (i < count)
            made[std::size_t(i)].emplace(geometries.at(i).subdomains, meshes.at(i), rotorScopes, statorScopes);
        else
            made[std::size_t(i)].emplace(mesh->geometryRadial().subdomains, mesh->meshRadial(), rotorScopes,
                                         statorScopes);
    });
    const SliceData radial = std::move(*made.back());
    made.pop_back();
    std::vector<SliceData> slices;
    for (std::optional<SliceData> &slice : made)
        slices.push_back(std::move(*slice));
    qDebug() << "Create meshFaces finished at" << timer.elapsed() << "ms";

    QVector<matvar_t *> properties;
    QVector<matvar_t *> materialTypes;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        properties.append(sliceProperties(slices.at(i), int(i)));
        QVector<matvar_t *> keys;
        for (const QString &key : slices.at(i).materialTypes())
            keys.append(C::matVar(key, QString()));
        materialTypes.append(C::matVar(keys, QString()));
    }
    return {MatVarPointer(C::matVar(properties, QStringLiteral("cell_Properties"))),
            MatVarPointer(C::matVar(materialTypes, QStringLiteral("cell_MaterialType"))),
            MatVarPointer(meshVar(slices)), MatVarPointer(radialMeshVar(radial))};
}

matvar_t *MAT_Parcer::sliceProperties(const SliceData &slice, int sliceIndex) const
{
    const bool radialModel = sliceIndex < 0;
    static const QStringList sliceFields{"magnetization", "center_x", "center_y", "direction", "angle", "layer",
                                         "slot",          "nlayout",  "position", "fillcoef",  "d_somaloy"};
    // The radial model has no slot, layer or centre of its own, nor a slice's iron.
    static const QStringList radialFields = sliceFields.mid(0, 9);
    const QStringList &fields = radialModel ? radialFields : sliceFields;
    QVector<QVector<matvar_t *>> elements;
    for (const QSharedPointer<Subdomain> &region : slice.regions()) {
        const AbstractMaterial *material = region->material().data();
        const auto *magnet = dynamic_cast<const MagnetMaterial *>(material);
        const auto *winding = dynamic_cast<const WindingMaterial *>(material);
        const auto *iron = dynamic_cast<const IronMaterial *>(material);
        const bool radial = magnet && magnet->type == Magnetization::Type::Radial && !radialModel;
        const bool parallel = magnet && magnet->type == Magnetization::Type::Parallel;
        matvar_t *fillCoef = nullptr;
        if (iron && !radialModel && sliceIndex < iron->fillCoefs().size())
            fillCoef = C::matVar(iron->fillCoefs().at(sliceIndex), QString());
        matvar_t *dsomaloy = nullptr;
        if (iron && !radialModel)
            dsomaloy = C::matVar(std::abs(iron->dsomaloy()) <= Numeric::zeroTolerance ? 0.0 : iron->dsomaloy(), QString());
        const bool coil = winding && !radialModel;
        QVector<matvar_t *> element{
            C::matVar(magnet ? Magnetization::typeText(magnet->type) : QString(), QString()),
            C::matVar(radial ? magnet->center.x() : 0.0, QString()),
            C::matVar(radial ? magnet->center.y() : 0.0, QString()),
            C::matVar(magnet && magnet->type == Magnetization::Type::Radial
                          ? Magnetization::directionText(magnet->direction)
                          : QString(),
                      QString()),
            C::matVar(parallel ? magnet->effectiveAngle() : 0.0, QString()),
            C::matVar(coil ? winding->layer() : 0, QString()),
            C::matVar(coil ? winding->slot() : 0, QString()),
            C::matVar(coil ? winding->layout() : 0, QString()),
            C::matVar(scopeText(region->scope()).toLower(), QString()),
        };
        if (!radialModel)
            element << fillCoef << dsomaloy;
        elements.append(element);
    }
    return C::structArray(QStringLiteral("SubdomainProperties"), fields, elements);
}

matvar_t *MAT_Parcer::meshVar(const std::vector<SliceData> &slices) const
{
    QElapsedTimer timer;
    timer.start();
    const Mesh *mesh = m_document->mesh();
    QVector<matvar_t *> points, edges, triangles, rotorRows, statorRows;
    for (const SliceData &slice : slices)
        points.append(pointsVar(slice.mesh()));
    qDebug() << "mesh.p created at" << timer.elapsed() << "ms";
    for (const SliceData &slice : slices)
        edges.append(edgesVar(slice.mesh()));
    qDebug() << "mesh.e created at" << timer.elapsed() << "ms";
    for (const SliceData &slice : slices)
        triangles.append(trianglesVar(slice));
    qDebug() << "mesh.t created at" << timer.elapsed() << "ms";
    for (const SliceData &slice : slices) {
        rotorRows.append(sliceRows(slice, true));
        statorRows.append(sliceRows(slice, false));
    }
    return C::structVar(
        QStringLiteral("Mesh"),
        {
            {"nAirGapLayers", C::matVar(m_document->airgap(Airgap::ID1)->numberLayers(), "nAirGapLayers")},
            {"nSlices", C::matVar(mesh->numberSlices(), "nSlices")},
            {"perbndcnd", C::matVar(mesh->properties().value(QStringLiteral("perbndcnd")).toString(), "perbndcnd")},
            {"p", C::matVar(points, "p")},
            {"e", C::matVar(edges, "e")},
            {"t", C::matVar(triangles, "t")},
            {"ipslid_rotor", C::matVar(rotorRows, "ipslid_rotor")},
            {"ipslid_stator", C::matVar(statorRows, "ipslid_stator")},
            {"Rcs", metresVar(mesh->sliceRadii(), "Rcs")},
            {"L", metresVar(mesh->sliceWidths(), "L")},
            {"modified", C::matVar(mesh->isMeshModified(), "modified")},
        });
}

// The vertices of one side's innermost row in each gap, numbered from 1. Gaps are
// counted from the bottom; the rotor takes the lower row where a rotor lies below.
matvar_t *MAT_Parcer::sliceRows(const SliceData &slice, bool rotor) const
{
    const Machine::Type type = m_document->machineType();
    const bool rotorAtBottom = type == Machine::RSR || type == Machine::RSRSR;
    QVector<matvar_t *> gaps;
    const QVector<Airgap *> airgaps = m_document->airgaps();
    for (int c = 0; c < airgaps.size(); ++c) {
        const Airgap *gap = airgaps.at(c);
        const int n = gap->numberLayers();
        const double h = gap->thickness() / n;
        const double lower = gap->posBottom() + (n / 2) * h;
        const double upper = gap->posBottom() + (n - n / 2) * h;
        const bool rotorLower = rotorAtBottom ? c % 2 == 0 : c % 2 == 1;
        const double y = rotor == rotorLower ? lower : upper;
        QVector<double> numbers;
        const QVector<CDT::Vertex> &vertices = slice.mesh().vertices;
        for (int v = 0; v < vertices.size(); ++v) {
            if (std::abs(vertices.at(v).point.y() - y) <= Numeric::zeroTolerance)
                numbers.append(v + 1);
        }
        gaps.append(C::matVar(numbers, QString()));
    }
    return C::matVar(gaps, QString());
}

matvar_t *MAT_Parcer::radialMeshVar(const SliceData &radial) const
{
    QElapsedTimer timer;
    timer.start();
    matvar_t *points = pointsVar(radial.mesh());
    qDebug() << "RadMesh.p created at" << timer.elapsed() << "ms";
    matvar_t *edges = edgesVar(radial.mesh());
    qDebug() << "RadMesh.e created at" << timer.elapsed() << "ms";
    matvar_t *triangles = trianglesVar(radial);
    qDebug() << "RadMesh.t created at" << timer.elapsed() << "ms";
    QVector<matvar_t *> keys;
    for (const QString &key : radial.materialTypes())
        keys.append(C::matVar(key, QString()));
    return C::structVar(QStringLiteral("RadMesh"),
                        {
                            {"p", points},
                            {"e", edges},
                            {"t", triangles},
                            {"MaterialType", C::matVar(keys, "MaterialType")},
                            {"Properties", sliceProperties(radial, -1)},
                        });
}

bool MAT_Parcer::saveMotorProperties(const QString &path)
{
    MatFileWriter file(path, 1);
    if (!file.isOpen()) {
        showCritical(tr("Can't create MAT file %1").arg(path));
        return false;
    }
    file.write(motorPropertiesToMAT(), motorPropsName);
    return file.commit();
}

mat_t *MAT_Parcer::openForRead(const QString &path) const
{
    mat_t *mat = MatFileCheck::openForRead(path);
    if (!mat) {
        qCritical() << "Can't create MAT file" << path << "for read";
        showCritical(tr("Can't open file %1 for read").arg(path));
    }
    return mat;
}

bool MAT_Parcer::loadMotorProperties(const QString &path)
{
    mat_t *mat = openForRead(path);
    if (!mat)
        return false;
    const MatVarPointer variable(Mat_VarRead(mat, motorPropsName.toUtf8().constData()));
    Mat_Close(mat);
    if (!variable) {
        qCritical() << "Can't read 'motorProps'";
        showCritical(tr("The file '%1' is not contains properties").arg(path));
        return false;
    }

    // Every part is checked before anything is changed.
    const QVariant value = MAT_Converter::toVariant(variable.data());
    const QVariantMap props = value.toMap();
    const QVector<QPair<QString, QObject *>> elements{{"stator", m_document->stator()},
                                                      {"rotor", m_document->rotor()},
                                                      {"windings", m_document->winding()},
                                                      {"mesh", m_document->mesh()}};
    QStringList wrong;
    if (value.userType() != QMetaType::QVariantMap)
        wrong << motorPropsName;
    for (const auto &element : elements) {
        if (props.contains(element.first) && props.value(element.first).userType() != QMetaType::QVariantMap)
            wrong << motorPropsName + "." + element.first;
    }
    if (props.contains("airgap") && props.value("airgap").userType() != QMetaType::Double)
        wrong << motorPropsName + ".airgap";
    if (!wrong.isEmpty()) {
        qCritical().noquote() << "Error: wrong type of" << wrong.join(", ") << "in" << path;
        showCritical(tr("The file '%1' is not contains properties").arg(path));
        return false;
    }

    auto *command = new UndoCommand(tr("Set properties"));
    for (const auto &element : elements) {
        const QVariantMap map = props.value(element.first).toMap();
        if (props.contains(element.first) && map != element.second->property("properties").toMap())
            new CommandSetPropertyObject(element.second, "properties", map, command);
    }
    Airgap *gap = m_document->airgap(Airgap::ID1);
    if (props.contains("airgap") && !qFuzzyCompare(props.value("airgap").toDouble(), gap->thickness()))
        new CommandSetPropertyObject(gap, "thickness", props.value("airgap"), command);
    m_document->execCommand(command);
    return true;
}

QJsonObject MAT_Parcer::convertToJSON(const QString &path) const
{
    mat_t *mat = openForRead(path);
    if (!mat)
        return QJsonObject();
    size_t count = 0;
    char **dir = Mat_GetDir(mat, &count);
    QStringList names;
    for (size_t i = 0; i < count; ++i)
        names << QString::fromUtf8(dir[i]);
    QJsonObject json;
    for (const QString &name : qAsConst(names)) {
        qDebug() << name;
        const MatVarPointer variable(Mat_VarRead(mat, name.toUtf8().constData()));
        json.insert(name, variable ? QJsonValue::fromVariant(MAT_Converter::toVariant(variable.data()))
                                   : QJsonValue(QJsonValue::Null));
    }
    Mat_Close(mat);
    return json;
}
