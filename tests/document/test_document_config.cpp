#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QmlScripting/ConfigObject.h"
#include "QmlScripting/JSEngine.h"
#include "base/ScriptConsole.h"
#include "document/Document.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/RotorItem.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"

namespace {

QStringList criticalLines;

void captureCritical(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtCriticalMsg)
        criticalLines << message;
}

QString shippedConfigScript()
{
    return QCoreApplication::applicationDirPath() + "/assets/scripts/ZolvaneConfig.js";
}

QByteArray shippedConfigText()
{
    QFile file(shippedConfigScript());
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

void writeScript(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

QVariant configValue(const Document &doc, const char *name)
{
    return doc.config()->property(name);
}

} // namespace

TEST(DocumentConfig, StartGivesTheElementsTheScriptsValues)
{
    Document doc;
    doc.start();
    ASSERT_TRUE(doc.isConfigLoaded());
    EXPECT_EQ(doc.stator()->numberSlots(), configValue(doc, "statorNumberSlots").toInt());
    EXPECT_EQ(doc.rotor()->numberPolePairs(), configValue(doc, "rotorNumberPolePairs").toInt());
    EXPECT_DOUBLE_EQ(doc.stator()->outerDiameter(), configValue(doc, "statorOuterDiameter").toDouble());
    EXPECT_DOUBLE_EQ(doc.stator()->items().at(0)->height(), configValue(doc, "statorHeight1").toDouble());
    EXPECT_FALSE(doc.isModified());
    EXPECT_FALSE(doc.isGeometryModified());
}

TEST(DocumentConfig, ElementChangesAreWrittenBack)
{
    Document doc;
    doc.start();
    doc.stator()->setNumberSlots(24);
    EXPECT_EQ(configValue(doc, "statorNumberSlots").toInt(), 24);
    doc.rotor()->setNumberPolePairs(11);
    EXPECT_EQ(configValue(doc, "rotorNumberPolePairs").toInt(), 11);
    doc.rotor()->items().at(0)->setHeight(9.5);
    EXPECT_DOUBLE_EQ(configValue(doc, "rotorHeight1").toDouble(), 9.5);
    doc.stator()->setOuterDiameter(240.0);
    EXPECT_DOUBLE_EQ(configValue(doc, "statorOuterDiameter").toDouble(), 240.0);
    EXPECT_EQ(doc.engine()->evaluate("config.statorNumberSlots").toInt(), 24);
}

TEST(DocumentConfig, ConfigChangesReachTheElementsAndUndo)
{
    Document doc;
    doc.start();
    const double outer = doc.stator()->outerDiameter();
    doc.setPropertyUndoable(doc.config(), "statorOuterDiameter", outer + 40.0);
    EXPECT_DOUBLE_EQ(doc.stator()->outerDiameter(), outer + 40.0);
    EXPECT_EQ(doc.undoStack()->text(0), QStringLiteral("Set config.statorOuterDiameter to '%1'").arg(outer + 40.0));
    doc.undo();
    EXPECT_DOUBLE_EQ(doc.stator()->outerDiameter(), outer);
}

TEST(DocumentConfig, ScriptAssignmentIsOneUndoableCommand)
{
    Document doc;
    doc.start();
    const int pairs = doc.rotor()->numberPolePairs();
    doc.engine()->evaluate("config.rotorNumberPolePairs = 7");
    EXPECT_EQ(doc.rotor()->numberPolePairs(), 7);
    ASSERT_EQ(doc.undoStack()->count(), 1);
    doc.engine()->evaluate("config.rotorNumberPolePairs = 7");
    EXPECT_EQ(doc.undoStack()->count(), 1) << "an equal value reaches nothing";
    doc.undo();
    EXPECT_EQ(doc.rotor()->numberPolePairs(), pairs);
    EXPECT_EQ(doc.engine()->evaluate("config.rotorNumberPolePairs").toInt(), pairs);
}

TEST(DocumentConfig, MachineTypeRunsTheScriptsUpdate)
{
    Document doc;
    doc.start();
    QSignalSpy spy(&doc, &Document::machineTypeChanged);
    doc.setMachineType(Machine::RSR);
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(doc.activeAirgaps(), 2);
    EXPECT_EQ(doc.rotor()->countItems(), 2);
    EXPECT_TRUE(doc.isGeometryModified());
}

TEST(DocumentConfig, FailingScriptLeavesTheDefaultsAndOneErrorLine)
{
    for (const QByteArray &text : {QByteArray("var config = { statorNumberSlots: 24, ;"),
                                   QByteArray("throw new Error('no config today');"),
                                   QByteArray("var nothing = 1;")}) {
        QTemporaryDir dir;
        const QString path = dir.filePath("ZolvaneConfig.js");
        writeScript(path, text);
        Document doc;
        const int defaultSlots = doc.stator()->numberSlots();
        doc.setConfigScriptFile(path);
        QSignalSpy consoleErrors(doc.console(), &ScriptConsole::signalError);
        criticalLines.clear();
        const QtMessageHandler previous = qInstallMessageHandler(captureCritical);
        doc.start();
        qInstallMessageHandler(previous);
        EXPECT_FALSE(doc.isConfigLoaded());
        EXPECT_EQ(doc.stator()->numberSlots(), defaultSlots);
        ASSERT_EQ(criticalLines.size(), 1) << criticalLines.join('\n').toStdString();
        EXPECT_TRUE(criticalLines.first().startsWith("Error: ")) << criticalLines.first().toStdString();
        EXPECT_EQ(consoleErrors.count(), 1);
        doc.stator()->setNumberSlots(30);
        EXPECT_EQ(doc.stator()->numberSlots(), 30);
    }
}

TEST(DocumentConfig, EditedScriptReloadsAndKeepsTheUsersValues)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("ZolvaneConfig.js");
    const QByteArray text = shippedConfigText();
    ASSERT_FALSE(text.isEmpty());
    writeScript(path, text);
    Document doc;
    doc.setConfigScriptFile(path);
    doc.start();
    ASSERT_TRUE(doc.isConfigLoaded());
    doc.setPropertyUndoable(doc.config(), "statorNumberSlots", 18);
    ASSERT_EQ(doc.stator()->numberSlots(), 18);

    QSignalSpy loaded(&doc, &Document::configLoaded);
    writeScript(path, text + "\nconfig.reloadedMark = 1;\n");
    ASSERT_TRUE(loaded.wait(5000));
    EXPECT_TRUE(loaded.last().at(0).toBool());
    EXPECT_EQ(doc.engine()->evaluate("config.reloadedMark").toInt(), 1);
    EXPECT_EQ(doc.stator()->numberSlots(), 18);
    EXPECT_EQ(doc.engine()->evaluate("config.statorNumberSlots").toInt(), 18);
}

TEST(DocumentConfig, ConfigMapSurvivesSaveAndLoad)
{
    QTemporaryDir dir;
    Document doc;
    doc.start();
    doc.markAsMade();
    doc.setPreparing(false);
    doc.setPropertyUndoable(doc.config(), "statorNumberSlots", 24);
    ASSERT_TRUE(doc.save(dir.filePath("c.zva"), nullptr));

    Document copy;
    copy.start();
    ASSERT_TRUE(copy.load(dir.filePath("c.zva")));
    EXPECT_EQ(configValue(copy, "statorNumberSlots").toInt(), 24);
    EXPECT_EQ(copy.engine()->evaluate("config.statorNumberSlots").toInt(), 24);
    EXPECT_EQ(copy.stator()->numberSlots(), 24);
}
