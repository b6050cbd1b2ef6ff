#include "app/FileAssociation.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextStream>

namespace {

void writeText(const QString &path, const QString &text)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    QTextStream(&file) << text;
    file.commit();
}

} // namespace

void registerFileType(const QString &exeFileName, const QString &description, const QString &suffix, int iconIndex)
{
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString mimeType = QStringLiteral("application/x-zolvane-%1").arg(suffix);
    const QString program = QDir(QCoreApplication::applicationDirPath()).filePath(exeFileName);
    const QString icon = QStringLiteral("zolvane-ds-document-%1").arg(iconIndex);

    writeText(dataHome + QStringLiteral("/mime/packages/zolvane-ds-%1.xml").arg(suffix),
              QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
                             "  <mime-type type=\"%1\">\n"
                             "    <comment>%2 (.%3)</comment>\n"
                             "    <icon name=\"%4\"/>\n"
                             "    <glob pattern=\"*.%3\"/>\n"
                             "  </mime-type>\n"
                             "</mime-info>\n")
                  .arg(mimeType, description.toHtmlEscaped(), suffix, icon));

    writeText(dataHome + QStringLiteral("/applications/zolvane-ds-%1.desktop").arg(suffix),
              QStringLiteral("[Desktop Entry]\n"
                             "Type=Application\n"
                             "Name=%1\n"
                             "Exec=\"%2\" %f\n"
                             "MimeType=%3;\n"
                             "NoDisplay=true\n")
                  .arg(description, program, mimeType));
}
