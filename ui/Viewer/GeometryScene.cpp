#include "ui/Viewer/GeometryScene.h"

#include <QApplication>
#include <QDebug>
#include <QSettings>
#include <QtConcurrent>

#include <AIS_Shape.hxx>
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <Bnd_Box.hxx>
#include <Prs3d_Drawer.hxx>
#include <Prs3d_LineAspect.hxx>
#include <Prs3d_ShadingAspect.hxx>

#include "base/Tbb.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/servoce/step.h"
#include "materials/AbstractMaterial.h"
#include "materials/MagnetMaterial.h"
#include "meshing/Mesh.h"
#include "ui/Viewer/MagnetShape.h"

namespace {

const QStringList visibilityKeys{
    QStringLiteral("VisibleGeneral"),      QStringLiteral("VisibleStatorIron"), QStringLiteral("VisibleStatorWinding"),
    QStringLiteral("VisibleStatorEndturn"), QStringLiteral("VisibleRotorIron"), QStringLiteral("VisibleRotorConductor"),
    QStringLiteral("VisibleRotorMagnet")};

// The interactive object remembers its piece by its index in the scene.
class PieceOwner : public Standard_Transient
{
public:
    explicit PieceOwner(int index) : index(index) {}
    const int index;
};

// Shaded presentations are computed with the same relative deflection as the
// viewer's default, so that the triangulation made here on the worker is used as is.
void triangulate(const PieceList &pieces)
{
    const double deviationCoefficient = 0.001;
    const double deviationAngle = 20.0 * M_PI / 180.0;
    tbb::parallel_for(0, int(pieces.size()), [&](int i) {
        const TopoDS_Shape &shape = pieces.at(i).shape().Shape();
        if (shape.IsNull())
            return;
        Bnd_Box box;
        BRepBndLib::Add(shape, box);
        if (box.IsVoid())
            return;
        double xmin, ymin, zmin, xmax, ymax, zmax;
        box.Get(xmin, ymin, zmin, xmax, ymax, zmax);
        const double extent = std::max({xmax - xmin, ymax - ymin, zmax - zmin});
        BRepMesh_IncrementalMesh(shape, extent * deviationCoefficient * 4.0, Standard_False, deviationAngle, Standard_False);
    });
}

Quantity_Color toColor(const QColor &color)
{
    return Quantity_Color(color.redF(), color.greenF(), color.blueF(), Quantity_TOC_sRGB);
}

} // namespace

GeometryScene::GeometryScene(Document *document, const QString &name, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_name(name)
{
    setObjectName(name);
    connect(&m_watcher, &QFutureWatcher<PieceList>::finished, this, &GeometryScene::generationFinished);
    m_changeTimer.setSingleShot(true);
    m_changeTimer.setInterval(0);
    connect(&m_changeTimer, &QTimer::timeout, this, &GeometryScene::applyChanges);
    // Every scene shows pieces of the document: any change of them is a change here.
    connect(document, &Document::pieceReset, this, &GeometryScene::scheduleChanges);
    for (MotorElement *element : {static_cast<MotorElement *>(document->stator()),
                                  static_cast<MotorElement *>(document->rotor())})
        connect(element, &MotorElement::pieceReset, this, &GeometryScene::scheduleChanges);
    for (Airgap *gap : document->airgaps())
        connect(gap, &Airgap::airgapChanged, this, &GeometryScene::scheduleChanges);
    loadSettings();
}

GeometryScene::~GeometryScene()
{
    saveSettings();
    m_watcher.waitForFinished();
    if (m_generating)
        QApplication::restoreOverrideCursor();
}

void GeometryScene::loadSettings()
{
    QSettings settings;
    settings.beginGroup(m_name);
    m_visibleScopes = Piece::Scopes(settings.value(QStringLiteral("VisibleScopes"), uint(m_visibleScopes)).toUInt());
    for (const QString &key : visibilityKeys)
        m_visibleMaterials[key] = settings.value(key, m_visibleMaterials.value(key, true)).toBool();
    settings.endGroup();
}

void GeometryScene::saveSettings() const
{
    QSettings settings;
    settings.beginGroup(m_name);
    settings.setValue(QStringLiteral("VisibleScopes"), uint(m_visibleScopes));
    for (const QString &key : visibilityKeys)
        settings.setValue(key, m_visibleMaterials.value(key, true));
    settings.endGroup();
}

QString GeometryScene::visibilityKey(Piece::Scope scope, qint32 kind)
{
    if (kind == AbstractMaterial::GeneralKind)
        return QStringLiteral("VisibleGeneral");
    if (Piece::Scopes(scope) & Piece::StatorMask) {
        switch (kind) {
        case AbstractMaterial::IronKind:
            return QStringLiteral("VisibleStatorIron");
        case AbstractMaterial::WindingKind:
            return QStringLiteral("VisibleStatorWinding");
        case AbstractMaterial::EndturnKind:
            return QStringLiteral("VisibleStatorEndturn");
        default:
            return QString();
        }
    }
    if (Piece::Scopes(scope) & Piece::RotorMask) {
        switch (kind) {
        case AbstractMaterial::IronKind:
            return QStringLiteral("VisibleRotorIron");
        case AbstractMaterial::ConductorKind:
            return QStringLiteral("VisibleRotorConductor");
        case AbstractMaterial::MagnetKind:
            return QStringLiteral("VisibleRotorMagnet");
        default:
            return QString();
        }
    }
    return QString();
}

void GeometryScene::setVisibleScopes(Piece::Scopes scopes)
{
    if (m_visibleScopes == scopes)
        return;
    m_visibleScopes = scopes;
    emit visibleScopesChanged(m_visibleScopes);
    setPieces(m_pieces);
}

void GeometryScene::setMaterialVisible(const QString &key, bool visible)
{
    if (m_visibleMaterials.value(key, true) == visible)
        return;
    m_visibleMaterials[key] = visible;
    emit visibleMaterialChanged();
    setPieces(m_pieces);
}

bool GeometryScene::isPieceVisible(const Piece &piece) const
{
    const Piece::Scopes bodies = Piece::StatorMask | Piece::RotorMask;
    if ((Piece::Scopes(piece.scope()) & bodies) && !(m_visibleScopes & piece.scope()))
        return false;
    const QString key = visibilityKey(piece.scope(), piece.kind());
    return key.isEmpty() || m_visibleMaterials.value(key, true);
}

void GeometryScene::setPieces(const PieceList &pieces)
{
    setPieces(pieces, 0.0);
}

void GeometryScene::setPieces(const PieceList &pieces, const double &transparency)
{
    const PieceList kept = pieces;
    m_objects.clear();
    m_pieces.clear();
    for (const Piece &piece : kept) {
        if (piece.shape().is_null()) {
            qCritical() << "Error: Can't add null shape";
            continue;
        }
        m_pieces.append(piece);
        if (!isPieceVisible(piece))
            continue;
        Handle(AIS_InteractiveObject) object = objectOf(piece, transparency);
        object->SetOwner(new PieceOwner(m_pieces.size() - 1));
        m_objects.append(object);
    }
    const SectionGuides::AxialExtent extent = SectionGuides::axialExtentOf(m_pieces);
    if (!extent.isEmpty())
        m_objects += guides(extent);
    emit redrawScene();
}

void GeometryScene::setShowSlicePlanes(bool show)
{
    if (m_showSlicePlanes == show)
        return;
    m_showSlicePlanes = show;
    emit showSlicePlanesChanged(show);
    setPieces(m_pieces);
}

QVector<Handle(AIS_InteractiveObject)> GeometryScene::guides(const SectionGuides::AxialExtent &extent) const
{
    QVector<Handle(AIS_InteractiveObject)> drawn;
    if (!m_showSlicePlanes)
        return drawn;
    const QList<double> radii = m_document->mesh()->sliceRadii();
    const QList<double> widths = m_document->mesh()->sliceWidths();
    const QColor color(70, 130, 220);
    for (int i = 0; i < radii.size(); ++i)
        drawn.append(SectionGuides::cylinder(radii.at(i) - widths.at(i) / 2.0, extent, color));
    if (!radii.isEmpty())
        drawn.append(SectionGuides::cylinder(radii.last() + widths.last() / 2.0, extent, color));
    return drawn;
}

Handle(AIS_InteractiveObject) GeometryScene::objectOf(const Piece &piece, double transparency) const
{
    const QSharedPointer<AbstractMaterial> material = piece.material();
    const QColor color = colorOf(piece);
    const auto magnet = material.dynamicCast<MagnetMaterial>();
    if (magnet) {
        Handle(MagnetShape) shape = new MagnetShape(piece.shape().Shape(), *magnet, color);
        return shape;
    }
    Handle(AIS_Shape) shape = new AIS_Shape(piece.shape().Shape());
    shape->SetMaterial(Graphic3d_NameOfMaterial_Plastered);
    shape->SetColor(toColor(color));
    shape->Attributes()->SetFaceBoundaryDraw(Standard_True);
    shape->Attributes()->FaceBoundaryAspect()->SetColor(toColor(color.darker()));
    const double alpha = 1.0 - color.alphaF();
    if (transparency > 0.0 || alpha > 0.0)
        shape->SetTransparency(std::max(transparency, alpha));
    return shape;
}

QColor GeometryScene::colorOf(const Piece &piece) const
{
    const QSharedPointer<AbstractMaterial> material = piece.material();
    return material ? material->color() : materialTypeColor(AbstractMaterial::EmptyKind);
}

Piece GeometryScene::pieceOf(const Handle(AIS_InteractiveObject) &object) const
{
    if (object.IsNull())
        return Piece();
    Handle(PieceOwner) owner = Handle(PieceOwner)::DownCast(object->GetOwner());
    if (owner.IsNull() || owner->index < 0 || owner->index >= m_pieces.size())
        return Piece();
    return m_pieces.at(owner->index);
}

bool GeometryScene::exportToSTEP(const QString &path)
{
    std::vector<servoce::coloured_shape> bodies;
    for (const Piece &piece : std::as_const(m_pieces)) {
        const QSharedPointer<AbstractMaterial> material = piece.material();
        const QColor color = material ? material->color() : materialTypeColor(AbstractMaterial::EmptyKind);
        bodies.push_back({piece.shape(), color.redF(), color.greenF(), color.blueF()});
    }
    return servoce::write_step(bodies, path.toStdString());
}

void GeometryScene::setShown(bool shown)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    if (shown && (!m_drawn || !m_outOfDate))
        applyChanges();
}

void GeometryScene::setApplyRightAway(bool rightAway)
{
    if (m_applyRightAway == rightAway)
        return;
    m_applyRightAway = rightAway;
    if (rightAway && m_outOfDate)
        scheduleChanges();
}

void GeometryScene::setOutOfDate(bool outOfDate)
{
    if (m_outOfDate == outOfDate)
        return;
    m_outOfDate = outOfDate;
    emit outOfDateChanged(outOfDate);
}

void GeometryScene::scheduleChanges()
{
    if (m_drawn && !m_applyRightAway)
        setOutOfDate(true);
    else
        m_changeTimer.start();
}

void GeometryScene::applyChanges()
{
    if (!m_shown)
        return;
    setOutOfDate(false);
    if (m_generating) {
        qInfo().noquote() << QStringLiteral("Geometry generating, skip apply change %1").arg(m_name);
        m_changedMeanwhile = true;
        return;
    }
    m_generating = true;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    requestPieces();
}

void GeometryScene::requestPieces()
{
    if (m_watcher.isRunning()) {
        qWarning() << "requestPieces is running";
        return;
    }
    emit progressCreateScene(tr("Generating %1 geometry...").arg(m_name.toLower()));
    m_watcher.setFuture(QtConcurrent::run([this] {
        PieceList pieces = buildPieces();
        triangulate(pieces);
        return pieces;
    }));
}

void GeometryScene::generationFinished()
{
    createScene(m_watcher.result());
    m_drawn = true;
    m_generating = false;
    QApplication::restoreOverrideCursor();
    emit progressCreateScene(QString());
    // A change while the pieces were built leaves the document without pieces; it is
    // drawn now unless it waits for the user.
    if (!m_outOfDate && (m_changedMeanwhile || !m_document->hasPieces())) {
        m_changedMeanwhile = false;
        applyChanges();
    }
}

void GeometryScene::createScene(const PieceList &pieces)
{
    setPieces(pieces);
}
