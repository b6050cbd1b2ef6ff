#include "materials/MaterialTextReader.h"

#include <QDebug>
#include <QRegularExpression>

#include "materials/MaterialDescribe.h"

MaterialTextReader::MaterialTextReader(const QString &filePath)
    : m_file(filePath)
{
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCritical().noquote() << "Error: can't open for read file" << filePath;
        return;
    }
    // The stream keeps the system's default codec: library files are written by hand.
    m_stream.setDevice(&m_file);
}

bool MaterialTextReader::atEnd() const
{
    return !m_hasPending && (!isOpen() || m_stream.atEnd());
}

QString MaterialTextReader::nextLine()
{
    if (m_hasPending) {
        m_hasPending = false;
        return m_pending;
    }
    return atEnd() ? QString() : m_stream.readLine();
}

void MaterialTextReader::putBack(const QString &line)
{
    m_pending = line;
    m_hasPending = true;
}

double MaterialTextReader::nextValue()
{
    return stringToDouble(nextLine());
}

void MaterialTextReader::readDescription(MaterialDescribe &record, bool withSource)
{
    record.name = nextLine().simplified();
    record.description = nextLine().simplified();
    if (withSource)
        record.source = nextLine().remove(QStringLiteral("source: "), Qt::CaseInsensitive);
}

void MaterialTextReader::readTags(const QVector<TagReader> &readers)
{
    while (!atEnd()) {
        const QString line = nextLine();
        for (const TagReader &reader : readers) {
            if (hasTag(line, reader.tag)) {
                reader.read(line);
                break;
            }
        }
    }
}

void MaterialTextReader::readQuantity(const QString &tagLine, QString &unit, double &value)
{
    unit = unitOf(tagLine);
    value = nextValue();
}

bool MaterialTextReader::hasTag(const QString &line, const QString &tag)
{
    return line.startsWith(tag, Qt::CaseInsensitive);
}

QString MaterialTextReader::unitOf(const QString &text)
{
    static const QRegularExpression unit(QStringLiteral("^.*\\((.+)\\)$"));
    return unit.match(text).captured(1);
}
