#include "solver/MCRCtrl/MaterialFiles.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>
#include <map>

namespace mcrctrl {

namespace {

// The lines of a file by section: a tag line "<Name> (unit)" opens one.
QMap<QString, QStringList> sectionsOf(const QString &path)
{
    QMap<QString, QStringList> sections;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return sections;
    QTextStream stream(&file);
    static const QRegularExpression tag(QStringLiteral("^<([^>]+)>"));
    QString current;
    while (!stream.atEnd()) {
        const QString line = stream.readLine().trimmed();
        const QRegularExpressionMatch match = tag.match(line);
        if (match.hasMatch()) {
            current = match.captured(1).toLower();
            sections[current];
        } else if (!current.isEmpty() && !line.isEmpty() && !line.startsWith(QLatin1Char('%'))) {
            sections[current].append(line);
        }
    }
    return sections;
}

std::optional<double> firstValue(const QMap<QString, QStringList> &sections, const QString &tag)
{
    const QStringList lines = sections.value(tag);
    bool ok = false;
    const double value = lines.isEmpty() ? 0.0 : lines.first().toDouble(&ok);
    return ok ? std::optional<double>(value) : std::nullopt;
}

QStringList fieldsOf(const QString &line)
{
    return line.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
}

// The coefficients from lines "value % key"; empty unless all four are there.
std::optional<IronLossCoefficients> fileCoefficients(const QStringList &lines)
{
    std::map<QString, double> found;
    for (const QString &line : lines) {
        const QStringList parts = line.split(QLatin1Char('%'));
        bool ok = false;
        const double value = parts.size() == 2 ? parts.at(0).trimmed().toDouble(&ok) : 0.0;
        if (ok)
            found[parts.at(1).simplified().toLower()] = value;
    }
    for (const char *key : {"kh", "ke", "alfa", "beta"}) {
        if (found.count(QString::fromLatin1(key)) == 0)
            return std::nullopt;
    }
    IronLossCoefficients coefficients;
    coefficients.kh = found[QStringLiteral("kh")];
    coefficients.ke = found[QStringLiteral("ke")];
    coefficients.a = found[QStringLiteral("alfa")];
    coefficients.b = found[QStringLiteral("beta")];
    return coefficients;
}

} // namespace

MaterialFiles::MaterialFiles(QString folder)
    : m_folder(std::move(folder))
{
}

QString MaterialFiles::fileOf(const QString &kind, const QString &name) const
{
    QDirIterator files(m_folder + QLatin1Char('/') + kind, {name + QStringLiteral(".txt")}, QDir::Files,
                       QDirIterator::Subdirectories);
    return files.hasNext() ? files.next() : QString();
}

std::optional<IronData> MaterialFiles::iron(const QString &name) const
{
    const QString path = fileOf(QStringLiteral("Iron"), name);
    if (path.isEmpty())
        return std::nullopt;
    IronData data;
    for (const QString &line : sectionsOf(path).value(QStringLiteral("b-h curve"))) {
        const QStringList parts = fieldsOf(line);
        bool hOk = false;
        bool bOk = false;
        if (parts.size() < 2)
            continue;
        const double h = parts.at(0).toDouble(&hOk);
        const double b = parts.at(1).toDouble(&bOk);
        if (hOk && bOk) {
            data.h.push_back(h);
            data.b.push_back(b);
        }
    }
    if (data.h.size() < 2)
        return std::nullopt;
    return data;
}

std::optional<IronLossData> MaterialFiles::ironLoss(const QString &name) const
{
    const QString path = fileOf(QStringLiteral("Iron"), name);
    if (path.isEmpty())
        return std::nullopt;
    const QMap<QString, QStringList> sections = sectionsOf(path);
    const std::optional<double> density = firstValue(sections, QStringLiteral("mass density"));
    if (!density || !(*density > 0.0))
        return std::nullopt;
    const QStringList lines = sections.value(QStringLiteral("iron loss"));
    std::vector<double> frequency;
    std::vector<double> fluxDensity;
    std::vector<double> loss;
    for (const QString &line : lines) {
        const QStringList parts = fieldsOf(line);
        bool ok[3] = {false, false, false};
        if (parts.size() != 3)
            continue;
        const double f = parts.at(0).toDouble(&ok[0]);
        const double b = parts.at(1).toDouble(&ok[1]);
        const double p = parts.at(2).toDouble(&ok[2]);
        if (ok[0] && ok[1] && ok[2]) {
            frequency.push_back(f);
            fluxDensity.push_back(b);
            loss.push_back(p);
        }
    }
    IronLossData data;
    data.massDensity = *density;
    if (!loss.empty()) {
        data.coefficients = fitIronLoss(frequency, fluxDensity, loss);
        return data;
    }
    const std::optional<IronLossCoefficients> coefficients = fileCoefficients(lines);
    if (!coefficients)
        return std::nullopt;
    data.coefficients = *coefficients;
    return data;
}

std::optional<MagnetData> MaterialFiles::magnet(const QString &name) const
{
    const QString path = fileOf(QStringLiteral("Magnet"), name);
    if (path.isEmpty())
        return std::nullopt;
    const QMap<QString, QStringList> sections = sectionsOf(path);
    const std::optional<double> remanence = firstValue(sections, QStringLiteral("remanence"));
    if (!remanence)
        return std::nullopt;
    MagnetData data;
    data.remanence = *remanence;
    data.relativePermeability = firstValue(sections, QStringLiteral("relative permeability")).value_or(1.0);
    data.remanenceCoefficient =
        firstValue(sections, QStringLiteral("temperature coefficient of remanence")).value_or(0.0) / 100.0;
    const auto positive = [](std::optional<double> value) { return value && *value > 0.0 ? value : std::nullopt; };
    data.intrinsicCoercivity = positive(firstValue(sections, QStringLiteral("intrinsic coercivity")));
    data.coercivityCoefficient =
        firstValue(sections, QStringLiteral("temperature coefficient of coercivity")).value_or(0.0) / 100.0;
    data.resistivity = positive(firstValue(sections, QStringLiteral("electric resistivity")));
    return data;
}

} // namespace mcrctrl
