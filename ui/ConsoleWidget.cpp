#include "ui/ConsoleWidget.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QItemDelegate>
#include <QMenu>
#include <QScrollBar>

#include "ui/ConsoleModel.h"

namespace {

// Rows show no focus frame.
class ConsoleWidgetItemDelegate : public QItemDelegate
{
public:
    using QItemDelegate::QItemDelegate;

protected:
    void drawFocus(QPainter *, const QStyleOptionViewItem &, const QRect &) const override {}
};

} // namespace

ConsoleWidget::ConsoleWidget(QWidget *parent)
    : QTableView(parent)
    , m_filter(new ConsoleFilterModel(this))
{
    setModel(m_filter);
    setItemDelegate(new ConsoleWidgetItemDelegate(this));
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setContextMenuPolicy(Qt::CustomContextMenu);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setDefaultSectionSize(70);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->setMinimumSectionSize(18);
    verticalHeader()->setDefaultSectionSize(18);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    connect(this, &QWidget::customContextMenuRequested, this, &ConsoleWidget::showContextMenu);
}

void ConsoleWidget::setSourceModel(ConsoleContentModel *model)
{
    if (m_source == model)
        return;
    if (m_source) {
        disconnect(m_source, nullptr, this, nullptr);
        disconnect(m_filter, &QAbstractItemModel::rowsInserted, this, nullptr);
    }
    m_filter->setSourceModel(nullptr);
    m_source = model;
    if (!model)
        return;
    m_filter->setSourceModel(model);
    connect(m_filter, &QAbstractItemModel::rowsInserted, this, &ConsoleWidget::scrollToNewest);
    connect(model, &ConsoleContentModel::errorsChanged, this, &ConsoleWidget::countErrors);
    connect(model, &ConsoleContentModel::warningsChanged, this, &ConsoleWidget::countWarnings);
    connect(model, &ConsoleContentModel::informationsChanged, this, &ConsoleWidget::countInformations);
    connect(model, &ConsoleContentModel::logsChanged, this, &ConsoleWidget::countLogs);
    horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    scrollToNewest();
}

void ConsoleWidget::setScopes(ScriptConsole::Scopes scopes)
{
    if (m_scopes == scopes)
        return;
    m_scopes = scopes;
    m_filter->setScopes(scopes);
    countErrors();
    countWarnings();
    countInformations();
}

void ConsoleWidget::setKindVisible(qint32 kind, bool visible)
{
    m_filter->setKindVisible(kind, visible);
}

void ConsoleWidget::setAutoScroll(bool on)
{
    if (m_autoscroll == on)
        return;
    m_autoscroll = on;
    scrollToNewest();
}

void ConsoleWidget::clear()
{
    if (m_source)
        m_source->clear(m_scopes);
}

void ConsoleWidget::scrollToNewest()
{
    if (!m_autoscroll || m_filter->rowCount() == 0)
        return;
    setCurrentIndex(m_filter->index(m_filter->rowCount() - 1, 0));
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void ConsoleWidget::showContextMenu(const QPoint &position)
{
    QMenu menu(this);
    QAction *copy = menu.addAction(QIcon(QStringLiteral(":/page_copy.png")), tr("Copy to clipboard"));
    copy->setObjectName(QStringLiteral("actionCopyConsole"));
    copy->setEnabled(selectionModel()->hasSelection());
    connect(copy, &QAction::triggered, this, &ConsoleWidget::copySelection);
    menu.exec(viewport()->mapToGlobal(position));
}

void ConsoleWidget::copySelection()
{
    QStringList lines;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        lines << m_filter->mapToSource(index).data(Qt::DisplayRole).toString();
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void ConsoleWidget::countErrors()
{
    if (m_source)
        emit errorsChanged(m_source->errors(m_scopes));
}

void ConsoleWidget::countWarnings()
{
    if (m_source)
        emit warningsChanged(m_source->warnings(m_scopes));
}

void ConsoleWidget::countInformations()
{
    if (m_source)
        emit informationsChanged(m_source->informations(m_scopes));
}

void ConsoleWidget::countLogs()
{
    if (m_source)
        emit logsChanged(m_source->logs(m_scopes));
}
