#pragma once

#include "materials/MaterialDescribeEngine.h"

// The permanent magnets of the library, below its folder "/Magnet". The reader takes
// resistivity and density; the solver reads the magnetic data from the same files.
class MaterialMagnetEngine : public MaterialEngine<MaterialMagnetDescribe>
{
public:
    // Reads "<libraryPath>/Magnet"; the program's catalogue is instance().
    explicit MaterialMagnetEngine(const QString &libraryPath, QObject *parent = nullptr);

    // The catalogue of the library folder of this program, built on first use.
    static MaterialMagnetEngine &instance();
    // A file that cannot be opened gives a record with empty fields.
    static MaterialMagnetDescribe readFromFile(const QString &filePath);

private:
    std::unique_ptr<MaterialDescribe> readRecord(const QString &filePath) const override;
};
