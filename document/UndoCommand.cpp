#include "document/UndoCommand.h"

#include <QDebug>

UndoCommand::UndoCommand(const QString &text, UndoCommand *parent)
    : QUndoCommand(text, parent)
{
}

UndoCommand::UndoCommand(UndoCommand *parent)
    : QUndoCommand(parent)
{
}

UndoCommand::~UndoCommand() = default;

void UndoCommand::undo()
{
    qInfo() << ">>> Undo batch cmd" << text();
    QUndoCommand::undo();
}

void UndoCommand::redo()
{
    qInfo() << ">>> Redo batch cmd" << text();
    QUndoCommand::redo();
}

int UndoCommand::id() const
{
    return QUndoCommand::id();
}

bool UndoCommand::mergeWith(const QUndoCommand *other)
{
    return QUndoCommand::mergeWith(other);
}

QJsonObject UndoCommand::toJson() const
{
    return {{QStringLiteral("type"), QStringLiteral("UndoCommand")}, {QStringLiteral("text"), text()}};
}
