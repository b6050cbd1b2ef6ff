#include "materials/TransistorDescriptorEngine.h"

#include <QDebug>
#include <QDir>

#include "materials/MaterialTextReader.h"
#include "materials/MaterialsFolder.h"

TransistorDescriptorEngine::TransistorDescriptorEngine(const QString &libraryPath)
{
    // The name is stored in documents as the drive's switch, so it is not translated.
    m_transistors.append({QString(), QStringLiteral("Ideal (no losses, no voltage drop)"), QString(),
                          QStringLiteral("MOSFET")});

    const QString folder = libraryPath + QStringLiteral("/Transistor");
    if (!QFileInfo(folder).isDir()) {
        qCritical().noquote() << "Error: not exists folder of material of transistor" << folder;
        return;
    }
    const QFileInfoList files = QDir(folder).entryInfoList({QStringLiteral("*.txt")},
                                                          QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo &info : files) {
        MaterialTextReader reader(info.filePath());
        if (!reader.isOpen())
            continue;
        TransistorDescribe transistor;
        transistor.fileName = info.filePath();
        transistor.name = info.completeBaseName();
        while (!reader.atEnd()) {
            if (MaterialTextReader::hasTag(reader.nextLine(), QStringLiteral("<Description>")))
                transistor.description = reader.nextLine();
        }
        m_transistors.append(transistor);
    }
}

const TransistorDescriptorEngine &TransistorDescriptorEngine::instance()
{
    static const TransistorDescriptorEngine engine(materialsFolder());
    return engine;
}

const TransistorDescribe *TransistorDescriptorEngine::describe(const QString &name) const
{
    for (const TransistorDescribe &transistor : m_transistors) {
        if (transistor.name == name)
            return &transistor;
    }
    return nullptr;
}
