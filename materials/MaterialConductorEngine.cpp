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
    reader.readTags({
        {QStringLiteral("<Description>"), [&](const QString &) { reader.readDescription(record, false); }},
        {QStringLiteral("<Electric resistivity>"),
         [&](const QString &line) {
             reader.readQuantity(line, record.electricResistivityUnit, record.electricResistivity);
         }},
        {QStringLiteral("<Temperature coefficient of resistance>"),
         [&](const QString &) { record.temperatureCoefficient = reader.nextValue(); }},
        {QStringLiteral("<Mass Density>"),
         [&](const QString &line) { reader.readQuantity(line, record.massDensityUnit, record.massDensity); }},
    });
    return record;
}

std::unique_ptr<MaterialDescribe> MaterialConductorEngine::readRecord(const QString &filePath) const
{
    return std::make_unique<MaterialConductorDescribe>(readFromFile(filePath));
}
