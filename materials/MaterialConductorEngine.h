#pragma once

#include "materials/MaterialDescribeEngine.h"

// The conductors of the library, below its folder "/Conductor".
class MaterialConductorEngine : public MaterialEngine<MaterialConductorDescribe>
{
public:
    // Reads "<libraryPath>/Conductor"; the program's catalogue is instance().
    explicit MaterialConductorEngine(const QString &libraryPath, QObject *parent = nullptr);

    // The catalogue of the library folder of this program, built on first use.
    static MaterialConductorEngine &instance();
    // A file that cannot be opened gives a record with empty fields.
    static MaterialConductorDescribe readFromFile(const QString &filePath);

private:
    std::unique_ptr<MaterialDescribe> readRecord(const QString &filePath) const override;
};
