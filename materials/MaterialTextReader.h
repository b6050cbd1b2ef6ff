#pragma once

#include <QFile>
#include <QString>
#include <QTextStream>
#include <QVector>
#include <functional>

struct MaterialDescribe;

// Goes through a library file line by line, with the rules that all its kinds share:
// a tag opens a line in any case, a unit stands in the last parentheses that close the
// line, a value takes a line of its own.
class MaterialTextReader
{
public:
    // Logs a critical line when the file cannot be opened; the reader is then at its end.
    explicit MaterialTextReader(const QString &filePath);

    bool isOpen() const { return m_file.isOpen(); }
    bool atEnd() const;
    // The next line without its end of line; an empty string at the end.
    QString nextLine();
    // Hands a line back, so that a section that ends on a line it does not own leaves
    // that line to the search for tags.
    void putBack(const QString &line);
    // The next line as a number.
    double nextValue();
    // The lines after "<Description>": name and description, simplified, then, when
    // asked for, the source line without its "source: " label.
    void readDescription(MaterialDescribe &record, bool withSource);

    // One tag of a kind's files and what reads its section from the tag's line on.
    struct TagReader {
        QString tag;
        std::function<void(const QString &tagLine)> read;
    };
    // The whole file: each line that opens with one of the tags goes to that tag's
    // reader, which may read on; other lines are passed over.
    void readTags(const QVector<TagReader> &readers);
    // The unit from the tag's line, the value from the line after it.
    void readQuantity(const QString &tagLine, QString &unit, double &value);

    static bool hasTag(const QString &line, const QString &tag);
    // The text in the last parentheses when they close the text, else empty.
    static QString unitOf(const QString &text);

private:
    QFile m_file;
    QTextStream m_stream;
    QString m_pending;
    bool m_hasPending = false;
};
