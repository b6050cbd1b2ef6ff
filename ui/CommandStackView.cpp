#include "ui/CommandStackView.h"

#include <QLabel>
#include <QListWidget>
#include <QTimer>
#include <QWidgetAction>

CommandStackView::CommandStackView(Direction direction, QWidget *parent)
    : QMenu(parent)
    , m_direction(direction)
{
    setObjectName(QStringLiteral("menuCommandStackView"));
}

void CommandStackView::setUndoStack(QUndoStack *stack)
{
    // The window refreshes often; the menu is rebuilt only for another stack.
    if (stack == m_stack && m_list)
        return;
    if (m_stack)
        disconnect(m_stack, nullptr, this, nullptr);
    clear();
    m_list = nullptr;
    m_label = nullptr;
    m_stack = stack;
    if (m_stack)
        connect(m_stack, &QUndoStack::indexChanged, this, &CommandStackView::cmdStackChanged);
    cmdStackChanged();
}

void CommandStackView::cmdStackChanged()
{
    if (m_movingStack)
        return;
    clear();
    m_list = new QListWidget(this);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSelectionMode(QAbstractItemView::MultiSelection);
    m_list->setMouseTracking(true);
    m_label = new QLabel(this);
    auto *listAction = new QWidgetAction(this);
    listAction->setDefaultWidget(m_list);
    addAction(listAction);
    auto *labelAction = new QWidgetAction(this);
    labelAction->setDefaultWidget(m_label);
    addAction(labelAction);
    if (!m_stack)
        return;
    const int index = m_stack->index();
    auto addItem = [this](int command) {
        auto *item = new QListWidgetItem(m_stack->text(command), m_list);
        item->setData(Qt::UserRole, command);
    };
    if (m_direction == Undo) {
        for (int command = index - 1; command >= 0; --command)
            addItem(command);
    } else {
        for (int command = index; command < m_stack->count(); ++command)
            addItem(command);
    }
    connect(m_list, &QListWidget::itemEntered, this, &CommandStackView::itemEntered);
    connect(m_list, &QListWidget::itemPressed, this, &CommandStackView::itemPressed);
}

void CommandStackView::itemEntered(QListWidgetItem *item)
{
    const int last = m_list->row(item);
    for (int row = 0; row < m_list->count(); ++row)
        m_list->item(row)->setSelected(row <= last);
    const int count = last + 1;
    m_label->setText(m_direction == Undo ? tr("<b>Undo %n action(s)</b>", nullptr, count)
                                         : tr("<b>Redo %n action(s)</b>", nullptr, count));
}

void CommandStackView::itemPressed(QListWidgetItem *item)
{
    if (!m_stack)
        return;
    const int command = item->data(Qt::UserRole).toInt();
    m_movingStack = true;
    if (m_direction == Undo) {
        while (m_stack->canUndo() && m_stack->index() > command)
            m_stack->undo();
    } else {
        while (m_stack->canRedo() && m_stack->index() <= command)
            m_stack->redo();
    }
    m_movingStack = false;
    hide();
    QTimer::singleShot(0, this, &CommandStackView::cmdStackChanged);
}
