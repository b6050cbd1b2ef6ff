#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QMetaEnum>
#include <QVariant>

#include <type_traits>

// Reading from files that may be damaged or made to do harm: a count is taken only
// when the bytes left in the stream can hold that many entries, nesting has a bound,
// and compressed data a size it may grow to. Whatever fails a check marks the stream
// as holding damaged data, as Qt's own readers do.
namespace StreamChecks {

// Far deeper than any design nests its values, far shallower than the stack allows.
constexpr int maxNesting = 64;
// Far above the data of any real design.
constexpr int maxInflatedSize = 64 * 1024 * 1024;

// Whether `count` entries of at least `bytesEach` bytes fit into what is left to read;
// when not, the stream is marked damaged.
bool countFits(QDataStream &in, quint32 count, int bytesEach);

// Marks the stream damaged, with what was found, for the message to the user; returns
// false, for the caller to pass on.
bool refuse(QDataStream &in, const QString &reason = QString());
// What the first refusal on this stream's device found; empty when none said.
QString damage(const QDataStream &in);

// A stored choice of a Q_ENUM is kept only when its enumeration has it: otherwise the
// choice becomes `fallback` and the stream is marked damaged, naming `what` (unless an
// earlier read failed, whose reason stands). The enumeration needs a fixed underlying
// type, so that holding a damaged value before this check is no undefined behaviour.
template <typename Enum>
void checkEnumerator(QDataStream &in, Enum &value, Enum fallback, const QString &what)
{
    static_assert(std::is_same<std::underlying_type_t<Enum>, int>::value,
                  "a stored enumeration needs the fixed underlying type int");
    if (QMetaEnum::fromType<Enum>().valueToKey(int(value)))
        return;
    if (in.status() == QDataStream::Ok)
        refuse(in, QStringLiteral("%1 %2 is unknown").arg(what).arg(int(value)));
    value = fallback;
}

// A QVariant or a QVariantMap in their stream form, with every count of a list, map
// or container checked and nesting bounded.
QDataStream &readVariant(QDataStream &in, QVariant &value);
QDataStream &readVariantMap(QDataStream &in, QVariantMap &map);

// qUncompress of data that declares its inflated size in the 4-byte header: more
// than maxInflatedSize is refused before anything is inflated. An empty result for
// a header that declares data means damage, too.
bool uncompress(const QByteArray &stored, QByteArray &data);

} // namespace StreamChecks
