#pragma once

#include <mutex>
#include <QString>
#include <ostream>
#include <streambuf>

// Sends what libraries write to a standard stream into the log, line by line,
// as debug messages behind a prefix. Restores the old buffer when destroyed.
class QDebugStream : public std::basic_streambuf<char>
{
public:
    QDebugStream(std::ostream &stream, const QString &prefix);
    ~QDebugStream() override;

    QDebugStream(const QDebugStream &) = delete;
    QDebugStream &operator=(const QDebugStream &) = delete;

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char *text, std::streamsize count) override;

private:
    void logLine();

    std::ostream *m_stream;
    std::streambuf *m_oldBuffer;
    QString m_lineBuffer;
    QString m_prefix;
    std::mutex m_mutex;
};
