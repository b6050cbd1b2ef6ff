#include "ui/MeshViewer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>
#include <QGridLayout>
#include <QVBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QTimer>

#include "document/Document.h"
#include "materials/AbstractMaterial.h"
#include "meshing/GeometryData.h"
#include "meshing/Mesh.h"
#include "ui/RuleZoomViewer.h"

namespace {

// A region in its material's picture, or a light fill of its outline.
class SubdomainItem : public QGraphicsItem
{
public:
    SubdomainItem(QSharedPointer<Subdomain> subdomain, bool material)
        : m_subdomain(std::move(subdomain))
        , m_material(material)
    {
        setZValue(-1.0);
    }

    QRectF boundingRect() const override { return m_subdomain->path().boundingRect(); }
    QPainterPath shape() const override { return m_subdomain->path(); }
    const Subdomain &subdomain() const { return *m_subdomain; }

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *) override
    {
        const QSharedPointer<AbstractMaterial> material = m_subdomain->material();
        if (m_material && material) {
            const double scale = option->levelOfDetailFromTransform(painter->worldTransform());
            material->draw(painter, m_subdomain->path(), scale, option->exposedRect, false);
            return;
        }
        painter->setPen(QPen(QColor(120, 120, 120), 0.0));
        painter->setBrush(QColor(235, 240, 248));
        painter->drawPath(m_subdomain->path());
    }

private:
    QSharedPointer<Subdomain> m_subdomain;
    bool m_material;
};

} // namespace

MeshScene::MeshScene(QObject *parent)
    : QGraphicsScene(parent)
{
}

void MeshScene::showModel(const GeometryData &geometry, const CDT &mesh, bool materials)
{
    clear();
    m_meshItem = nullptr;
    m_problemItems.clear();
    m_counts = Counts();
    for (const QSharedPointer<Subdomain> &subdomain : geometry.subdomains)
        addItem(new SubdomainItem(subdomain, materials));
    // What a contour could not close: free segments and open ends.
    QPainterPath problems;
    const auto node = [&geometry](qint64 index) {
        return index >= 0 && index < geometry.nodes.size() ? QPointF(geometry.nodes.at(int(index))) : QPointF();
    };
    for (const SegmentPtr &segment : geometry.freeSegments) {
        problems.moveTo(node(segment->node0));
        problems.lineTo(node(segment->node1));
    }
    auto *segments = addPath(problems, QPen(Qt::red, 0.0));
    segments->setZValue(2.0);
    m_problemItems.append(segments);
    for (const PointF &point : geometry.openPoints) {
        auto *mark = addEllipse(QRectF(point - QPointF(0.3, 0.3), QSizeF(0.6, 0.6)), QPen(Qt::red, 0.0),
                                QBrush(Qt::red));
        mark->setZValue(2.0);
        m_problemItems.append(mark);
    }

    const CDT::Snapshot snapshot = mesh.snapshot();
    m_counts.vertices = snapshot.vertices.size();
    for (const CDT::Face &face : snapshot.faces)
        m_counts.triangles += face.inDomain ? 1 : 0;
    m_meshItem = new GraphicsMeshItem(snapshot);
    m_meshItem->setZValue(1.0);
    addItem(m_meshItem);
    m_counts.edges = m_meshItem->edgeCount();
    setSceneRect(itemsBoundingRect());
}

void MeshScene::setSwitches(const GraphicsMeshItem::Switches &switches, bool problems)
{
    if (m_meshItem)
        m_meshItem->setSwitches(switches);
    for (QGraphicsItem *item : m_problemItems)
        item->setVisible(problems);
}

QString MeshScene::regionAt(const QPointF &point) const
{
    for (QGraphicsItem *item : items(point)) {
        if (auto *region = dynamic_cast<SubdomainItem *>(item)) {
            const Subdomain &subdomain = region->subdomain();
            const QString material = subdomain.material() ? subdomain.material()->description() : tr("no material");
            return tr("Region %1: %2").arg(subdomain.id()).arg(material);
        }
    }
    return {};
}

void MeshScene::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    QGraphicsScene::mousePressEvent(event);
    emit regionClicked(regionAt(event->scenePos()));
}

void MeshScene::setErrorFlag(bool error)
{
    m_error = error;
    update();
}

void MeshScene::drawForeground(QPainter *painter, const QRectF &rect)
{
    QGraphicsScene::drawForeground(painter, rect);
    if (m_error)
        painter->fillRect(rect, QColor(0, 0, 0, 16));
}

MeshViewer::MeshViewer(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_models(new QComboBox(this))
    , m_view(new RuleZoomViewer(this))
    , m_scene(new MeshScene(this))
    , m_generating(new QLabel(tr("Generating mesh..."), m_view))
    , m_region(new QLabel(this))
    , m_switches(new QWidget(this))
{
    setObjectName(QStringLiteral("MeshViewer"));
    m_models->setObjectName(QStringLiteral("comboBoxModels"));
    m_view->setScene(m_scene);
    m_generating->setObjectName(QStringLiteral("labelGenerating"));
    m_generating->setStyleSheet(QStringLiteral("background-color: rgba(245, 245, 245, 160); padding: 3"));
    m_generating->move(8, 8);
    m_generating->hide();

    m_switches->setObjectName(QStringLiteral("MeshControlWidgets"));
    auto *switches = new QVBoxLayout(m_switches);
    m_edges = addSwitch(tr("Show &mesh"), QStringLiteral("Alt+V"), true);
    m_nodes = addSwitch(tr("Show nodes"), QStringLiteral("Alt+N"), false);
    m_constraints = addSwitch(tr("Show constraints"), QStringLiteral("Alt+C"), true);
    m_problems = addSwitch(tr("Show problem segments"), QStringLiteral("Alt+P"), true);
    m_materials = addSwitch(tr("Show subdomains with material types"), QStringLiteral("Alt+S"), true);
    for (QCheckBox *box : {m_edges, m_nodes, m_constraints, m_problems, m_materials})
        switches->addWidget(box);
    switches->addStretch();

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_models, 0, 0);
    m_region->setObjectName(QStringLiteral("labelRegion"));
    layout->addWidget(m_region, 0, 1);
    layout->addWidget(m_view, 1, 0, 1, 2);
    connect(m_scene, &MeshScene::regionClicked, m_region, &QLabel::setText);
    layout->setColumnStretch(1, 1);

    Mesh *mesh = m_document->mesh();
    connect(m_models, qOverload<int>(&QComboBox::currentIndexChanged), this, &MeshViewer::showModel);
    connect(mesh, &Mesh::numberSlicesChanged, this, &MeshViewer::fillModels);
    connect(mesh, &Mesh::generateMeshStart, m_generating, &QWidget::show);
    connect(mesh, &Mesh::generateMeshFinished, this, [this] {
        m_generating->hide();
        showModel();
    });
    connect(mesh, &Mesh::meshErrorsChanged, this,
            [this](MeshErrors errors) { m_scene->setErrorFlag(errors != MeshErrors()); });
    connect(m_materials, &QCheckBox::toggled, this, &MeshViewer::showModel);
    for (QCheckBox *box : {m_edges, m_nodes, m_constraints, m_problems})
        connect(box, &QCheckBox::toggled, this, &MeshViewer::applySwitches);
    fillModels();
}

QCheckBox *MeshViewer::addSwitch(const QString &text, const QString &key, bool checked)
{
    auto *box = new QCheckBox(text, m_switches);
    box->setShortcut(QKeySequence(key));
    box->setToolTip(key);
    box->setChecked(checked);
    return box;
}

void MeshViewer::fillModels()
{
    const QSignalBlocker blocker(m_models);
    const int current = m_models->currentIndex();
    m_models->clear();
    const QList<double> radii = m_document->mesh()->sliceRadii();
    for (int i = 0; i < m_document->mesh()->numberSlices(); ++i) {
        const QString radius = i < radii.size() ? QString::number(radii.at(i), 'g') : QStringLiteral("?");
        m_models->addItem(tr("Cylindrical mesh %1 (radius %2 mm)").arg(i + 1).arg(radius));
    }
    m_models->addItem(tr("Radial mesh"));
    m_models->setCurrentIndex(qBound(0, current, m_models->count() - 1));
    showModel();
}

void MeshViewer::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    showModel();
}

void MeshViewer::requestMesh()
{
    if (m_meshRequested)
        return;
    m_meshRequested = true;
    m_generating->show();
    // After the page is drawn: the user sees what is coming.
    QTimer::singleShot(0, this, [this] {
        m_document->ensureData();
        m_meshRequested = false;
        m_generating->hide();
        fillModels();
    });
}

void MeshViewer::showModel()
{
    if (!isVisible())
        return;
    Mesh *mesh = m_document->mesh();
    if (mesh->isMeshInvalid() || mesh->meshSlices().isEmpty()) {
        requestMesh();
        return;
    }
    const int index = m_models->currentIndex();
    const bool radial = index >= mesh->meshSlices().size() || index < 0;
    if (radial)
        m_scene->showModel(mesh->geometryRadial(), mesh->meshRadial(), m_materials->isChecked());
    else
        m_scene->showModel(mesh->geometrySlices().value(index), mesh->meshSlices().at(index), m_materials->isChecked());
    applySwitches();
    m_scene->setErrorFlag(mesh->meshErrors() != MeshErrors());
    m_view->zoomFit();
    emit countsChanged(m_scene->counts());
}

void MeshViewer::applySwitches()
{
    m_scene->setSwitches({m_edges->isChecked(), m_constraints->isChecked(), m_nodes->isChecked()},
                         m_problems->isChecked());
}
