#include "app/ExchangeFile.h"

#include <QFileInfo>

QString resolveShellLink(const QString &path)
{
    if (!path.endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive))
        return path;
    const QString target = QFileInfo(path).symLinkTarget();
    return target.isEmpty() ? path : target;
}
