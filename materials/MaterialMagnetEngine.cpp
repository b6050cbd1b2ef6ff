#include "materials/MaterialMagnetEngine.h"

#include "materials/MagnetMaterial.h"
#include "materials/MaterialTextReader.h"
#include "materials/MaterialsFolder.h"

MaterialMagnetEngine::MaterialMagnetEngine(const QString &libraryPath, QObject *parent)
    : MaterialEngine(QSharedPointer<MagnetParallelMaterial>::create(270.0), parent)
{
    qRegisterMetaType<MaterialMagnetDescribe>("MaterialMagnetDescribe");
    build(libraryPath + QStringLiteral("/Magnet"), "Error: not exists folder of material of magnet");
}

MaterialMagnetEngine &MaterialMagnetEngine::instance()
{
    static MaterialMagnetEngine engine(materialsFolder());
    return engine;
}

MaterialMagnetDescribe MaterialMagnetEngine::readFromFile(const QString &filePath)
{
    MaterialMagnetDescribe record;
    MaterialTextReader reader(filePath);
    if (!reader.isOpen())
        return record;
    record.fileName = filePath;
    while (!reader.atEnd()) {
        const QString line = reader.nextLine();
        if (MaterialTextReader::hasTag(line, QStringLiteral("<Description>"))) {
            reader.readDescription(record, true);
        } else if (MaterialTextReader::hasTag(line, QStringLiteral("<Electric resistivity>"))) {
            record.electricResistivityUnit = MaterialTextReader::unitOf(line);
            record.electricResistivity = reader.nextValue();
        } else if (MaterialTextReader::hasTag(line, QStringLiteral("<Mass Density>"))) {
            record.massDensityUnit = MaterialTextReader::unitOf(line);
            record.massDensity = reader.nextValue();
        }
    }
    return record;
}

std::unique_ptr<MaterialDescribe> MaterialMagnetEngine::readRecord(const QString &filePath) const
{
    return std::make_unique<MaterialMagnetDescribe>(readFromFile(filePath));
}
