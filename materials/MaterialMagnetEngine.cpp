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
    reader.readTags({
        {QStringLiteral("<Description>"), [&](const QString &) { reader.readDescription(record, true); }},
        {QStringLiteral("<Electric resistivity>"),
         [&](const QString &line) {
             reader.readQuantity(line, record.electricResistivityUnit, record.electricResistivity);
         }},
        {QStringLiteral("<Mass Density>"),
         [&](const QString &line) { reader.readQuantity(line, record.massDensityUnit, record.massDensity); }},
    });
    return record;
}

std::unique_ptr<MaterialDescribe> MaterialMagnetEngine::readRecord(const QString &filePath) const
{
    return std::make_unique<MaterialMagnetDescribe>(readFromFile(filePath));
}
