#include "app/Application.h"

#include <QDebug>

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    m_parentProcessKind = ParentProcessKind::None;
    setOrganizationName(QStringLiteral("Quorlan"));
    setApplicationName(QStringLiteral("Zolvane Design Studio"));

    const QString parentName = parentProcessFileName().toLower();
    qInfo() << "Parent process:" << parentName;
    m_parentProcessKind = parentProcessKindOf(parentName);
}

Application::~Application() = default;

QString zvaSuffix()
{
    static const QString suffix = QStringLiteral("zva");
    return suffix;
}

QString zvapSuffix()
{
    static const QString suffix = QStringLiteral("zvap");
    return suffix;
}
