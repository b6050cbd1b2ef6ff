#include "materials/MaterialDescribeEngine.h"

#include <QDebug>
#include <QDir>
#include <algorithm>

#include "materials/AbstractMaterial.h"

// The icons live in the static library, whose resources are only linked when asked for.
static void initMaterialResources()
{
    Q_INIT_RESOURCE(materials);
}

namespace {

QIcon prohibitionIcon()
{
    return QIcon(QStringLiteral(":/prohibition.png"));
}

} // namespace

MaterialDescribeEngine::MaterialDescribeEngine(const QSharedPointer<AbstractMaterial> &iconMaterial, QObject *parent)
    : QAbstractItemModel(parent)
    , m_iconMaterial(iconMaterial)
{
    static const bool resources = (initMaterialResources(), true);
    Q_UNUSED(resources)
}

MaterialDescribeEngine::~MaterialDescribeEngine() = default;

void MaterialDescribeEngine::build(const QString &folder, const char *missingFolderMessage)
{
    auto unassigned = std::make_unique<Node>();
    unassigned->record = newRecord();
    m_nodes.push_back(std::move(unassigned));

    if (!QFileInfo(folder).isDir()) {
        qCritical().noquote() << missingFolderMessage << folder;
        return;
    }
    scan(folder, nullptr);
    sortByName(m_nodes);
}

void MaterialDescribeEngine::scan(const QString &folder, Node *parent)
{
    NodeList &level = parent ? parent->children : m_nodes;
    const QDir dir(folder);
    for (const QFileInfo &info : dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        auto node = std::make_unique<Node>();
        node->kind = Node::Folder;
        node->record = newRecord();
        node->record->name = info.fileName();
        node->parent = parent;
        scan(info.filePath(), node.get());
        level.push_back(std::move(node));
    }
    for (const QFileInfo &info : dir.entryInfoList({QStringLiteral("*.txt")}, QDir::Files)) {
        std::unique_ptr<MaterialDescribe> record = readRecord(info.filePath());
        // A file without "<Description>" is no material.
        if (record->name.isEmpty())
            continue;
        auto node = std::make_unique<Node>();
        node->record = std::move(record);
        node->parent = parent;
        level.push_back(std::move(node));
    }
}

void MaterialDescribeEngine::sortByName(NodeList &nodes)
{
    // Stable, so that of two equal names the one read first stays first.
    std::stable_sort(nodes.begin(), nodes.end(), [](const auto &a, const auto &b) {
        return a->record->name < b->record->name;
    });
    for (auto &node : nodes)
        sortByName(node->children);
}

QModelIndex MaterialDescribeEngine::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, childrenOf(nodeOf(parent)).at(row).get());
}

QModelIndex MaterialDescribeEngine::parent(const QModelIndex &child) const
{
    const Node *node = nodeOf(child);
    if (!node || !node->parent)
        return {};
    return createIndex(rowOf(node->parent), 0, node->parent);
}

int MaterialDescribeEngine::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    return int(childrenOf(nodeOf(parent)).size());
}

int MaterialDescribeEngine::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant MaterialDescribeEngine::data(const QModelIndex &index, int role) const
{
    const Node *node = nodeOf(index);
    if (!node)
        return {};
    const MaterialDescribe &record = *node->record;
    switch (role) {
    case Qt::DisplayRole:
        return record.name.isEmpty() ? tr("Not assigned") : record.name;
    case Qt::DecorationRole:
        if (node->kind == Node::Folder)
            return QIcon(QStringLiteral(":/folder.png"));
        return record.name.isEmpty() ? prohibitionIcon() : materialIcon();
    case Qt::ToolTipRole: {
        QString tip = record.name;
        if (!record.description.isEmpty())
            tip += QLatin1Char('\n') + record.description;
        if (!record.source.isEmpty())
            tip += QLatin1Char('\n') + record.source;
        return tip;
    }
    case Qt::UserRole:
        return node->kind == Node::Material ? recordValue(record) : QVariant();
    default:
        return {};
    }
}

QModelIndex MaterialDescribeEngine::indexOf(const QString &name) const
{
    if (name.isEmpty())
        return index(0, 0);
    const Node *node = findNode(m_nodes, name);
    return node ? createIndex(rowOf(node), 0, const_cast<Node *>(node)) : QModelIndex();
}

QIcon MaterialDescribeEngine::iconOf(const QString &name) const
{
    if (name.isEmpty() || name == tr("Not assigned"))
        return prohibitionIcon();
    return materialIcon();
}

QIcon MaterialDescribeEngine::materialIcon() const
{
    return QIcon(pixmapOf(*m_iconMaterial, 16));
}

const MaterialDescribe *MaterialDescribeEngine::find(const QString &name) const
{
    if (name.isEmpty())
        return nullptr;
    const Node *node = findNode(m_nodes, name);
    return node ? node->record.get() : nullptr;
}

const MaterialDescribeEngine::Node *MaterialDescribeEngine::findNode(const NodeList &nodes, const QString &name) const
{
    for (const auto &node : nodes) {
        if (node->kind == Node::Material) {
            if (node->record->name == name)
                return node.get();
        } else if (const Node *found = findNode(node->children, name)) {
            return found;
        }
    }
    return nullptr;
}

const MaterialDescribeEngine::NodeList &MaterialDescribeEngine::childrenOf(const Node *node) const
{
    return node ? node->children : m_nodes;
}

int MaterialDescribeEngine::rowOf(const Node *node) const
{
    const NodeList &siblings = childrenOf(node->parent);
    const auto it = std::find_if(siblings.begin(), siblings.end(),
                                 [node](const auto &sibling) { return sibling.get() == node; });
    return int(it - siblings.begin());
}

MaterialDescribeEngine::Node *MaterialDescribeEngine::nodeOf(const QModelIndex &index)
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : nullptr;
}
