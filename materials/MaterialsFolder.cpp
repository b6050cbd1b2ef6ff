#include "materials/MaterialsFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include "base/ParentProcessKind.h"

QString materialsFolder()
{
    const QSettings settings(QStringLiteral("Quorlan"), QStringLiteral("Zolvane"));
    auto rootMaterials = [&settings](const QString &key) -> QString {
        const QString root = settings.value(key).toString();
        if (root.isEmpty())
            return {};
        const QString path = root + QStringLiteral("/materials");
        return QFileInfo(path).isDir() ? path : QString();
    };

    QStringList keys;
    switch (parentProcessKind()) {
    case ParentProcessKind::Matlab:
        keys << QStringLiteral("RootPathMatlab");
        break;
    case ParentProcessKind::Orvane:
        keys << QStringLiteral("RootPath");
        break;
    case ParentProcessKind::None:
        keys << QStringLiteral("RootPathMatlab") << QStringLiteral("RootPath");
        break;
    }
    for (const QString &key : qAsConst(keys)) {
        const QString path = rootMaterials(key);
        if (!path.isEmpty())
            return path;
    }
    const QString assets = QCoreApplication::applicationDirPath() + QStringLiteral("/assets/materials");
    if (QFileInfo(assets).isDir())
        return assets;
    return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/../materials")).absolutePath();
}
