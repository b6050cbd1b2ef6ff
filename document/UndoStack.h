#pragma once

#include <QJsonObject>
#include <QUndoStack>

class Document;
class QDataStream;
class UndoCommand;

// The document's history; it is stored in the document file as JSON and replayed on load.
class UndoStack : public QUndoStack
{
    Q_OBJECT
public:
    static constexpr int limit = 256;

    explicit UndoStack(QObject *parent = nullptr);

    void save(QDataStream &stream) const;
    void restore(QDataStream &stream, Document *document);
    void restoreCmd(const QJsonObject &json, Document *document, UndoCommand *parent);

    QByteArray toJson() const;
};
