#include "app/QDebugStream.h"

#include <QDebug>

QDebugStream::QDebugStream(std::ostream &stream, const QString &prefix)
    : m_stream(&stream)
    , m_oldBuffer(stream.rdbuf())
    , m_prefix(prefix)
{
    m_stream->rdbuf(this);
}

QDebugStream::~QDebugStream()
{
    m_stream->rdbuf(m_oldBuffer);
}

void QDebugStream::logLine()
{
    qDebug().noquote() << m_prefix << m_lineBuffer;
    m_lineBuffer.clear();
}

QDebugStream::int_type QDebugStream::overflow(int_type character)
{
    const std::lock_guard locker(m_mutex);
    if (character == traits_type::eof())
        return traits_type::not_eof(character);
    if (character != '\n')
        m_lineBuffer.append(QChar(char(character)));
    else if (!m_lineBuffer.isEmpty())
        logLine();
    return character;
}

std::streamsize QDebugStream::xsputn(const char *text, std::streamsize count)
{
    const std::lock_guard locker(m_mutex);
    const QString block = QString::fromUtf8(text, int(count));
    if (!block.contains(QLatin1Char('\n'))) {
        m_lineBuffer.append(block);
        return count;
    }
    // The piece behind the last line feed is logged at once too.
    const QStringList parts = block.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        m_lineBuffer.append(part);
        logLine();
    }
    return count;
}
