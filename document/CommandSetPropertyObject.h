#pragma once

#include <QByteArray>
#include <QPointer>
#include <QVariant>

#include "document/UndoCommand.h"

class Document;

// Sets one Qt property, static or dynamic, of a document element.
class CommandSetPropertyObject : public UndoCommand
{
public:
    CommandSetPropertyObject(QObject *target, const QByteArray &name, const QVariant &newValue,
                             const QVariant &previousValue, UndoCommand *parent = nullptr);
    CommandSetPropertyObject(QObject *target, const QByteArray &name, const QVariant &newValue,
                             UndoCommand *parent = nullptr);

    void undo() override;
    void redo() override;
    QJsonObject toJson() const override;

    static CommandSetPropertyObject *fromJson(const QJsonObject &json, Document *document, UndoCommand *parent);

    QObject *target() const { return m_target; }
    const QByteArray &propertyName() const { return m_name; }
    const QVariant &newValue() const { return m_newValue; }
    const QVariant &previousValue() const { return m_previousValue; }

private:
    void logChange(const char *direction) const;

    QObject *m_target;
    QByteArray m_name;
    QVariant m_newValue;
    QVariant m_previousValue;
};
