#pragma once

#include <QAbstractItemModel>
#include <QStyledItemDelegate>
#include <QTreeView>

#include "winding/Winding.h"

class Document;
class WindingObject;

// The coils of one layout as a tree: a row per phase, and under it a row per coil.
// Only the base layout of a manual winding can be edited; each edit is one undoable
// change of the winding's layout.
class LayoutCoilsModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { CoilColumn, SlotFromColumn, LayerFromColumn, SlotToColumn, LayerToColumn, DirectionColumn,
                  PathColumn, ColumnCount };

    explicit LayoutCoilsModel(Document *document, QObject *parent = nullptr);

    int layoutIndex() const { return m_layoutIndex; }
    void setLayoutIndex(int index);

    // The coil of a coil row; none for a phase row.
    Winding::CurrentCoil coilAt(const QModelIndex &index) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // The upper limit of a column's number, as the user counts.
    int maximum(int column) const;

private:
    void reload();
    Winding::Layout shownLayout() const;
    // Why a cell is wrong; empty for a right one.
    QString cellError(const Winding::Coil &coil, int column) const;

    Document *m_document;
    WindingObject *m_winding;
    int m_layoutIndex = 0;
    Winding::Layout m_layout;
};

// Spin boxes whose limits are those of the column.
class LayoutCoilItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

// The coil table: selecting a coil makes it the winding's current coil.
class LayoutCoilsView : public QTreeView
{
    Q_OBJECT
public:
    LayoutCoilsView(Document *document, QWidget *parent = nullptr);

    LayoutCoilsModel *coilsModel() const { return m_model; }

private:
    void followMode();
    void selectCurrentCoil();

    WindingObject *m_winding;
    LayoutCoilsModel *m_model;
};
