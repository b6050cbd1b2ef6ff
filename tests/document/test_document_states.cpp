#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/CommandSetPropertyObject.h"
#include "document/Document.h"
#include "document/RatedData.h"
#include "document/UndoStack.h"
#include "geometry/Stator.h"
#include "winding/WindingObject.h"

TEST(DocumentStates, NewDocumentIsAnUnmodifiedSingleGapMachine)
{
    Document doc;
    doc.start();
    doc.markAsMade();
    EXPECT_EQ(doc.machineType(), Machine::SR);
    EXPECT_EQ(doc.activeAirgaps(), 1);
    EXPECT_EQ(doc.airgaps().size(), 1);
    // The configuration's 12 slots and 10 poles repeat, with the opposite sign, after half the machine.
    EXPECT_EQ(doc.periodicity(), 2);
    EXPECT_EQ(doc.boundaryCondition(), Document::Antiperiodic);
    EXPECT_FALSE(doc.isModified());
    EXPECT_EQ(doc.objectName(), "motor");
}

TEST(DocumentStates, ModifiedChangesOnlyWhenReadyAndNotPreparing)
{
    Document doc;
    QSignalSpy spy(&doc, &Document::modifiedChanged);
    doc.setModified(true);
    EXPECT_FALSE(doc.isModified());
    EXPECT_EQ(spy.count(), 0);

    doc.markAsMade();
    doc.setModified(true);
    EXPECT_FALSE(doc.isModified()) << "a preparing document can only be cleared";

    doc.setPreparing(false);
    doc.setModified(true);
    EXPECT_TRUE(doc.isModified());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_TRUE(spy.takeFirst().at(0).toBool());
    doc.setModified(true);
    EXPECT_EQ(spy.count(), 0);
}

TEST(DocumentStates, ReadonlyClearsAndBlocksModified)
{
    Document doc;
    doc.markAsMade();
    doc.setPreparing(false);
    doc.setModified(true);
    QSignalSpy modified(&doc, &Document::modifiedChanged);
    QSignalSpy readonly(&doc, &Document::readonlyChanged);

    doc.setReadonly(true);
    EXPECT_EQ(readonly.count(), 1);
    EXPECT_FALSE(doc.isModified());
    EXPECT_EQ(modified.count(), 1);

    doc.setModified(true);
    EXPECT_FALSE(doc.isModified());
    doc.setReadonly(true);
    EXPECT_EQ(readonly.count(), 1);
}

TEST(DocumentStates, ModeChangeIsRememberedForTheNextSave)
{
    Document doc;
    QSignalSpy spy(&doc, &Document::modeChanged);
    doc.setMode(Document::GeometryMotor);
    EXPECT_FALSE(doc.modeChangedSinceSave());
    doc.setMode(Document::Winding);
    EXPECT_TRUE(doc.modeChangedSinceSave());
    EXPECT_EQ(spy.count(), 1);
}

TEST(DocumentStates, RatedDataChangeMarksTheDocument)
{
    Document doc;
    doc.markAsMade();
    doc.setPreparing(false);
    RatedData *rated = doc.ratedData();
    QSignalSpy own(rated, &RatedData::speedChanged);
    QSignalSpy changed(rated, &RatedData::changed);
    rated->setSpeed(0.0);
    EXPECT_EQ(changed.count(), 0);
    rated->setSpeed(3000.0);
    EXPECT_EQ(own.count(), 1);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(doc.isModified());
}

TEST(DocumentElements, FoundByObjectName)
{
    Document doc;
    EXPECT_EQ(doc.elementByName("motor"), &doc);
    EXPECT_EQ(doc.elementByName("airgap3"), doc.airgap(3));
    EXPECT_EQ(doc.elementByName("Winding"), static_cast<QObject *>(doc.winding()));
    EXPECT_EQ(doc.elementByName("stator"), static_cast<QObject *>(doc.stator()));
    EXPECT_EQ(doc.elementByName("nothing"), nullptr);
}

TEST(DocumentElements, AirgapsOfItemsFollowTheStackingOrder)
{
    Document doc;
    EXPECT_EQ(doc.airgapOfStatorItem(1, 2), doc.airgap(1));
    EXPECT_EQ(doc.airgapOfStatorItem(1, 1), nullptr);
    EXPECT_EQ(doc.airgapOfRotorItem(2, 1), doc.airgap(1));

    doc.setMachineType(Machine::RSRSR);
    EXPECT_EQ(doc.activeAirgaps(), 4);
    EXPECT_EQ(doc.airgapOfRotorItem(1, 2), doc.airgap(1));
    EXPECT_EQ(doc.airgapOfRotorItem(3, 1), doc.airgap(4));
    EXPECT_EQ(doc.airgapOfStatorItem(2, 2), doc.airgap(4));
    EXPECT_EQ(doc.airgapOfStatorItem(3, 1), nullptr);
    EXPECT_TRUE(doc.airgap(4)->signalsBlocked() == false);

    doc.setMachineType(Machine::SRS);
    EXPECT_EQ(doc.activeAirgaps(), 2);
    EXPECT_TRUE(doc.airgap(3)->signalsBlocked());
    EXPECT_EQ(doc.airgapOfStatorItem(2, 1), doc.airgap(2));
}

TEST(DocumentCommands, PropertyChangeIsUndoable)
{
    Document doc;
    Airgap *gap = doc.airgap(1);
    doc.setPropertyUndoable(gap, "thickness", 3.0);
    EXPECT_EQ(doc.undoStack()->count(), 0) << "an equal value makes no command";

    doc.setPropertyUndoable(gap, "thickness", 2.5);
    EXPECT_DOUBLE_EQ(gap->thickness(), 2.5);
    EXPECT_EQ(doc.undoStack()->text(0), "Set airgap1.thickness to '2.5'");
    doc.undo();
    EXPECT_DOUBLE_EQ(gap->thickness(), 3.0);
    EXPECT_FALSE(doc.isUndoRedoRunning());
    doc.redo();
    EXPECT_DOUBLE_EQ(gap->thickness(), 2.5);
}

TEST(DocumentCommands, CommandDuringRestoreIsDropped)
{
    Document doc;
    doc.undoStack()->blockSignals(true);
    doc.execCommand(new CommandSetPropertyObject(doc.airgap(1), "thickness", 7.0));
    doc.undoStack()->blockSignals(false);
    EXPECT_EQ(doc.undoStack()->count(), 0);
    EXPECT_DOUBLE_EQ(doc.airgap(1)->thickness(), 3.0);
}

TEST(DocumentPieces, BuiltOnceFromTwoThreads)
{
    Document doc;
    QSignalSpy ready(&doc, &Document::piecesReady);
    PieceList first;
    PieceList second;
    QThread *a = QThread::create([&] { first = doc.pieces(); });
    QThread *b = QThread::create([&] { second = doc.pieces(); });
    a->start();
    b->start();
    a->wait();
    b->wait();
    delete a;
    delete b;
    EXPECT_EQ(ready.count(), 1);
    EXPECT_TRUE(doc.hasPieces());
    EXPECT_EQ(first.size(), second.size());

    QSignalSpy reset(&doc, &Document::pieceReset);
    doc.resetPieces();
    doc.resetPieces();
    EXPECT_EQ(reset.count(), 1);
    EXPECT_FALSE(doc.hasPieces());
}

TEST(DocumentFolders, MaterialsFromTheParentInstallationFirst)
{
    QTemporaryDir settingsDir;
    QTemporaryDir root;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsDir.path());
    QDir(root.path()).mkpath("materials");
    {
        QSettings settings("Quorlan", "Zolvane");
        settings.setValue("RootPath", root.path());
        settings.setValue("RootPathMatlab", root.path() + "/missing");
    }
    EXPECT_EQ(Document::materialsPath(), root.path() + "/materials");
    {
        QSettings settings("Quorlan", "Zolvane");
        settings.clear();
    }
    const QString fallback = Document::materialsPath();
    EXPECT_TRUE(fallback.endsWith("/assets/materials") || fallback.endsWith("/materials")) << fallback.toStdString();
}
