#include "materials/MaterialConductorEngine.h"

#include "materials/BasicMaterials.h"
#include "materials/MaterialTextReader.h"
#include "materials/MaterialsFolder.h"

MaterialConductorEngine::MaterialConductorEngine(const QString &libraryPath, QObject *parent)
    : MaterialEngine(QSharedPointer<ConductorMaterial>::create(), parent)
{
    qRegisterMetaType<MaterialConductorDescribe>("MaterialConductorDescribe");
    build(libraryPath + QStringLiteral("/Conductor"), "Error: not exists folder of material of conductor");
}

MaterialConductorEngine &MaterialConductorEngine::instance()
{
    static MaterialConductorEngine engine(materialsFolder());
    return engine;
}

MaterialConductorDescribe MaterialConductorEngine::readFromFile(const QString &filePath)
{
    MaterialConductorDescribe record;
    MaterialTextReader reader(filePath);
    if (!reader.isOpen())
        return record;
    record.fileName = filePath;
    while (!reader.atEnd()) {
        const QString line = reader.nextLine();
        if (MaterialTextReader::hasTag(line, QStringLiteral("<Description>"))) {
            reader.readDescription(record, false);
        } else if (MaterialTextReader::hasTag(line, QStringLiteral("<Electric resistivity>"))) {
            record.electricResistivityUnit = MaterialTextReader::unitOf(line);
            record.electricResistivity = reader.nextValue();
        } else if (MaterialTextReader::hasTag(line, QStringLiteral("<Temperature coefficient of resistance>"))) {
            record.temperatureCoefficient = reader.nextValue();
        } else if (MaterialTextReader::hasTag(line, QStringLiteral("<Mass Density>"))) {
            record.massDensityUnit = MaterialTextReader::unitOf(line);
            record.massDensity = reader.nextValue();
        }
    }
    return record;
}

std::unique_ptr<MaterialDescribe> MaterialConductorEngine::readRecord(const QString &filePath) const
{
    return std::make_unique<MaterialConductorDescribe>(readFromFile(filePath));
}
