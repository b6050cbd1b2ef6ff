#include "materials/MaterialIronEngine.h"

#include <QTextStream>
#include <cmath>

#include "base/Numeric.h"
#include "materials/BasicMaterials.h"
#include "materials/MaterialTextReader.h"
#include "materials/MaterialsFolder.h"

namespace {

// Table rows are machine-written: only the point is a decimal point there.
QList<double> rowNumbers(QString line, int count)
{
    QTextStream row(&line, QIODevice::ReadOnly);
    row.setLocale(QLocale::c());
    QList<double> numbers;
    for (int i = 0; i < count; ++i) {
        double number = 0.0;
        row >> number;
        numbers.append(number);
    }
    return numbers;
}

// Tables end at the first blank line or with the file.
bool nextRow(MaterialTextReader &reader, QString &line)
{
    if (reader.atEnd())
        return false;
    line = reader.nextLine();
    return !line.simplified().isEmpty();
}

QStringList headerTokens(const QString &header)
{
    return header.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

MaterialIronEngine::MaterialIronEngine(const QString &libraryPath, QObject *parent)
    : MaterialEngine(QSharedPointer<IronMaterial>::create(), parent)
{
    qRegisterMetaType<MaterialIronDescribe>("MaterialIronDescribe");
    build(libraryPath + QStringLiteral("/Iron"), "Error: not exists folder of material of iron");
}

MaterialIronEngine &MaterialIronEngine::instance()
{
    static MaterialIronEngine engine(materialsFolder());
    return engine;
}

MaterialIronDescribe MaterialIronEngine::readFromFile(const QString &filePath)
{
    MaterialIronDescribe record;
    MaterialTextReader reader(filePath);
    if (!reader.isOpen())
        return record;
    record.fileName = filePath;
    reader.readTags({
        {QStringLiteral("<Description>"), [&](const QString &) { reader.readDescription(record, true); }},
        {QStringLiteral("<B-H curve>"), [&](const QString &) { readCurve(reader, record); }},
        {QStringLiteral("<Iron loss>"), [&](const QString &) { readLoss(reader, record); }},
        {QStringLiteral("<Mass Density>"),
         [&](const QString &line) {
             reader.readQuantity(line, record.massDensityUnit, record.massDensity);
             record.massDensityUnit.replace(QStringLiteral("^3"), QStringLiteral("\u00B3"));
         }},
    });
    if (record.unitFrequency.isEmpty())
        record.unitFrequency = tr("Hz");
    if (record.unitFluxDensity.isEmpty())
        record.unitFluxDensity = tr("T");
    if (record.unitLoss.isEmpty())
        record.unitLoss = tr("W/kg");
    return record;
}

void MaterialIronEngine::readCurve(MaterialTextReader &reader, MaterialIronDescribe &record)
{
    // The line after the tag is the header, whether it is one or not.
    const QString header = reader.nextLine().simplified();
    if (header.startsWith(QLatin1Char('%'))) {
        for (const QString &token : headerTokens(header.mid(1))) {
            if (token.startsWith(QLatin1Char('H'), Qt::CaseInsensitive))
                record.unitH = MaterialTextReader::unitOf(token);
            else if (token.startsWith(QLatin1Char('B'), Qt::CaseInsensitive))
                record.unitB = MaterialTextReader::unitOf(token);
        }
    }
    QString line;
    while (nextRow(reader, line)) {
        const QList<double> row = rowNumbers(line, 2);
        record.curveH.append(row.at(0));
        record.curveB.append(row.at(1));
    }
}

void MaterialIronEngine::readLoss(MaterialTextReader &reader, MaterialIronDescribe &record)
{
    const QString line = reader.nextLine();
    const QString header = line.simplified();
    if (!header.startsWith(QLatin1Char('%'))) {
        reader.putBack(line);
        return;
    }
    const QString text = header.mid(1).trimmed();
    if (text.startsWith(QLatin1String("Steinmetz coefficients")))
        readSteinmetz(reader, record);
    else
        readLossTable(reader, text, record);
}

void MaterialIronEngine::readSteinmetz(MaterialTextReader &reader, MaterialIronDescribe &record)
{
    for (int i = 0; i < 4 && !reader.atEnd(); ++i) {
        const QString line = reader.nextLine();
        const QStringList parts = line.simplified().split(QLatin1Char('%'));
        const QString key = parts.size() == 2 ? parts.at(1).simplified().toLower() : QString();
        double *coefficient = key == QLatin1String("alfa") ? &record.alfa
            : key == QLatin1String("beta")                 ? &record.beta
            : key == QLatin1String("ke")                   ? &record.ke
            : key == QLatin1String("kh")                   ? &record.kh
                                                           : nullptr;
        if (!coefficient) {
            reader.putBack(line);
            return;
        }
        *coefficient = stringToDouble(parts.at(0));
    }
}

void MaterialIronEngine::readLossTable(MaterialTextReader &reader, const QString &header, MaterialIronDescribe &record)
{
    for (const QString &token : headerTokens(header)) {
        if (token.startsWith(QLatin1String("frequency"), Qt::CaseInsensitive))
            record.unitFrequency = MaterialTextReader::unitOf(token);
        else if (token.startsWith(QLatin1String("flux density"), Qt::CaseInsensitive)
                 || token.startsWith(QLatin1String("density"), Qt::CaseInsensitive))
            record.unitFluxDensity = MaterialTextReader::unitOf(token);
        else if (token.startsWith(QLatin1String("iron loss"), Qt::CaseInsensitive)
                 || token.startsWith(QLatin1String("loss"), Qt::CaseInsensitive))
            record.unitLoss = MaterialTextReader::unitOf(token);
    }
    QString line;
    while (nextRow(reader, line)) {
        const QList<double> row = rowNumbers(line, 3);
        // A loss at no frequency is no loss measurement.
        if (Numeric::isZero(row.at(0)))
            continue;
        record.lossFrequency.append(row.at(0));
        record.lossFluxDensity.append(row.at(1));
        record.lossValue.append(row.at(2));
    }
}

std::unique_ptr<MaterialDescribe> MaterialIronEngine::readRecord(const QString &filePath) const
{
    return std::make_unique<MaterialIronDescribe>(readFromFile(filePath));
}
