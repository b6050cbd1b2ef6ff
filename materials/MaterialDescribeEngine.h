#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <QSharedPointer>
#include <memory>
#include <vector>

#include "materials/MaterialDescribe.h"

class AbstractMaterial;

// A read-only tree of the library files of one material kind: folders and materials,
// each level sorted by name, with the unassigned row "Not assigned" first. It is filled
// once and never changes, so it may be read from any thread.
class MaterialDescribeEngine : public QAbstractItemModel
{
    Q_OBJECT
public:
    ~MaterialDescribeEngine() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // Row 0 for an empty name, an invalid index for a name the library lacks.
    QModelIndex indexOf(const QString &name) const;
    // The material icon for a name, the prohibition sign for no material. Whether the
    // material exists is not looked at.
    QIcon iconOf(const QString &name) const;
    // The first material of that name in the walk of the sorted tree, or null.
    const MaterialDescribe *find(const QString &name) const;

protected:
    // The icon of the kind's materials is that of a default role object. It is painted
    // when first shown, on the thread of the views, whichever thread reads the catalogue.
    MaterialDescribeEngine(const QSharedPointer<AbstractMaterial> &iconMaterial, QObject *parent);

    // Reads the kind's folder below the library folder; a concrete engine calls it from
    // its constructor, once its reader is in place.
    void build(const QString &folder, const char *missingFolderMessage);

private:
    struct Node
    {
        enum Kind { Folder = 0, Material = 1 };

        Kind kind = Material;
        std::unique_ptr<MaterialDescribe> record;
        Node *parent = nullptr;
        std::vector<std::unique_ptr<Node>> children;
    };
    using NodeList = std::vector<std::unique_ptr<Node>>;

    virtual std::unique_ptr<MaterialDescribe> newRecord() const = 0;
    virtual std::unique_ptr<MaterialDescribe> readRecord(const QString &filePath) const = 0;
    virtual QVariant recordValue(const MaterialDescribe &record) const = 0;

    void scan(const QString &folder, Node *parent);
    const NodeList &childrenOf(const Node *node) const;
    int rowOf(const Node *node) const;
    const Node *findNode(const NodeList &nodes, const QString &name) const;
    static Node *nodeOf(const QModelIndex &index);
    static void sortByName(NodeList &nodes);
    QIcon materialIcon() const;

    NodeList m_nodes;
    QSharedPointer<AbstractMaterial> m_iconMaterial;
};

// The catalogue of one record type: hands out typed records.
template <class Describe>
class MaterialEngine : public MaterialDescribeEngine
{
public:
    // Null for an empty name and for a name the library lacks.
    const Describe *describe(const QString &name) const { return static_cast<const Describe *>(find(name)); }

protected:
    using MaterialDescribeEngine::MaterialDescribeEngine;

private:
    std::unique_ptr<MaterialDescribe> newRecord() const override { return std::make_unique<Describe>(); }
    QVariant recordValue(const MaterialDescribe &record) const override
    {
        return QVariant::fromValue(static_cast<const Describe &>(record));
    }
};
