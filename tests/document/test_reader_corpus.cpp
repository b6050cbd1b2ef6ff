#include <gtest/gtest.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtEndian>

#include "analysis/DriveSettings.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "base/StreamChecks.h"
#include "document/CommandSetPropertyObject.h"
#include "document/Document.h"
#include "geometry/Stator.h"
#include "support/Instrumented.h"
#include "support/LogCatcher.h"
#include "winding/Winding.h"
#include "winding/WindingObject.h"

// Inputs made to crash, hang or fool the reader, each built from the bundled example:
// every one is refused, or read, within seconds, and the program goes on.

namespace {

QByteArray exampleBytes()
{
    QFile file(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename T>
QByteArray streamed(const T &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_13);
    out << value;
    return bytes;
}

QByteArray word(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

// A variant's stream form opens with its type and a null flag; user types add their name.
QByteArray variantHead(quint32 type)
{
    return word(type) + QByteArray(1, '\0');
}

QByteArray userTypeHead(const char *name)
{
    return variantHead(QMetaType::User) + streamed(name);
}

QByteArray nestedLists(int depth)
{
    QByteArray bytes;
    for (int i = 0; i < depth; ++i)
        bytes += variantHead(QMetaType::QVariantList) + word(1);
    return bytes + variantHead(QMetaType::Int) + word(1);
}

QByteArray nestedMaps(int depth)
{
    QByteArray bytes;
    for (int i = 0; i < depth; ++i)
        bytes += variantHead(QMetaType::QVariantMap) + word(1) + streamed(QStringLiteral("k"));
    return bytes + variantHead(QMetaType::Int) + word(1);
}

// The example with the value of one configuration variable replaced by other bytes.
QByteArray withConfigValue(const QString &key, const QByteArray &value)
{
    const QByteArray example = exampleBytes();
    const QByteArray entryKey = streamed(key);
    const int at = example.lastIndexOf(entryKey);
    if (at < 0)
        return QByteArray();
    const int start = at + entryKey.size();
    const quint32 type = qFromBigEndian<quint32>(example.constData() + start);
    const int size = 5 + (type == QMetaType::Double ? 8 : 4);
    return example.left(start) + value + example.mid(start + size);
}

QByteArray replaced(QByteArray bytes, int offset, const QByteArray &replacement)
{
    return bytes.replace(offset, replacement.size(), replacement);
}

// The stator block: its version lies before the slot count, 12, and the diameters.
int statorBlockOffset(const QByteArray &bytes)
{
    const int at = bytes.indexOf(word(12) + streamed(120.0) + streamed(200.0));
    return at < 0 ? -1 : at - 4;
}

struct Outcome {
    bool loaded = false;
    qint64 milliseconds = 0;
    bool fileKept = false;
};

// Loads the bytes as a document file; the log of the load stays in `log`.
Outcome load(const QByteArray &bytes, const LogCatcher &, Document *document = nullptr)
{
    QTemporaryDir folder;
    const QString path =
        folder.filePath(QStringLiteral("corpus-%1.zva").arg(QCoreApplication::applicationPid()));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(bytes);
    file.close();

    Outcome outcome;
    QElapsedTimer timer;
    timer.start();
    if (document) {
        outcome.loaded = document->load(path);
    } else {
        Document doc(nullptr);
        doc.start();
        outcome.loaded = doc.load(path);
    }
    outcome.milliseconds = timer.elapsed();
    QFile kept(path);
    outcome.fileKept = kept.open(QIODevice::ReadOnly) && kept.readAll() == bytes;
    return outcome;
}

struct Case {
    const char *what;
    QByteArray bytes;
    // What the log names as the reason.
    const char *reason;
};

void expectRefused(const Case &input)
{
    ASSERT_FALSE(input.bytes.isEmpty()) << input.what << ": the example holds what the case changes";
    const LogCatcher log;
    const Outcome outcome = load(input.bytes, log);
    EXPECT_FALSE(outcome.loaded) << input.what;
    EXPECT_LT(outcome.milliseconds, 5000 * instrumentedSlowdown) << input.what;
    EXPECT_TRUE(outcome.fileKept) << input.what;
    EXPECT_TRUE(log.contains(QStringLiteral("Error:"))) << input.what;
    EXPECT_TRUE(log.contains(QString::fromLatin1(input.reason))) << input.what << ": the log names " << input.reason;
    EXPECT_FALSE(log.contains(QStringLiteral("newer version"))) << input.what;
}

} // namespace

TEST(ReaderCorpus, CountsBeyondTheBytesLeftAreRefusedBeforeAnythingIsAllocated)
{
    const QString key = QStringLiteral("statorNumberSlots");
    const Case cases[] = {
        {"a list of two thousand million values",
         withConfigValue(key, variantHead(QMetaType::QVariantList) + word(0x7FFFFFFF)), "count of"},
        {"a string list of four thousand million strings",
         withConfigValue(key, variantHead(QMetaType::QStringList) + word(0xFFFFFFFF)), "count of"},
        {"a map of a thousand million entries",
         withConfigValue(key, variantHead(QMetaType::QVariantMap) + word(0x40000000)), "count of"},
        {"a vector of flags as a user type",
         withConfigValue(key, userTypeHead("QVector<bool>") + word(0xFFFFFFF0)), "count of"},
        {"a list of coils as a user type",
         withConfigValue(key, userTypeHead("Winding::CoilList") + word(0x10000000)), "count of"},
        {"a layout as a user type",
         withConfigValue(key, userTypeHead("Winding::Layout") + word(0x10000000)), "count of"},
    };
    for (const Case &input : cases)
        expectRefused(input);
}

TEST(ReaderCorpus, LayoutsCheckTheirCountsAndKeepAListPerPhase)
{
    for (const QByteArray &bytes : {word(0xFFFFFFFF), word(2) + word(0x7FFFFFFF), word(1) + word(1) + word(7)}) {
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream in(&buffer);
        Winding::Layout layout;
        in >> layout;
        EXPECT_NE(in.status(), QDataStream::Ok) << bytes.toHex().constData();
        EXPECT_EQ(layout.size(), int(Winding::Count)) << bytes.toHex().constData();
    }
    Winding::Layout layout;
    layout.resize(Winding::Count);
    layout[Winding::B].append(Winding::Coil{});
    QByteArray bytes = streamed(layout);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QDataStream in(&buffer);
    Winding::Layout read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(read.at(Winding::B).size(), 1) << "a sound layout still reads";
}

TEST(ReaderCorpus, NestingBeyondReasonIsRefusedWithoutExhaustingTheStack)
{
    const QString key = QStringLiteral("statorNumberSlots");
    expectRefused({"lists nested 100000 deep", withConfigValue(key, nestedLists(100000)), "nested"});
    expectRefused({"maps nested 100000 deep", withConfigValue(key, nestedMaps(100000)), "nested"});

    // Sound nesting, as deep as the bound, still reads.
    QByteArray bytes = nestedLists(StreamChecks::maxNesting);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QDataStream in(&buffer);
    QVariant value;
    StreamChecks::readVariant(in, value);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(value.type(), QVariant::List);
}

TEST(ReaderCorpus, UndoHistoryTakesNeitherDeepNestingNorValuesThatWouldHang)
{
    Document doc(nullptr);
    doc.start();
    const LogCatcher log;
    QJsonObject json{{"type", "CommandSetPropertyObject"},
                     {"object", "stator"},
                     {"nameProp", "numberSlots"},
                     {"prevValue", QString::fromLatin1(streamed(QVariant(12)).toBase64())}};
    json["newValue"] = QString::fromLatin1(nestedLists(100000).toBase64());
    UndoCommand *deep = CommandSetPropertyObject::fromJson(json, &doc, nullptr);
    ASSERT_NE(deep, nullptr) << "a value that can't be read is dropped, the command kept";
    EXPECT_FALSE(static_cast<CommandSetPropertyObject *>(deep)->newValue().isValid());
    delete deep;

    for (int count : {0, 100000}) {
        json["newValue"] = QString::fromLatin1(streamed(QVariant(count)).toBase64());
        EXPECT_EQ(CommandSetPropertyObject::fromJson(json, &doc, nullptr), nullptr) << count << " slots";
    }
    EXPECT_TRUE(log.contains(QStringLiteral("numberSlots = 100000")));
}

// Found by fuzz_undo_history: a value stored as an easing curve, whose custom bezier
// points Qt's reader allocates by a count it trusts.
TEST(ReaderCorpus, ValuesOfQtTypesNoDesignHoldsAreRefused)
{
    Document doc(nullptr);
    doc.start();
    QJsonObject json{{"type", "CommandSetPropertyObject"},
                     {"object", "airgap1"},
                     {"nameProp", "thickness"},
                     {"prevValue", QString::fromLatin1(streamed(QVariant(1.0)).toBase64())},
                     {"newValue", QStringLiteral("AAAAHYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYY"
                                                 "YYYYYYYYYYYYYYYYHHHHHHHHUndoCom\x07")}};
    UndoCommand *command = CommandSetPropertyObject::fromJson(json, &doc, nullptr);
    ASSERT_NE(command, nullptr) << "a value that can't be read is dropped, the command kept";
    EXPECT_FALSE(static_cast<CommandSetPropertyObject *>(command)->newValue().isValid());
    delete command;

    expectRefused({"an easing curve among the configuration values",
                   withConfigValue(QStringLiteral("statorNumberSlots"),
                                   variantHead(QMetaType::QEasingCurve) + QByteArray(64, '\x86')),
                   "has no place in a design"});
}

TEST(ReaderCorpus, EnumeratorsOutsideTheirEnumerationsAreRefused)
{
    // Magic, version, then the machine type.
    expectRefused({"machine type 77", replaced(exampleBytes(), 8, word(77)), "machine type 77"});
    expectRefused({"machine type -1", replaced(exampleBytes(), 8, word(quint32(-1))), "machine type -1"});
    expectRefused({"an enumerator of the winding type past its last",
                   withConfigValue(QStringLiteral("statorType"), userTypeHead("Winding::Type") + word(77)),
                   "77 is no value of Winding::Type"});
    expectRefused({"stator type 9 in the configuration",
                   withConfigValue(QStringLiteral("statorType"), variantHead(QMetaType::Int) + word(9)), "statorType"});
}

// The drive's block of the example, as the example's own drive writes it.
QByteArray exampleDriveBlock(const QByteArray &example)
{
    Document doc(nullptr);
    doc.start();
    const LogCatcher log;
    if (!load(example, log, &doc).loaded)
        return QByteArray();
    QByteArray block;
    QDataStream out(&block, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_13);
    doc.driveSettings()->save(out);
    return block;
}

TEST(ReaderCorpus, ChoicesOfTheDriveAndTheAnalysisOutsideTheirEnumerationsAreRefused)
{
    const QByteArray example = exampleBytes();
    const QByteArray driveBlock = exampleDriveBlock(example);
    const int drive = example.indexOf(driveBlock);
    ASSERT_GT(drive, 0);
    // The drive's block: version, waveform, input method, five currents and the DC
    // voltage, the drive type, three doubles, the duty cycle, a double, the six-step
    // option. The analysis block follows: version, solver type, accuracy, number of
    // points, a reserved word, the time period mode.
    const int analysis = drive + driveBlock.size();
    ASSERT_EQ(example.mid(analysis, 4), word(2)) << "the analysis block's version";
    const Case cases[] = {
        {"a waveform past the last", replaced(example, drive + 4, word(2)), "the current waveform 2 is unknown"},
        {"a negative input method", replaced(example, drive + 8, word(quint32(-1))),
         "the current input method -1 is unknown"},
        {"drive type 0", replaced(example, drive + 60, word(0)), "the drive type 0 is unknown"},
        {"a duty cycle of 90 degrees", replaced(example, drive + 88, word(90)), "the switch duty cycle 90 is unknown"},
        {"six-step option 4", replaced(example, drive + 100, word(4)), "the six-step option 4 is unknown"},
        {"solver type 3", replaced(example, analysis + 4, word(3)), "the solver type 3 is unknown"},
        {"an accuracy of three points", replaced(example, analysis + 8, word(3)), "the accuracy 3 is unknown"},
        {"time period mode 0", replaced(example, analysis + 20, word(0)), "the time period mode 0 is unknown"},
        {"no points", replaced(example, analysis + 12, word(0)), "the number of points 0 is outside 1 to 100000"},
        {"two thousand million points", replaced(example, analysis + 12, word(2000000000)),
         "the number of points 2000000000 is outside"},
    };
    for (const Case &input : cases)
        expectRefused(input);
}

TEST(ReaderCorpus, HistoryValuesOfEnumeratedPropertiesOutsideTheirEnumerationsAreRefused)
{
    Document doc(nullptr);
    doc.start();
    const LogCatcher log;
    QJsonObject json{{"type", "CommandSetPropertyObject"},
                     {"object", "Winding"},
                     {"nameProp", "circuit"},
                     {"prevValue", QString::fromLatin1(streamed(QVariant(int(Winding::Star))).toBase64())}};
    for (const QVariant &value : {QVariant(77), QVariant(1.5), QVariant(QStringLiteral("-3"))}) {
        json["newValue"] = QString::fromLatin1(streamed(value).toBase64());
        EXPECT_EQ(CommandSetPropertyObject::fromJson(json, &doc, nullptr), nullptr) << value.toString().toStdString();
    }
    EXPECT_TRUE(log.contains(QStringLiteral("circuit = 77 is no value of Circuit")));

    json["object"] = doc.objectName();
    json["nameProp"] = "machineType";
    json["prevValue"] = json["newValue"] = QString::fromLatin1(streamed(QVariant(77)).toBase64());
    EXPECT_EQ(CommandSetPropertyObject::fromJson(json, &doc, nullptr), nullptr) << "no machine is of type 77";

    json["object"] = "Winding";
    json["nameProp"] = "circuit";
    json["prevValue"] = QString::fromLatin1(streamed(QVariant(int(Winding::Star))).toBase64());
    json["newValue"] = QString::fromLatin1(streamed(QVariant(int(Winding::Delta))).toBase64());
    UndoCommand *sound = CommandSetPropertyObject::fromJson(json, &doc, nullptr);
    EXPECT_NE(sound, nullptr) << "an enumerator of the property's own is taken";
    delete sound;
}

TEST(ReaderCorpus, ValuesThatWouldHangTheModelAreRefusedNamingTheField)
{
    const QString key = QStringLiteral("statorNumberSlots");
    expectRefused(
        {"100000 slots", withConfigValue(key, variantHead(QMetaType::Int) + word(100000)), "statorNumberSlots"});
    expectRefused({"no slots", withConfigValue(key, variantHead(QMetaType::Int) + word(0)), "statorNumberSlots"});
    expectRefused({"slots as a word",
                   withConfigValue(key, variantHead(QMetaType::QString) + streamed(QStringLiteral("many"))),
                   "statorNumberSlots"});
    expectRefused({"no pole pairs",
                   withConfigValue(QStringLiteral("rotorNumberPolePairs"), variantHead(QMetaType::Int) + word(0)),
                   "rotorNumberPolePairs"});
    const QByteArray example = exampleBytes();
    const int stator = statorBlockOffset(example);
    ASSERT_GT(stator, 0);
    expectRefused({"100000 slots in the stator block", replaced(example, stator + 4, word(100000)), "number of slots"});
    // The mesh block: its version, then three slices and an air gap quality of 1.5.
    const int slices = example.indexOf(word(2) + word(3) + streamed(1.5)) + 4;
    ASSERT_GT(slices, 4);
    expectRefused({"a negative number of mesh slices", replaced(example, slices, word(quint32(-1))), "mesh slices"});
    expectRefused({"a thousand million mesh slices", replaced(example, slices, word(1000000000)), "mesh slices"});
}

TEST(ReaderCorpus, CompressedDataInflatesOnlyToItsBound)
{
    // The simulation data follow the four enumerators.
    const QByteArray example = exampleBytes();
    const int at = 24;
    const int storedSize = int(qFromBigEndian<quint32>(example.constData() + at));
    const auto withData = [&](const QByteArray &stored) {
        return example.left(at) + streamed(stored) + example.mid(at + 4 + storedSize);
    };
    const QByteArray bomb = qCompress(QByteArray(StreamChecks::maxInflatedSize + 1024, '\0'), 9);
    expectRefused({"data that inflate past the bound", withData(bomb), "damaged"});
    expectRefused({"data that inflate past what they declare", withData(word(1000) + bomb.mid(4)), "damaged"});
    expectRefused({"a declared size of four gigabytes", withData(word(0xFFFFFFFF) + bomb.mid(4, 64)), "damaged"});

    QByteArray data;
    EXPECT_TRUE(StreamChecks::uncompress(qCompress(QByteArray("results")), data));
    EXPECT_EQ(data, QByteArray("results"));
    EXPECT_TRUE(StreamChecks::uncompress(qCompress(QByteArray()), data));
    EXPECT_TRUE(data.isEmpty());
}

TEST(ReaderCorpus, OnlyAVersionFieldAboveOursSaysNewerVersion)
{
    const QByteArray example = exampleBytes();
    const int stator = statorBlockOffset(example);
    ASSERT_GT(stator, 0);
    expectRefused({"file version 0", replaced(example, 4, word(0)), "damaged"});
    expectRefused({"a negative file version", replaced(example, 4, word(quint32(-3))), "damaged"});
    // A block newer than this program's can't stand in a file older than its own.
    expectRefused({"a newer stator block in an older file", replaced(replaced(example, 4, word(4)), stator, word(3)),
                   "damaged"});
    for (const int cut : {10, 30, 300, example.size() / 2, example.size() - 1})
        expectRefused({"a truncated file", example.left(cut), "damaged"});

    for (const QByteArray &newer : {replaced(example, 4, word(6)), replaced(example, stator, word(3))}) {
        const LogCatcher log;
        EXPECT_FALSE(load(newer, log).loaded);
        EXPECT_TRUE(log.contains(QStringLiteral("newer version")));
    }
}

TEST(ReaderCorpus, ScriptsAreTakenOnlyFromTheScriptFolders)
{
    QTemporaryDir elsewhere;
    const QString script =
        elsewhere.filePath(QStringLiteral("planted-%1.js").arg(QCoreApplication::applicationPid()));
    QFile file(script);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("function StatorGeom() { return {}; } var stator = { planted: 1 };");
    file.close();
    const QString statorFolder = Document::scriptsPath() + QStringLiteral("/stator");
    const QString names[] = {QDir(statorFolder).relativeFilePath(script), script};

    const QByteArray example = exampleBytes();
    const QByteArray named = streamed(QStringLiteral("SlottedStator.js"));
    ASSERT_GE(example.indexOf(named), 0);
    for (const QString &name : names) {
        ASSERT_NE(QDir::cleanPath(statorFolder + "/" + name), QDir::cleanPath(statorFolder)) << "a path that leaves";
        QByteArray planted = example;
        planted.replace(example.indexOf(named), named.size(), streamed(name));
        const LogCatcher log;
        Document doc(nullptr);
        doc.start();
        load(planted, log, &doc);
        EXPECT_FALSE(doc.stator()->isScriptLoaded()) << name.toStdString();
        EXPECT_TRUE(log.contains(QStringLiteral("outside the script folder"))) << name.toStdString();
        EXPECT_TRUE(log.contains(name)) << "the message names " << name.toStdString();
    }

    const LogCatcher log;
    Document doc(nullptr);
    doc.start();
    ASSERT_TRUE(load(example, log, &doc).loaded);
    EXPECT_TRUE(doc.stator()->isScriptLoaded()) << "the catalogue's own script still runs";
}

TEST(ReaderCorpus, EndTurnScriptsAreTakenOnlyFromTheirFolder)
{
    const QByteArray example = exampleBytes();
    const QByteArray named = streamed(QStringLiteral("WindingEndturns.js"));
    ASSERT_GE(example.indexOf(named), 0);
    const QString name = QStringLiteral("../../../../tmp/planted-%1.js").arg(QCoreApplication::applicationPid());
    QByteArray planted = example;
    planted.replace(example.indexOf(named), named.size(), streamed(name));

    const LogCatcher log;
    Document doc(nullptr);
    doc.start();
    ASSERT_TRUE(load(planted, log, &doc).loaded);
    EXPECT_FALSE(doc.winding()->loadEndturnScript());
    EXPECT_TRUE(log.contains(QStringLiteral("The script %1 is outside the script folder").arg(name)));
}
