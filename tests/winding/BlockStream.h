#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QMetaType>
#include <QVariant>
#include <functional>
#include <gtest/gtest.h>

// Streams as a document file has them: version 19, big-endian, doubles in double precision.
inline void setFileVersion(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_5_13);
}

// The bytes that a writer puts into a fresh stream.
inline QByteArray streamBytes(const std::function<void(QDataStream &)> &write)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    setFileVersion(out);
    write(out);
    return bytes;
}

// The block of an element with save(QDataStream &) const.
template <typename Element>
QByteArray savedBlock(const Element &element)
{
    return streamBytes([&element](QDataStream &out) { element.save(out); });
}

struct LoadResult
{
    bool accepted = false;
    QDataStream::Status status = QDataStream::Ok;
    // Every byte of the block was read, no more and no less.
    bool usedUp = false;
};

template <typename Element>
LoadResult loadBlock(Element &element, const QByteArray &bytes)
{
    QDataStream in(bytes);
    setFileVersion(in);
    LoadResult result;
    result.accepted = element.load(in);
    result.status = in.status();
    result.usedUp = in.atEnd() && in.status() == QDataStream::Ok;
    return result;
}

// A value inside a QVariant, written and read back as the undo history and the maps of a file do.
inline QVariant variantRoundTrip(const QVariant &value, QByteArray *bytes = nullptr)
{
    const QByteArray written = streamBytes([&value](QDataStream &out) { out << value; });
    if (bytes)
        *bytes = written;
    QDataStream in(written);
    setFileVersion(in);
    QVariant result;
    in >> result;
    return result;
}

// A value of a registered type keeps its name and its value through a stream.
template <typename T>
void expectVariantRoundTrip(const char *name, const T &value)
{
    SCOPED_TRACE(name);
    EXPECT_STREQ(QMetaType::typeName(qMetaTypeId<T>()), name);
    const QVariant back = variantRoundTrip(QVariant::fromValue(value));
    EXPECT_STREQ(back.typeName(), name);
    EXPECT_TRUE(back.value<T>() == value);
}
