#pragma once

#include <QJsonObject>
#include <QUndoCommand>

// A named group of commands without an effect of its own.
class UndoCommand : public QUndoCommand
{
public:
    explicit UndoCommand(const QString &text, UndoCommand *parent = nullptr);
    explicit UndoCommand(UndoCommand *parent = nullptr);
    ~UndoCommand() override;

    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand *other) override;
    virtual QJsonObject toJson() const;
};
