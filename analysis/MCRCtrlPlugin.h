#pragma once

#include <QCoreApplication>
#include <QPluginLoader>
#include <QString>

class MCRCtrlInterface;

// The loader of the solver plug-in "MCRCtrl", found in a folder by its base name
// so that each platform adds its own prefix and suffix.
class MCRCtrlPlugin : public QPluginLoader
{
    Q_OBJECT
public:
    explicit MCRCtrlPlugin(const QString &folder = QCoreApplication::applicationDirPath(), QObject *parent = nullptr);

    // Null when the file can't be loaded or isn't a solver plug-in.
    MCRCtrlInterface *load();
    void unload();

private:
    // The loader forgets the name it was given when no such file exists.
    QString file() const;

    QString m_path;
};
