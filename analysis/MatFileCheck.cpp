#include "analysis/MatFileCheck.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QtEndian>
#include <zlib.h>

namespace MatFileCheck {

namespace {

// The descriptive text and the subsystem offset come before the version and the
// endian indicator.
const int headerSize = 128;
const int versionOffset = 124;
const quint16 level5Version = 0x0100;
const int tagSize = 8;
// Far deeper than the cells and structs of any exchange file.
const int maxNesting = 32;

const quint32 miInt8 = 1;
const quint32 miInt32 = 5;
const quint32 miUInt32 = 6;
const quint32 miMatrix = 14;
const quint32 miCompressed = 15;
// Far beyond the largest exchange file of a real design, inflated.
const qint64 maxInflated = qint64(64) << 20;
const quint32 cellClass = 1;
const quint32 structClass = 2;
const quint32 sparseClass = 5;

// The bytes of a file in the order it was written.
class Bytes
{
public:
    Bytes(const QByteArray &bytes, bool bigEndian)
        : m_bytes(bytes)
        , m_bigEndian(bigEndian)
    {
    }

    qint64 size() const { return m_bytes.size(); }

    quint32 word(qint64 at) const
    {
        const auto *data = reinterpret_cast<const uchar *>(m_bytes.constData()) + at;
        return m_bigEndian ? qFromBigEndian<quint32>(data) : qFromLittleEndian<quint32>(data);
    }

private:
    const QByteArray &m_bytes;
    bool m_bigEndian;
};

// One data element: its type and where its data lie; data of up to four bytes are
// packed into the tag.
struct Element {
    quint32 type = 0;
    qint64 data = 0;
    qint64 size = 0;
    // Where the next element starts: data are padded to eight bytes.
    qint64 next = 0;
};

bool readElement(const Bytes &bytes, qint64 at, qint64 end, Element &element)
{
    if (at + tagSize > end)
        return false;
    const quint32 first = bytes.word(at);
    if (first >> 16)
        element = {first & 0xFFFF, at + 4, first >> 16, at + tagSize};
    else
        element = {first, at + tagSize, bytes.word(at + 4), at + tagSize + ((qint64(bytes.word(at + 4)) + 7) / 8) * 8};
    return element.data + element.size <= qMin(end, element.next);
}

// Counts of elements stop growing far beyond any file.
quint64 product(quint64 a, quint64 b)
{
    const quint64 most = quint64(1) << 62;
    return a != 0 && b > most / a ? most : a * b;
}

QString checkArray(const Bytes &bytes, qint64 at, qint64 end, int depth);

// The arrays of a cell or the fields of a struct, each a matrix element of its own.
// libmatio reads as many elements as the count says, one after the other, wherever they
// end: the elements present must be exactly those.
QString checkArrays(const Bytes &bytes, qint64 at, qint64 end, quint64 count, int depth)
{
    if (count > quint64(end - at) / tagSize)
        return QStringLiteral("an array declares %1 elements in %2 bytes").arg(count).arg(end - at);
    quint64 present = 0;
    for (; at < end; ++present) {
        Element element;
        // libmatio steps from one to the next by their sizes, which a sound file pads.
        if (!readElement(bytes, at, end, element) || element.type != miMatrix || element.size % 8 != 0)
            return QStringLiteral("an element of a cell or struct is damaged");
        if (element.size > 0) {
            const QString wrong = checkArray(bytes, element.data, element.data + element.size, depth + 1);
            if (!wrong.isEmpty())
                return wrong;
        }
        at = element.next;
    }
    if (present != count)
        return QStringLiteral("a cell or struct declares %1 array(s) and holds %2").arg(count).arg(present);
    return QString();
}

// A matrix element's data: flags, dimensions, name, then what its class holds.
QString checkArray(const Bytes &bytes, qint64 at, qint64 end, int depth)
{
    if (depth > maxNesting)
        return QStringLiteral("arrays are nested more than %1 deep").arg(maxNesting);
    Element flags;
    Element dims;
    Element name;
    if (!readElement(bytes, at, end, flags) || !readElement(bytes, flags.next, end, dims)
        || !readElement(bytes, dims.next, end, name))
        return QStringLiteral("the head of an array is damaged");
    // libmatio takes the flags as two words and the dimensions as one word each, padded
    // to eight bytes, wherever their tags say otherwise: it would read what follows out
    // of step, as dimensions of any size.
    if (flags.type != miUInt32 || flags.size != 8)
        return QStringLiteral("the flags of an array are damaged");
    if (dims.type != miInt32 || dims.size < 8 || dims.size % 4 != 0)
        return QStringLiteral("the dimensions of an array are damaged");
    const quint32 arrayClass = bytes.word(flags.data) & 0xFF;
    quint64 count = 1;
    for (qint64 d = dims.data; d + 4 <= dims.data + dims.size; d += 4)
        count = product(count, bytes.word(d));
    const qint64 left = end - name.next;
    if (arrayClass == cellClass)
        return checkArrays(bytes, name.next, end, count, depth);
    if (arrayClass == structClass) {
        Element length;
        Element names;
        if (!readElement(bytes, name.next, end, length) || length.size < 4
            || !readElement(bytes, length.next, end, names) || names.type != miInt8)
            return QStringLiteral("the field names of a struct are damaged");
        const quint32 nameLength = bytes.word(length.data);
        const quint64 fields = nameLength == 0 ? 0 : quint64(names.size) / nameLength;
        return checkArrays(bytes, names.next, end, product(count, fields), depth);
    }
    // A sparse array counts its values apart from its dimensions; any other stores each
    // of its elements in one byte at least.
    if (arrayClass != sparseClass && count > quint64(qMax<qint64>(left, 0)))
        return QStringLiteral("an array declares %1 elements in %2 bytes").arg(count).arg(left);
    // libmatio allocates what each part of the values declares.
    for (qint64 part = name.next; part < end;) {
        Element values;
        if (!readElement(bytes, part, end, values))
            return QStringLiteral("the values of an array declare more bytes than the array has");
        part = values.next;
    }
    return QString();
}

// The variable that a compressed one holds, inflated; empty, with the reason, when the
// stream is damaged or would grow beyond the bound.
QByteArray inflated(const char *data, qint64 size, QString &wrong)
{
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) {
        wrong = QStringLiteral("a compressed variable can't be inflated");
        return {};
    }
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data));
    stream.avail_in = uInt(size);
    QByteArray out;
    int status = Z_OK;
    while (status == Z_OK) {
        if (out.size() >= maxInflated) {
            wrong = QStringLiteral("a compressed variable inflates beyond %1 MB").arg(maxInflated >> 20);
            break;
        }
        const int chunk = 1 << 16;
        const int used = out.size();
        out.resize(used + chunk);
        stream.next_out = reinterpret_cast<Bytef *>(out.data() + used);
        stream.avail_out = uInt(chunk);
        status = inflate(&stream, Z_NO_FLUSH);
        out.resize(used + chunk - int(stream.avail_out));
        if (status == Z_BUF_ERROR && stream.avail_in == 0)
            break;
    }
    inflateEnd(&stream);
    if (wrong.isEmpty() && status != Z_STREAM_END)
        wrong = QStringLiteral("a compressed variable is damaged");
    return wrong.isEmpty() ? out : QByteArray();
}

// A compressed variable holds one whole variable, which libmatio reads as it reads a
// plain one.
QString checkCompressed(const QByteArray &content, const Element &variable, bool bigEndian)
{
    QString wrong;
    const QByteArray inner = inflated(content.constData() + variable.data, variable.size, wrong);
    if (!wrong.isEmpty())
        return wrong;
    const Bytes bytes(inner, bigEndian);
    Element matrix;
    if (!readElement(bytes, 0, bytes.size(), matrix) || matrix.type != miMatrix)
        return QStringLiteral("a compressed variable holds no whole array");
    return matrix.size > 0 ? checkArray(bytes, matrix.data, matrix.data + matrix.size, 0) : QString();
}

} // namespace

QString problem(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const QByteArray content = file.readAll();
    if (content.size() < headerSize)
        return QStringLiteral("it is shorter than the header of a MAT file");
    const char *mark = content.constData() + versionOffset;
    // The writer's "IM" read in the reader's order says which order the file is in.
    const bool bigEndian = mark[2] == 'M' && mark[3] == 'I';
    if (!bigEndian && !(mark[2] == 'I' && mark[3] == 'M'))
        return QStringLiteral("it has no endian indicator of a MAT file");
    const auto *version = reinterpret_cast<const uchar *>(mark);
    if ((bigEndian ? qFromBigEndian<quint16>(version) : qFromLittleEndian<quint16>(version)) != level5Version)
        return QStringLiteral("it is no Level 5 MAT file");

    const Bytes bytes(content, bigEndian);
    for (qint64 at = headerSize; at < bytes.size();) {
        if (at + tagSize > bytes.size())
            return QStringLiteral("a variable is cut short");
        Element variable;
        if (!readElement(bytes, at, bytes.size(), variable))
            return QStringLiteral("a variable of %1 bytes is larger than the %2 bytes left")
                .arg(variable.size)
                .arg(bytes.size() - variable.data);
        QString wrong;
        if (variable.type == miMatrix && variable.size > 0)
            wrong = checkArray(bytes, variable.data, variable.data + variable.size, 0);
        else if (variable.type == miCompressed)
            wrong = checkCompressed(content, variable, bigEndian);
        if (!wrong.isEmpty())
            return wrong;
        // A compressed variable isn't padded.
        at = variable.type == miMatrix ? variable.next : variable.data + variable.size;
    }
    return QString();
}

mat_t *openForRead(const QString &path)
{
    const QString wrong = problem(path);
    if (!wrong.isEmpty()) {
        qCritical().noquote() << QStringLiteral("Error: the MAT file %1 can't be read: %2").arg(path, wrong);
        return nullptr;
    }
    return Mat_Open(QFile::encodeName(QDir::toNativeSeparators(path)).constData(), MAT_ACC_RDONLY);
}

} // namespace MatFileCheck
