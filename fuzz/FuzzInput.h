#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <cstddef>
#include <cstdint>

// The readers take paths: each input goes to a file of this process's own.
inline QString writeFuzzInput(const char *suffix, const uint8_t *data, size_t size)
{
    const QString path = QDir::tempPath()
                       + QStringLiteral("/zds-fuzz-%1.%2")
                             .arg(QCoreApplication::applicationPid())
                             .arg(QLatin1String(suffix));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    return path;
}

// Logs of the readers would drown the fuzzer's own output.
inline void silenceLog()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}
