#pragma once

#include <QMenu>
#include <QPointer>
#include <QUndoStack>

class QLabel;
class QListWidget;
class QListWidgetItem;

// The drop-down list of a stack's commands under the undo or redo button: a press
// on the n-th entry undoes (redoes) n commands at once.
class CommandStackView : public QMenu
{
    Q_OBJECT
public:
    void setUndoStack(QUndoStack *stack);
    QListWidget *listWidget() const { return m_list; }

protected:
    enum Direction { Undo, Redo };
    CommandStackView(Direction direction, QWidget *parent);

private:
    void cmdStackChanged();
    void itemEntered(QListWidgetItem *item);
    void itemPressed(QListWidgetItem *item);

    const Direction m_direction;
    QPointer<QUndoStack> m_stack;
    bool m_movingStack = false;
    QListWidget *m_list = nullptr;
    QLabel *m_label = nullptr;
};

class CommandUndoStackView : public CommandStackView
{
    Q_OBJECT
public:
    explicit CommandUndoStackView(QWidget *parent = nullptr)
        : CommandStackView(Undo, parent)
    {
    }
};

class CommandRedoStackView : public CommandStackView
{
    Q_OBJECT
public:
    explicit CommandRedoStackView(QWidget *parent = nullptr)
        : CommandStackView(Redo, parent)
    {
    }
};
