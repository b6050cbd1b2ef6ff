#include "app/ParentProcess.h"

#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace {

// The parent id is the fourth field of /proc/self/stat, behind the command name in
// parentheses, which may itself hold blanks and parentheses.
qint64 parentProcessId()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray line = stat.readAll();
    const int end = line.lastIndexOf(')');
    if (end < 0)
        return 0;
    const QList<QByteArray> fields = line.mid(end + 2).split(' ');
    return fields.size() > 1 ? fields.at(1).toLongLong() : 0;
}

} // namespace

QString parentProcessFileName()
{
    const qint64 parentId = parentProcessId();
    if (parentId <= 0)
        return {};
    const QString exe = QFileInfo(QStringLiteral("/proc/%1/exe").arg(parentId)).symLinkTarget();
    return QFileInfo(exe).fileName();
}

ParentProcessKind parentProcessKindOf(const QString &fileName)
{
    const QString name = fileName.toLower();
    if (name == QLatin1String("matlab.exe") || name == QLatin1String("matlab"))
        return ParentProcessKind::Matlab;
    if (name == QLatin1String("orvane.exe") || name == QLatin1String("orvane"))
        return ParentProcessKind::Orvane;
    return ParentProcessKind::None;
}
