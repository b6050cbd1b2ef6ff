#include "QmlScripting/ScriptDescribe.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QMetaEnum>

namespace {

// The key of one machine and body type, such as picture_srs_yokeless.
QString typedKey(const char *kind, Machine::Type type, ElementTypes::MiddleType middle)
{
    const char *middleName = QMetaEnum::fromType<ElementTypes::MiddleType>().valueToKey(middle);
    return QStringLiteral("%1_%2_%3")
        .arg(QLatin1String(kind), Machine::typeText(type), QLatin1String(middleName))
        .toLower();
}

// The entries of one kind of key ("picture", "manual") in any case, as absolute paths.
QJsonObject filesOfKind(const QJsonObject &entry, const QString &kind, const QString &folder)
{
    QJsonObject files;
    for (auto it = entry.begin(); it != entry.end(); ++it) {
        if (!it.key().startsWith(kind, Qt::CaseInsensitive))
            continue;
        const QString path = folder + QDir::separator() + it.value().toString().toLower();
        files.insert(it.key().toLower(), QFileInfo(path).absoluteFilePath());
    }
    return files;
}

} // namespace

ScriptDescribe::ScriptDescribe(const QString &name, int applicability)
    : m_name(name)
    , m_applicability(applicability)
{
}

ScriptDescribe ScriptDescribe::fromJson(const QJsonObject &entry, const QString &folder)
{
    ScriptDescribe describe;
    describe.m_name = entry.value(QLatin1String("name")).toString();
    if (describe.isSeparator())
        return describe;
    describe.m_pictures = filesOfKind(entry, QStringLiteral("picture"), folder);
    describe.m_manuals = filesOfKind(entry, QStringLiteral("manual"), folder);
    describe.m_script = entry.value(QLatin1String("script")).toString();
    describe.m_fileExists =
        !describe.m_script.isEmpty() && QFileInfo(folder + QDir::separator() + describe.m_script).isFile();
    const QJsonArray types = entry.value(QLatin1String("applicability")).toArray();
    for (const QJsonValue &type : types)
        describe.m_applicability |= Machine::applicabilityFromString(type.toString());
    return describe;
}

const ScriptDescribe &ScriptDescribe::emptyList()
{
    static const ScriptDescribe entry(tr("Cannot load script config"), Machine::UnknownApplicability);
    return entry;
}

const ScriptDescribe &ScriptDescribe::notFound()
{
    static const ScriptDescribe entry(tr("Script not found"), Machine::AnyType);
    return entry;
}

bool ScriptDescribe::isSeparator() const
{
    return m_name == QLatin1String("separator");
}

bool ScriptDescribe::isApplicable(Machine::Type type) const
{
    if (m_applicability == Machine::AnyType)
        return true;
    return (m_applicability & Machine::applicabilityOf(type)) != 0;
}

QString ScriptDescribe::picture(Machine::Type type, ElementTypes::MiddleType middle) const
{
    if (type == Machine::UnknownType || middle == ElementTypes::UnknownType)
        return m_pictures.value(QLatin1String("picture")).toString();
    return m_pictures.value(typedKey("picture", type, middle)).toString(QStringLiteral(":/prohibition.png"));
}

QString ScriptDescribe::manual(Machine::Type type, ElementTypes::MiddleType middle) const
{
    if (type == Machine::UnknownType || middle == ElementTypes::UnknownType)
        return m_manuals.value(QLatin1String("manual")).toString();
    return m_manuals.value(typedKey("manual", type, middle)).toString();
}
