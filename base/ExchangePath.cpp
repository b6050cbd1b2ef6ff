#include "base/ExchangePath.h"

#include <QAtomicInteger>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

QAtomicInteger<qint32> exchangeFileCounter = 0;

} // namespace

QString getPathFileExchange(const QString &suffix)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(folder);
    const QString path = QDir::toNativeSeparators(folder
                                                  + QStringLiteral("/zolvane_ds_exchange_%1_%2.%3")
                                                        .arg(QCoreApplication::applicationPid())
                                                        .arg(exchangeFileCounter.fetchAndAddOrdered(1))
                                                        .arg(suffix));
    if (QFile::exists(path) && !QFile::remove(path)) {
        qCritical() << "file" << path << "exists and cannot remove";
        return {};
    }
    return path;
}
