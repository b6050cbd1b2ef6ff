#include <gtest/gtest.h>

#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include "document/Document.h"
#include "geometry/Stator.h"

// Damaged copies of the bundled example: each is refused as damaged, the program goes
// on with a usable document, and the damaged file stays as it was.

namespace {

QByteArray exampleBytes()
{
    QFile file(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray bigEndian(qint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray bigEndian(double value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

// The stator block opens with its version, the slot count and the two diameters.
int statorSlotsOffset(const QByteArray &bytes)
{
    const QByteArray pattern = bigEndian(qint32(12)) + bigEndian(120.0) + bigEndian(200.0);
    const int at = bytes.indexOf(pattern);
    return at < 0 ? -1 : at;
}

struct Refusal {
    const char *what;
    int offset;
    QByteArray replacement;
};

} // namespace

TEST(DamagedFiles, ValuesOutsideTheirRangesAreRefusedAsDamaged)
{
    const QByteArray example = exampleBytes();
    ASSERT_FALSE(example.isEmpty());
    const int statorSlots = statorSlotsOffset(example);
    ASSERT_GT(statorSlots, 0) << "the example's stator block";
    // Magic, version, then machine type, boundary condition mode, boundary condition, mode.
    const Refusal refusals[] = {
        {"unknown machine type", 8, bigEndian(qint32(0))},
        {"machine type past the last", 8, bigEndian(qint32(6))},
        {"negative machine type", 8, bigEndian(qint32(-7))},
        {"boundary condition mode", 12, bigEndian(qint32(9))},
        {"boundary condition", 16, bigEndian(qint32(42))},
        {"document mode", 20, bigEndian(qint32(100))},
        {"no slots", statorSlots, bigEndian(qint32(0))},
        {"a hundred thousand slots", statorSlots, bigEndian(qint32(100000))},
        {"a diameter that is no number", statorSlots + 4, bigEndian(std::nan(""))},
        {"a negative diameter", statorSlots + 12, bigEndian(-5.0)},
    };
    QTemporaryDir folder;
    for (const Refusal &refusal : refusals) {
        QByteArray damaged = example;
        damaged.replace(refusal.offset, refusal.replacement.size(), refusal.replacement);
        const QString path = folder.filePath(QStringLiteral("damaged.zva"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damaged);
        file.close();

        Document doc(nullptr);
        doc.start();
        EXPECT_FALSE(doc.load(path)) << refusal.what;
        EXPECT_GE(doc.stator()->numberSlots(), Machine::fewestSlots) << refusal.what;
        EXPECT_LE(doc.stator()->numberSlots(), Machine::mostSlots) << refusal.what;
        QFile kept(path);
        ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
        EXPECT_EQ(kept.readAll(), damaged) << refusal.what << ": the file is left as it was";
    }
}

TEST(DamagedFiles, TheUndamagedExampleStillLoads)
{
    Document doc(nullptr);
    doc.start();
    EXPECT_TRUE(doc.load(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva")));
    EXPECT_EQ(doc.stator()->numberSlots(), 12);
}
