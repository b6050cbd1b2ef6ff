#include "analysis/MCRCtrlPlugin.h"

#include "analysis/MCRCtrl/MCRCtrlInterface.h"

MCRCtrlPlugin::MCRCtrlPlugin(const QString &folder, QObject *parent)
    : QPluginLoader(parent)
    , m_path(folder + QLatin1String("/MCRCtrl"))
{
    setFileName(m_path);
}

MCRCtrlInterface *MCRCtrlPlugin::load()
{
    if (!QPluginLoader::load()) {
        qCritical() << "Can't load plugin" << file() << errorString();
        return nullptr;
    }
    auto *solver = qobject_cast<MCRCtrlInterface *>(instance());
    if (!solver) {
        qCritical() << "This " << file() << "is not plugin for MCRCtrlInterface";
        return nullptr;
    }
    qInfo() << "Plugin" << file() << "load";
    return solver;
}

void MCRCtrlPlugin::unload()
{
    if (!isLoaded())
        return;
    if (QPluginLoader::unload())
        qInfo() << "Plugin" << file() << "unload";
    else
        qCritical() << "Can't unload plugin" << file() << errorString();
}

QString MCRCtrlPlugin::file() const
{
    return fileName().isEmpty() ? m_path : fileName();
}
