#include <QDataStream>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/CommandSetPropertyObject.h"
#include "document/Document.h"
#include "document/UndoStack.h"

namespace {

QJsonObject historyOf(const UndoStack &stack)
{
    return QJsonDocument::fromJson(stack.toJson()).object();
}

QByteArray savedHistory(const UndoStack &stack)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    stack.save(out);
    return bytes;
}

void restoreHistory(Document &doc, const QByteArray &bytes)
{
    QDataStream in(bytes);
    doc.undoStack()->restore(in, &doc);
}

} // namespace

TEST(UndoStackTest, KeepsThe256NewestCommands)
{
    Document doc;
    for (int i = 0; i < 257; ++i)
        doc.setPropertyUndoable(doc.airgap(1), "thickness", 1.0 + i);
    EXPECT_EQ(doc.undoStack()->count(), 256);
    EXPECT_EQ(doc.undoStack()->text(0), "Set airgap1.thickness to '2'");
}

TEST(UndoStackTest, EmptyHistoryJson)
{
    Document doc;
    EXPECT_EQ(doc.undoStack()->toJson(), R"({"cmds":[],"index":0,"version":1})");
}

TEST(UndoStackTest, HistoryWithUndoneCommandComesBack)
{
    Document doc;
    doc.setPropertyUndoable(doc.airgap(1), "thickness", 2.0);
    doc.setPropertyUndoable(doc.airgap(1), "numberLayers", 5);
    doc.setPropertyUndoable(doc.airgap(1), "thickness", 4.0);
    doc.undo();
    const QByteArray bytes = savedHistory(*doc.undoStack());
    EXPECT_EQ(historyOf(*doc.undoStack()).value("index").toInt(), 2);

    Document copy;
    restoreHistory(copy, bytes);
    EXPECT_EQ(copy.undoStack()->count(), 3);
    EXPECT_EQ(copy.undoStack()->index(), 2);
    EXPECT_DOUBLE_EQ(copy.airgap(1)->thickness(), 2.0);
    EXPECT_EQ(copy.airgap(1)->numberLayers(), 5);
    copy.redo();
    EXPECT_DOUBLE_EQ(copy.airgap(1)->thickness(), 4.0);
    copy.undo();
    copy.undo();
    EXPECT_EQ(copy.airgap(1)->numberLayers(), 3);
}

TEST(UndoStackTest, BatchRunsParentFirstAndChildrenInReverseOnUndo)
{
    Document doc;
    QObject *scriptConfig = new QObject(&doc);
    scriptConfig->setObjectName("scriptConfig");
    scriptConfig->setProperty("statorNumberSlots", 6);
    auto *parent = new CommandSetPropertyObject(scriptConfig, "statorNumberSlots", 12);
    new CommandSetPropertyObject(doc.airgap(1), "thickness", 2.0, parent);
    new CommandSetPropertyObject(doc.airgap(1), "numberLayers", 7, parent);
    doc.execCommand(parent);
    EXPECT_EQ(parent->text(), "Set config.statorNumberSlots to '12'");
    EXPECT_EQ(scriptConfig->property("statorNumberSlots").toInt(), 12);
    EXPECT_EQ(doc.airgap(1)->numberLayers(), 7);

    const QJsonObject history = historyOf(*doc.undoStack());
    const QJsonArray childs = history.value("cmds").toArray().at(0).toObject().value("childs").toArray();
    ASSERT_EQ(childs.size(), 2);
    EXPECT_EQ(childs.at(1).toObject().value("nameProp").toString(), "numberLayers");

    doc.undo();
    EXPECT_EQ(scriptConfig->property("statorNumberSlots").toInt(), 6);
    EXPECT_DOUBLE_EQ(doc.airgap(1)->thickness(), 3.0);
    EXPECT_EQ(doc.airgap(1)->numberLayers(), 3);
}

TEST(UndoStackTest, UnknownTargetsAndPropertiesLoseOnlyTheirCommand)
{
    Document doc;
    doc.setPropertyUndoable(doc.airgap(1), "thickness", 2.0);
    doc.setPropertyUndoable(doc.airgap(1), "numberLayers", 5);
    QJsonObject history = historyOf(*doc.undoStack());
    QJsonArray cmds = history.value("cmds").toArray();
    QJsonObject ghost = cmds.at(0).toObject();
    ghost["object"] = "airgap9";
    QJsonObject lost = cmds.at(1).toObject();
    lost["nameProp"] = "colour";
    QJsonObject unknown{{"type", "MacroCommand"}};
    cmds = QJsonArray{ghost, lost, unknown, cmds.at(1)};
    history["cmds"] = cmds;
    history["index"] = 1;

    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << QJsonDocument(history).toJson(QJsonDocument::Compact);
    Document copy;
    restoreHistory(copy, bytes);
    EXPECT_EQ(copy.undoStack()->count(), 1);
    EXPECT_EQ(copy.airgap(1)->numberLayers(), 5);
}

TEST(UndoStackTest, CorruptHistoryEndsEmpty)
{
    Document doc;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << QByteArray("{\"cmds\":[");
    restoreHistory(doc, bytes);
    EXPECT_EQ(doc.undoStack()->count(), 0);
}

TEST(UndoStackTest, ValueWithoutTextIsStoredAndRestored)
{
    Document doc;
    QObject *target = new QObject(&doc);
    target->setObjectName("scriptConfig");
    target->setProperty("point", QPointF(1, 2));
    auto *command = new CommandSetPropertyObject(target, "point", QPointF(3, 4));
    command->redo();
    EXPECT_EQ(command->text(), "Set config.point to ''");
    const QJsonObject json = command->toJson();
    delete command;

    auto *restored = CommandSetPropertyObject::fromJson(json, &doc, nullptr);
    ASSERT_EQ(restored, nullptr) << "the target isn't one of the document's elements";
    QJsonObject onGap = json;
    onGap["object"] = "airgap1";
    onGap["nameProp"] = "thickness";
    restored = CommandSetPropertyObject::fromJson(onGap, &doc, nullptr);
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(restored->newValue(), QVariant(QPointF(3, 4)));
    delete restored;
}
