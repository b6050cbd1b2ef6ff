#pragma once

#include "materials/MaterialDescribeEngine.h"

class MaterialTextReader;

// The laminated and pressed irons of the library, below its folder "/Iron".
class MaterialIronEngine : public MaterialEngine<MaterialIronDescribe>
{
public:
    // Reads "<libraryPath>/Iron"; the program's catalogue is instance().
    explicit MaterialIronEngine(const QString &libraryPath, QObject *parent = nullptr);

    // The catalogue of the library folder of this program, built on first use.
    static MaterialIronEngine &instance();
    // A file that cannot be opened gives a record with empty fields.
    static MaterialIronDescribe readFromFile(const QString &filePath);

private:
    std::unique_ptr<MaterialDescribe> readRecord(const QString &filePath) const override;

    static void readCurve(MaterialTextReader &reader, MaterialIronDescribe &record);
    static void readLoss(MaterialTextReader &reader, MaterialIronDescribe &record);
    static void readSteinmetz(MaterialTextReader &reader, MaterialIronDescribe &record);
    static void readLossTable(MaterialTextReader &reader, const QString &header, MaterialIronDescribe &record);
};
