#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

#include "analysis/MAT_Converter.h"
#include "analysis/MatExchangeFile.h"
#include "support/LogCatcher.h"

namespace {

QByteArray littleEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// A tag in its full form, and the packed form of data of up to four bytes.
QByteArray tag(quint32 type, quint32 size)
{
    return littleEndian(type) + littleEndian(size);
}

QByteArray packed(quint32 type, const QByteArray &data)
{
    return littleEndian(type | quint32(data.size()) << 16) + data.leftJustified(4, '\0');
}

// A Level 5 header of the given version, written little-endian.
QByteArray header(quint16 version = 0x0100)
{
    QByteArray bytes = QByteArray("MATLAB 5.0 MAT-file").leftJustified(124, ' ');
    bytes += char(version & 0xFF);
    bytes += char(version >> 8);
    return bytes + "IM";
}

const quint32 miInt8 = 1;
const quint32 miInt32 = 5;
const quint32 miUInt32 = 6;
const quint32 miMatrix = 14;
const quint32 miCompressed = 15;
const quint32 structClass = 2;

// A variable as a compressed one holds it.
QByteArray compressedVariable(const QByteArray &inner)
{
    // qCompress puts the inflated size before the zlib stream.
    const QByteArray compressed = qCompress(inner).mid(4);
    return tag(miCompressed, quint32(compressed.size())) + compressed;
}

// A 1×1 struct "s" whose field names declare more bytes than the file has, compressed:
// libmatio would keep the count of fields and no names for them.
QByteArray structWithoutFieldNames()
{
    const QByteArray body = tag(miUInt32, 8) + littleEndian(structClass) + littleEndian(0) + tag(miInt32, 8)
                          + littleEndian(1) + littleEndian(1) + packed(miInt8, "s") + packed(miInt32, littleEndian(4))
                          + tag(miInt8, 0x20000) + QByteArray("a\0\0\0b\0\0\0", 8);
    return header() + compressedVariable(tag(miMatrix, quint32(body.size())) + body);
}

QString written(const QTemporaryDir &dir, const QByteArray &bytes)
{
    const QString path = dir.filePath("answer.mat");
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(bytes);
    return path;
}

} // namespace

// The file between the program and a solver step: what is written under a name is
// read back under that name, whatever the variable was called before.
TEST(MatExchangeFile, VariablesAreWrittenUnderTheirNamesInOrder)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("exchange.mat");
    const MatVarPointer kept(MAT_Converter::matVar(QStringLiteral("state"), QStringLiteral("Private_out")));

    ASSERT_TRUE(MatExchangeFile::write(path, {{"Private", kept},
                                              {"speed", MatVarPointer(MAT_Converter::matVar(1000.0, "speed"))},
                                              {"Coefs3D", MatVarPointer(MAT_Converter::empty("Coefs3D"))}}));

    const auto variables = MatExchangeFile::read(path);
    ASSERT_TRUE(variables.has_value());
    EXPECT_EQ(variables->size(), 3);
    EXPECT_EQ(MAT_Converter::toVariant(variables->value("Private").data()).toString(), "state");
    EXPECT_EQ(MAT_Converter::toVariant(variables->value("speed").data()).toDouble(), 1000.0);
    EXPECT_TRUE(variables->contains("Coefs3D"));
    EXPECT_STREQ(kept->name, "Private_out") << "the given variable is left as it was";

    mat_t *mat = Mat_Open(QFile::encodeName(path).constData(), MAT_ACC_RDONLY);
    ASSERT_NE(mat, nullptr);
    size_t count = 0;
    char **names = Mat_GetDir(mat, &count);
    ASSERT_EQ(count, 3u);
    EXPECT_STREQ(names[0], "Private");
    EXPECT_STREQ(names[2], "Coefs3D");
    Mat_Close(mat);
}

TEST(MatExchangeFile, AMissingVariableIsWrittenWithoutItAndReported)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("exchange.mat");
    EXPECT_FALSE(MatExchangeFile::write(path, {{"Geometry", MatVarPointer()},
                                               {"Mesh", MatVarPointer(MAT_Converter::matVar(2.0, "Mesh"))}}));
    const auto variables = MatExchangeFile::read(path);
    ASSERT_TRUE(variables.has_value());
    EXPECT_EQ(variables->keys(), QList<QString>({"Mesh"}));
}

TEST(MatExchangeFile, WhatIsNoMatFileCantBeRead)
{
    QTemporaryDir dir;
    EXPECT_FALSE(MatExchangeFile::read(dir.filePath("missing.mat")).has_value());
    EXPECT_FALSE(MatExchangeFile::write(dir.filePath("no/such/folder/exchange.mat"), {}));
}

// Inputs found by fuzz_mat_file.
TEST(MatExchangeFile, ACompressedStructWithFieldsButNoFieldNamesIsRefused)
{
    QTemporaryDir dir;
    const LogCatcher log;
    EXPECT_FALSE(MatExchangeFile::read(written(dir, structWithoutFieldNames())).has_value());
    EXPECT_TRUE(log.contains(QStringLiteral("the field names of a struct are damaged")));
}

TEST(MatExchangeFile, AStructWithoutFieldsIsNothingHoweverManyElementsItDeclares)
{
    const QByteArray body = tag(miUInt32, 8) + littleEndian(structClass) + littleEndian(0) + tag(miInt32, 8)
                          + littleEndian(1) + littleEndian(0xFFFFFFFF) + packed(miInt8, "s")
                          + packed(miInt32, littleEndian(4)) + tag(miInt8, 0);
    QTemporaryDir dir;
    const auto variables = MatExchangeFile::read(written(dir, header() + tag(miMatrix, quint32(body.size())) + body));
    ASSERT_TRUE(variables.has_value());
    ASSERT_TRUE(variables->contains("s"));
    EXPECT_EQ(MAT_Converter::toVariant(variables->value("s").data()), QVariant(QVariantMap()));
}

// libmatio gives a text of four-byte letters the bytes of its data element, 14 here,
// whatever its dimensions say: 14 letters would be read from 14 bytes.
TEST(MatExchangeFile, ATextHasNoMoreLettersThanItsBytesHold)
{
    const quint32 charClass = 4;
    const quint32 miUtf32 = 18;
    const QByteArray body = tag(miUInt32, 8) + littleEndian(charClass) + littleEndian(0) + tag(miInt32, 8)
                          + littleEndian(1) + littleEndian(14) + packed(miInt8, "t") + tag(miUtf32, 14)
                          + QByteArray(16, '\0');
    QTemporaryDir dir;
    const auto variables = MatExchangeFile::read(written(dir, header() + tag(miMatrix, quint32(body.size())) + body));
    ASSERT_TRUE(variables.has_value());
    EXPECT_EQ(MAT_Converter::toVariant(variables->value("t").data()).toString().size(), 3);
}

TEST(MatExchangeFile, FilesThatAreNoLevel5FileOrDeclareMoreThanTheyHoldAreRefusedBeforeTheyAreRead)
{
    const QByteArray sound = MAT_Converter::toByteArray(MatVarPointer(MAT_Converter::matVar(2.0, "speed")).data());
    ASSERT_GT(sound.size(), 128);
    const QByteArray tooLong = header() + tag(miMatrix, 4816) + sound.mid(136);
    const QByteArray arrayHead = tag(miUInt32, 8) + littleEndian(structClass) + littleEndian(0) + tag(miInt32, 8)
                               + littleEndian(1) + littleEndian(1) + packed(miInt8, "s");
    const QByteArray plainStruct = arrayHead + packed(miInt32, littleEndian(4)) + tag(miInt8, 0x20000);
    const quint32 cellClass = 1;
    const QByteArray hugeCell = tag(miUInt32, 8) + littleEndian(cellClass) + littleEndian(0) + tag(miInt32, 8)
                              + littleEndian(1) + littleEndian(1000000000) + packed(miInt8, "c") + QByteArray(8, '\0');
    const quint32 doubleClass = 6;
    const quint32 miDouble = 9;
    const QByteArray manyNumbers = tag(miUInt32, 8) + littleEndian(doubleClass) + littleEndian(0) + tag(miInt32, 8)
                                 + littleEndian(1) + littleEndian(10485761) + packed(miInt8, "n") + tag(miDouble, 8)
                                 + QByteArray(8, '\0');
    const QByteArray uncountedField = arrayHead + packed(miInt32, littleEndian(0x140000)) + tag(miInt8, 16)
                                    + QByteArray(16, 'f') + tag(miMatrix, quint32(manyNumbers.size())) + manyNumbers;
    // A cell in a struct whose flags claim three words more than libmatio reads: it
    // would take the first two as dimensions and allocate 16 GB for 2·10⁹ arrays.
    const QByteArray wideFlagsCell = tag(miUInt32, 24) + littleEndian(cellClass) + littleEndian(0) + tag(miInt32, 8)
                                   + littleEndian(0x28010000) + littleEndian(3) + tag(miInt32, 8) + littleEndian(1)
                                   + littleEndian(1) + tag(miInt8, 0);
    const QByteArray oneFieldStruct = arrayHead + packed(miInt32, littleEndian(8)) + tag(miInt8, 8)
                                    + QByteArray("a").leftJustified(8, '\0');
    const QByteArray wideFlags = oneFieldStruct + tag(miMatrix, quint32(wideFlagsCell.size())) + wideFlagsCell;
    const QByteArray emptyDimsCell = tag(miUInt32, 8) + littleEndian(cellClass) + littleEndian(0) + tag(miInt8, 0)
                                   + tag(miInt8, 0);
    const QByteArray emptyDims = oneFieldStruct + tag(miMatrix, quint32(emptyDimsCell.size())) + emptyDimsCell;
    // A struct of two elements that holds the field of one: libmatio would read on into
    // what follows it as the field of the second.
    const QByteArray oneNumber = tag(miUInt32, 8) + littleEndian(doubleClass) + littleEndian(0) + tag(miInt32, 8)
                               + littleEndian(1) + littleEndian(1) + packed(miInt8, "x") + tag(miDouble, 8)
                               + QByteArray(8, '\0');
    const QByteArray twoElementStruct = tag(miUInt32, 8) + littleEndian(structClass) + littleEndian(0)
                                      + tag(miInt32, 8) + littleEndian(2) + littleEndian(1) + packed(miInt8, "s")
                                      + packed(miInt32, littleEndian(8)) + tag(miInt8, 8)
                                      + QByteArray("a").leftJustified(8, '\0') + tag(miMatrix, quint32(oneNumber.size()))
                                      + oneNumber;
    const quint32 charClass = 4;
    const quint32 miUtf8 = 16;
    const QByteArray hugeText = tag(miUInt32, 8) + littleEndian(charClass) + littleEndian(0) + tag(miInt32, 8)
                              + littleEndian(1) + littleEndian(1) + packed(miInt8, "t") + tag(miUtf8, 0x40000006)
                              + QByteArray("x").leftJustified(8, '\0');
    const QByteArray soundCompressed = compressedVariable(sound.mid(128));
    QByteArray cutStream = soundCompressed.left(soundCompressed.size() - 6);
    cutStream.replace(4, 4, littleEndian(quint32(cutStream.size() - 8)));
    const struct {
        const char *what;
        QByteArray bytes;
        const char *reason;
    } cases[] = {
        {"a variable that declares more bytes than follow it", tooLong, "a variable of 4816 bytes is larger than"},
        {"a tag cut short", sound + QByteArray(4, '\0'), "a variable is cut short"},
        {"a struct's field names beyond the struct", header() + tag(miMatrix, quint32(plainStruct.size())) + plainStruct,
         "the field names of a struct are damaged"},
        {"a cell of a thousand million arrays", header() + tag(miMatrix, quint32(hugeCell.size())) + hugeCell,
         "an array declares 1000000000 elements in 8 bytes"},
        {"ten million numbers in a field that the struct's names don't count",
         header() + tag(miMatrix, quint32(uncountedField.size())) + uncountedField,
         "an array declares 10485761 elements in 16 bytes"},
        {"a field whose flags are wider than two words", header() + tag(miMatrix, quint32(wideFlags.size())) + wideFlags,
         "the flags of an array are damaged"},
        {"a field whose dimensions are empty", header() + tag(miMatrix, quint32(emptyDims.size())) + emptyDims,
         "the dimensions of an array are damaged"},
        {"a struct that holds fewer fields than its elements have",
         header() + tag(miMatrix, quint32(twoElementStruct.size())) + twoElementStruct,
         "a cell or struct declares 2 array(s) and holds 1"},
        {"a struct that holds more fields than its elements have",
         header() + tag(miMatrix, quint32(oneFieldStruct.size() + 16)) + oneFieldStruct + tag(miMatrix, 0)
             + tag(miMatrix, 0),
         "a cell or struct declares 1 array(s) and holds 2"},
        {"a text whose letters declare a gigabyte", header() + tag(miMatrix, quint32(hugeText.size())) + hugeText,
         "the values of an array declare more bytes than the array has"},
        {"a compressed cell of a thousand million arrays",
         header() + compressedVariable(tag(miMatrix, quint32(hugeCell.size())) + hugeCell),
         "an array declares 1000000000 elements in 8 bytes"},
        {"a compressed variable that inflates to 65 MB", header() + compressedVariable(QByteArray(65 << 20, '\0')),
         "a compressed variable inflates beyond 64 MB"},
        {"a compressed variable whose stream is cut", header() + cutStream, "a compressed variable is damaged"},
        {"a compressed variable that holds no array", header() + compressedVariable(tag(miInt8, 8) + QByteArray(8, 'x')),
         "a compressed variable holds no whole array"},
        {"a file of version 7.3", header(0x0200) + sound.mid(128), "it is no Level 5 MAT file"},
        {"no endian indicator", sound.left(126) + "XX" + sound.mid(128), "it has no endian indicator"},
        {"less than a header", sound.left(100), "shorter than the header"},
    };
    QTemporaryDir dir;
    for (const auto &input : cases) {
        const LogCatcher log;
        EXPECT_FALSE(MatExchangeFile::read(written(dir, input.bytes)).has_value()) << input.what;
        EXPECT_TRUE(log.contains(QString::fromLatin1(input.reason))) << input.what;
        EXPECT_FALSE(MAT_Converter::fromByteArray(input.bytes, "speed")) << input.what;
    }
    for (const QByteArray &bytes : {sound, header() + soundCompressed}) {
        const auto read = MatExchangeFile::read(written(dir, bytes));
        ASSERT_TRUE(read.has_value());
        EXPECT_EQ(MAT_Converter::toVariant(read->value("speed").data()).toDouble(), 2.0) << "a sound file still reads";
    }
}
