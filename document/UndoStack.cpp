#include "document/UndoStack.h"

#include <QDataStream>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>

#include "document/CommandSetPropertyObject.h"
#include "document/UndoCommand.h"

namespace {

const QString keyCmds = QStringLiteral("cmds");
const QString keyIndex = QStringLiteral("index");
const QString keyVersion = QStringLiteral("version");
const QString keyChilds = QStringLiteral("childs");
const QString keyType = QStringLiteral("type");

} // namespace

UndoStack::UndoStack(QObject *parent)
    : QUndoStack(parent)
{
    setUndoLimit(limit);
}

QByteArray UndoStack::toJson() const
{
    QJsonArray cmds;
    for (int i = 0; i < count(); ++i) {
        const auto *cmd = dynamic_cast<const UndoCommand *>(command(i));
        if (!cmd)
            continue;
        QJsonObject json = cmd->toJson();
        if (cmd->childCount() > 0) {
            QJsonArray childs;
            for (int c = 0; c < cmd->childCount(); ++c) {
                if (const auto *child = dynamic_cast<const UndoCommand *>(cmd->child(c)))
                    childs.append(child->toJson());
            }
            json.insert(keyChilds, childs);
        }
        cmds.append(json);
    }
    const QJsonObject root{{keyCmds, cmds}, {keyIndex, index()}, {keyVersion, 1}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

void UndoStack::save(QDataStream &stream) const
{
    stream << toJson();
}

void UndoStack::restore(QDataStream &stream, Document *document)
{
    QByteArray bytes;
    stream >> bytes;
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        qCritical() << "Error:" << error.errorString();
        clear();
        return;
    }
    const QJsonObject root = json.object();
    if (!root.contains(keyCmds) || !root.contains(keyIndex) || !root.contains(keyVersion))
        return;
    for (const QJsonValue &cmd : root.value(keyCmds).toArray())
        restoreCmd(cmd.toObject(), document, nullptr);
    setIndex(root.value(keyIndex).toInt());
}

void UndoStack::restoreCmd(const QJsonObject &json, Document *document, UndoCommand *parent)
{
    if (!json.contains(keyType))
        return;
    const QString type = json.value(keyType).toString();
    UndoCommand *command = nullptr;
    if (type == QLatin1String("UndoCommand")) {
        if (!json.contains(QStringLiteral("text")))
            return;
        command = new UndoCommand(json.value(QStringLiteral("text")).toString(), parent);
    } else if (type == QLatin1String("CommandSetPropertyObject")) {
        command = CommandSetPropertyObject::fromJson(json, document, parent);
    } else {
        qCritical() << "Error: UndoStack: unknown type undo command";
        return;
    }
    if (!command)
        return;
    if (json.contains(keyChilds)) {
        for (const QJsonValue &child : json.value(keyChilds).toArray())
            restoreCmd(child.toObject(), document, command);
    }
    if (!parent)
        push(command);
}
