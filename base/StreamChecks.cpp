#include "base/StreamChecks.h"

#include <QIODevice>
#include <QMetaEnum>
#include <QMetaObject>
#include <QMetaType>
#include <QStringList>
#include <QtEndian>
#include <zlib.h>

namespace StreamChecks {

namespace {

// A variant's type id and its null flag.
const int variantHeaderBytes = 5;
// A string's length word.
const int stringHeaderBytes = 4;
// The device carries what was found, since the stream can't.
const char *const damageProperty = "zdsDamage";

bool isCountedContainer(int typeId)
{
    return typeId == QMetaType::QPolygon || typeId == QMetaType::QPolygonF
        || QMetaType::hasRegisteredConverterFunction(typeId, qMetaTypeId<QtMetaTypePrivate::QSequentialIterableImpl>());
}

QDataStream &readValue(QDataStream &in, QVariant &value, int depth);

// Qt's own types that a design's values may hold. Qt's readers of its other types
// (easing curves, regions, images, fonts, binary JSON and the like) trust the counts
// and sizes inside them.
bool isPlainQtType(int typeId)
{
    switch (typeId) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
    case QMetaType::QUrl:
    case QMetaType::QUuid:
    case QMetaType::QPoint:
    case QMetaType::QPointF:
    case QMetaType::QSize:
    case QMetaType::QSizeF:
    case QMetaType::QRect:
    case QMetaType::QRectF:
    case QMetaType::QLine:
    case QMetaType::QLineF:
    case QMetaType::QColor:
        return true;
    default:
        return false;
    }
}

// Whether a stored enumerator is one of its enumeration's, where the enumeration is
// known to the meta-object system; flags take any combination.
bool isEnumerator(int typeId, qint32 stored)
{
    const QMetaObject *scope = QMetaType::metaObjectForType(typeId);
    const QByteArray name = QMetaType::typeName(typeId);
    const int index = scope ? scope->indexOfEnumerator(name.mid(name.lastIndexOf(':') + 1).constData()) : -1;
    if (index < 0)
        return true;
    const QMetaEnum enumeration = scope->enumerator(index);
    return enumeration.isFlag() || enumeration.valueToKey(stored) != nullptr;
}

template <typename Map>
bool readEntries(QDataStream &in, Map &map, int depth)
{
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok || !countFits(in, count, stringHeaderBytes + variantHeaderBytes))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        QString key;
        QVariant entry;
        in >> key;
        readValue(in, entry, depth + 1);
        if (in.status() != QDataStream::Ok)
            return false;
        map.insert(key, entry);
    }
    return true;
}

bool readList(QDataStream &in, QVariantList &list, int depth)
{
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok || !countFits(in, count, variantHeaderBytes))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        QVariant entry;
        readValue(in, entry, depth + 1);
        if (in.status() != QDataStream::Ok)
            return false;
        list.append(entry);
    }
    return true;
}

bool readStrings(QDataStream &in, QStringList &strings)
{
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok || !countFits(in, count, stringHeaderBytes))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        QString entry;
        in >> entry;
        if (in.status() != QDataStream::Ok)
            return false;
        strings.append(entry);
    }
    return true;
}

// Lists, maps and string lists are read here, entry by entry; any other value is read
// by QVariant itself from its start, once a container's count has been checked.
QDataStream &readValue(QDataStream &in, QVariant &value, int depth)
{
    value = QVariant();
    QIODevice *device = in.device();
    if (depth > maxNesting) {
        refuse(in, QStringLiteral("values are nested more than %1 deep").arg(maxNesting));
        return in;
    }
    if (!device || device->isSequential()) {
        refuse(in);
        return in;
    }
    const qint64 start = device->pos();
    quint32 typeId = 0;
    qint8 isNull = 0;
    in >> typeId >> isNull;
    const bool isUserType = typeId == QMetaType::User;
    if (isUserType) {
        QByteArray name;
        in >> name;
        typeId = QMetaType::type(name.constData());
    }
    // A type this program doesn't know is damage that its callers may choose to pass
    // over, as Qt's own reader leaves it: no reason is given. Type 0 is the invalid value.
    const bool unknown = isUserType ? typeId == QMetaType::UnknownType
                                    : typeId != QMetaType::UnknownType && !QMetaType::isRegistered(int(typeId));
    if (unknown)
        refuse(in);
    else if (!isUserType && typeId != QMetaType::UnknownType && !isPlainQtType(int(typeId)))
        refuse(in, QStringLiteral("a value of type %1 has no place in a design")
                       .arg(QString::fromLatin1(QMetaType::typeName(int(typeId)))));
    if (in.status() != QDataStream::Ok)
        return in;

    switch (typeId) {
    case QMetaType::QVariantList: {
        QVariantList list;
        if (readList(in, list, depth))
            value = list;
        return in;
    }
    case QMetaType::QVariantMap: {
        QVariantMap map;
        if (readEntries(in, map, depth))
            value = map;
        return in;
    }
    case QMetaType::QVariantHash: {
        QVariantHash hash;
        if (readEntries(in, hash, depth))
            value = hash;
        return in;
    }
    case QMetaType::QStringList: {
        QStringList strings;
        if (readStrings(in, strings))
            value = strings;
        return in;
    }
    default:
        break;
    }
    // The model indexes its tables by enumerators: one outside its enumeration must
    // not even be made into a value.
    if (QMetaType::typeFlags(int(typeId)) & QMetaType::IsEnumeration) {
        qint32 stored = 0;
        in >> stored;
        if (in.status() == QDataStream::Ok && !isEnumerator(int(typeId), stored))
            refuse(in, QStringLiteral("%1 is no value of %2")
                           .arg(stored)
                           .arg(QString::fromLatin1(QMetaType::typeName(int(typeId)))));
        if (in.status() != QDataStream::Ok)
            return in;
    }
    if (isCountedContainer(int(typeId))) {
        quint32 count = 0;
        in >> count;
        if (in.status() != QDataStream::Ok || !countFits(in, count, 1))
            return in;
    }
    device->seek(start);
    return in >> value;
}

} // namespace

bool refuse(QDataStream &in, const QString &reason)
{
    in.setStatus(QDataStream::ReadCorruptData);
    QIODevice *device = in.device();
    if (device && !reason.isEmpty() && damage(in).isEmpty())
        device->setProperty(damageProperty, reason);
    return false;
}

QString damage(const QDataStream &in)
{
    const QIODevice *device = in.device();
    return device ? device->property(damageProperty).toString() : QString();
}

bool countFits(QDataStream &in, quint32 count, int bytesEach)
{
    const QIODevice *device = in.device();
    const qint64 left = device ? device->bytesAvailable() : 0;
    if (quint64(count) * quint64(bytesEach) <= quint64(qMax<qint64>(left, 0)))
        return true;
    return refuse(in, QStringLiteral("a count of %1 entries is more than the %2 bytes left can hold")
                          .arg(count)
                          .arg(left));
}

QDataStream &readVariant(QDataStream &in, QVariant &value)
{
    return readValue(in, value, 0);
}

QDataStream &readVariantMap(QDataStream &in, QVariantMap &map)
{
    map.clear();
    QVariantMap read;
    if (readEntries(in, read, 0))
        map = read;
    return in;
}

bool uncompress(const QByteArray &stored, QByteArray &data)
{
    data.clear();
    if (stored.isEmpty())
        return true;
    if (stored.size() < 4)
        return false;
    const quint32 declared = qFromBigEndian<quint32>(stored.constData());
    if (declared == 0)
        return true;
    if (declared > quint32(maxInflatedSize))
        return false;
    // Inflated into exactly the declared size: data that would grow past it is damaged,
    // and can't take more memory than it declared.
    QByteArray inflated(int(declared), Qt::Uninitialized);
    z_stream zs{};
    zs.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(stored.constData() + 4));
    zs.avail_in = uInt(stored.size() - 4);
    zs.next_out = reinterpret_cast<Bytef *>(inflated.data());
    zs.avail_out = uInt(declared);
    if (inflateInit(&zs) != Z_OK)
        return false;
    const int result = inflate(&zs, Z_FINISH);
    const bool complete = result == Z_STREAM_END && zs.total_out == declared;
    inflateEnd(&zs);
    if (!complete)
        return false;
    data = inflated;
    return true;
}

} // namespace StreamChecks
