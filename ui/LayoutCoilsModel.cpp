#include "ui/LayoutCoilsModel.h"

#include <QSpinBox>

#include "document/Document.h"
#include "geometry/Stator.h"
#include "winding/WindingObject.h"

namespace {

// Coil rows carry the phase in their internal id, phase rows carry none.
constexpr quintptr phaseRowId = quintptr(-1);

} // namespace

LayoutCoilsModel::LayoutCoilsModel(Document *document, QObject *parent)
    : QAbstractItemModel(parent)
    , m_document(document)
    , m_winding(document->winding())
{
    for (auto signal : {&WindingObject::layoutsChanged, &WindingObject::modeLayoutChanged,
                        &WindingObject::countLayoutsChanged})
        connect(m_winding, signal, this, &LayoutCoilsModel::reload);
    reload();
}

void LayoutCoilsModel::setLayoutIndex(int index)
{
    if (index == m_layoutIndex)
        return;
    m_layoutIndex = index;
    reload();
}

void LayoutCoilsModel::reload()
{
    beginResetModel();
    m_layout = shownLayout();
    endResetModel();
}

Winding::Layout LayoutCoilsModel::shownLayout() const
{
    const QVector<Winding::Layout> layouts = m_winding->coilLayouts();
    if (m_layoutIndex == 0 && layouts.isEmpty())
        return m_winding->layout();
    return layouts.value(m_layoutIndex, Winding::Layout());
}

Winding::CurrentCoil LayoutCoilsModel::coilAt(const QModelIndex &index) const
{
    Winding::CurrentCoil current;
    if (!index.isValid() || index.internalId() == phaseRowId)
        return current;
    const int phase = int(index.internalId());
    current.phase = Winding::Phase(phase);
    current.layout = m_layoutIndex;
    current.coil = m_layout.at(phase).value(index.row(), Winding::Coil::none());
    return current;
}

QModelIndex LayoutCoilsModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, column, phaseRowId);
    return createIndex(row, column, quintptr(parent.row()));
}

QModelIndex LayoutCoilsModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == phaseRowId)
        return {};
    return createIndex(int(child.internalId()), 0, phaseRowId);
}

int LayoutCoilsModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return m_layout.size();
    if (parent.internalId() != phaseRowId || parent.column() != 0)
        return 0;
    return m_layout.at(parent.row()).size();
}

int LayoutCoilsModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

int LayoutCoilsModel::maximum(int column) const
{
    switch (column) {
    case SlotFromColumn:
    case SlotToColumn:
        return m_document->stator()->numberSlots();
    case LayerFromColumn:
    case LayerToColumn:
        return m_winding->effectiveNumberLayers();
    case PathColumn:
        return m_winding->parallelPaths();
    default:
        return 0;
    }
}

QString LayoutCoilsModel::cellError(const Winding::Coil &coil, int column) const
{
    const int slotCount = m_document->stator()->numberSlots();
    switch (column) {
    case SlotFromColumn:
    case SlotToColumn: {
        const int slot = column == SlotFromColumn ? coil.slotFrom : coil.slotTo;
        if (slot >= slotCount || slot < 0 || (m_winding->isToroidal() && coil.slotFrom != coil.slotTo))
            return tr("Incorrect slot number.");
        return {};
    }
    case LayerFromColumn:
    case LayerToColumn: {
        const int layer = column == LayerFromColumn ? coil.layerFrom : coil.layerTo;
        return layer >= m_winding->effectiveNumberLayers() || layer < 0 ? tr("Incorrect layer number.") : QString();
    }
    case PathColumn:
        return coil.parallelPath > m_winding->parallelPaths() ? tr("Incorrect parallel path number.") : QString();
    default:
        return {};
    }
}

QVariant LayoutCoilsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (index.internalId() == phaseRowId) {
        const auto phase = Winding::Phase(index.row());
        if (role == Qt::DisplayRole && index.column() == 0)
            return tr("Phase %1").arg(Winding::toString(phase));
        if (role == Qt::BackgroundRole)
            return Winding::phaseColor(phase, true);
        if (role == Qt::ForegroundRole)
            return Winding::phaseTextColor(phase);
        return {};
    }
    const auto phase = Winding::Phase(index.internalId());
    const Winding::Coil coil = m_layout.at(phase).value(index.row());
    const QString error = cellError(coil, index.column());
    const bool manual = m_winding->modeLayout() == Winding::Manual;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        switch (index.column()) {
        case CoilColumn: return index.row() + 1;
        case SlotFromColumn: return coil.slotFrom + 1;
        case LayerFromColumn: return coil.layerFrom + 1;
        case SlotToColumn: return coil.slotTo + 1;
        case LayerToColumn: return coil.layerTo + 1;
        case DirectionColumn: return Winding::toString(coil.orientation);
        case PathColumn: return coil.parallelPath;
        default: return {};
        }
    case Qt::ToolTipRole:
        if (!error.isEmpty())
            return error;
        if (manual && m_layoutIndex != 0)
            return tr("Only Winding layout: #1 can be edited.");
        return {};
    case Qt::BackgroundRole:
        return Winding::phaseColor(phase, true).lighter(105);
    case Qt::ForegroundRole:
        return error.isEmpty() ? Winding::phaseTextColor(phase) : QColor(Qt::red);
    default:
        return {};
    }
}

QVariant LayoutCoilsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    static const char *const headers[] = {"Coil #", "S# from", "L# from", "S# to", "L# to", "Dir    ", "P/path #"};
    static const char *const tips[] = {"", "Slot # from", "Layer # from", "Slot # to", "Layer # to", "",
                                       "Parallel path #"};
    if (section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return tr(headers[section]);
    if (role == Qt::ToolTipRole && *tips[section])
        return tr(tips[section]);
    return {};
}

Qt::ItemFlags LayoutCoilsModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    const bool editableColumn = index.column() != CoilColumn && index.column() != DirectionColumn;
    if (index.isValid() && index.internalId() != phaseRowId && editableColumn
        && m_winding->modeLayout() == Winding::Manual && m_layoutIndex == 0)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool LayoutCoilsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    bool ok = false;
    const int shown = value.toInt(&ok);
    if (!ok)
        return false;
    const int number = shown - 1;
    Winding::Layout layout = m_winding->layout();
    const int phase = int(index.internalId());
    if (index.row() >= layout.at(phase).size())
        return false;
    Winding::Coil &coil = layout[phase][index.row()];
    const bool toroidal = m_winding->isToroidal();
    const bool doubleLayer = m_winding->isDoubleLayer();
    switch (index.column()) {
    case SlotFromColumn:
        coil.slotFrom = number;
        if (toroidal)
            coil.slotTo = number;
        break;
    case SlotToColumn:
        coil.slotTo = number;
        if (toroidal)
            coil.slotFrom = number;
        break;
    case LayerFromColumn:
        coil.layerFrom = number;
        // The two sides of a double-layer coil lie in different layers.
        if (doubleLayer)
            coil.layerTo = shown == 1 ? 1 : 0;
        break;
    case LayerToColumn:
        coil.layerTo = number;
        if (doubleLayer)
            coil.layerFrom = shown == 1 ? 1 : 0;
        break;
    case PathColumn:
        coil.parallelPath = shown;
        break;
    default:
        return false;
    }
    m_document->setPropertyUndoable(m_winding, QStringLiteral("layout"), QVariant::fromValue(layout));
    return true;
}

QWidget *LayoutCoilItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    auto *model = qobject_cast<const LayoutCoilsModel *>(index.model());
    auto *box = new QSpinBox(parent);
    box->setFrame(false);
    box->setRange(1, model ? qMax(1, model->maximum(index.column())) : 1);
    return box;
}

LayoutCoilsView::LayoutCoilsView(Document *document, QWidget *parent)
    : QTreeView(parent)
    , m_winding(document->winding())
    , m_model(new LayoutCoilsModel(document, this))
{
    setObjectName(QStringLiteral("viewLayoutCoils"));
    setModel(m_model);
    setItemDelegate(new LayoutCoilItemDelegate(this));
    setAlternatingRowColors(false);
    setUniformRowHeights(true);
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] {
        expandAll();
        for (int column = 0; column < LayoutCoilsModel::ColumnCount; ++column)
            resizeColumnToContents(column);
    });
    connect(m_winding, &WindingObject::modeLayoutChanged, this, &LayoutCoilsView::followMode);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &LayoutCoilsView::selectCurrentCoil);
    followMode();
    expandAll();
}

void LayoutCoilsView::followMode()
{
    const bool manual = m_winding->modeLayout() == Winding::Manual;
    setSelectionBehavior(manual ? QAbstractItemView::SelectItems : QAbstractItemView::SelectRows);
    clearSelection();
    m_winding->setCurrentCoil(Winding::CurrentCoil());
}

void LayoutCoilsView::selectCurrentCoil()
{
    m_winding->setCurrentCoil(m_model->coilAt(currentIndex()));
}
