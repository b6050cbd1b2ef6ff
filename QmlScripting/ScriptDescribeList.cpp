#include "QmlScripting/ScriptDescribeList.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

QString &scriptsRootSetting()
{
    static QString root;
    return root;
}

} // namespace

ScriptDescribeList::ScriptDescribeList(const QString &folder)
    : m_folder(folder)
{
}

const ScriptDescribeList &ScriptDescribeList::stators()
{
    static const ScriptDescribeList list = loaded(QStringLiteral("/stator"), QStringLiteral(".stators.json"));
    return list;
}

const ScriptDescribeList &ScriptDescribeList::rotors()
{
    static const ScriptDescribeList list = loaded(QStringLiteral("/rotor"), QStringLiteral(".rotors.json"));
    return list;
}

const ScriptDescribeList &ScriptDescribeList::endturns()
{
    static const ScriptDescribeList list =
        loaded(QStringLiteral("/windingendturns"), QStringLiteral(".windingendturns.json"));
    return list;
}

QString ScriptDescribeList::scriptsRoot()
{
    const QString &root = scriptsRootSetting();
    return root.isEmpty() ? QCoreApplication::applicationDirPath() + QStringLiteral("/assets/scripts") : root;
}

void ScriptDescribeList::setScriptsRoot(const QString &root)
{
    scriptsRootSetting() = root;
}

ScriptDescribeList ScriptDescribeList::loaded(const QString &subfolder, const QString &fileName)
{
    ScriptDescribeList list(scriptsRoot() + subfolder);
    list.load(fileName);
    return list;
}

void ScriptDescribeList::load(const QString &fileName)
{
    read(fileName);
    if (m_entries.isEmpty())
        m_entries.append(ScriptDescribe::emptyList());
}

void ScriptDescribeList::read(const QString &fileName)
{
    QFile file(m_folder + QDir::separator() + fileName);
    if (!file.exists()) {
        qCritical() << "Error: Script config file" << fileName << "does not exist";
        return;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        qCritical() << "Error: Can't open script config file" << fileName << "for read";
        return;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        qCritical() << "Error:"
                    << QStringLiteral("File %1, JSON parse error: %2 at offset %3")
                           .arg(fileName, parseError.errorString(), QString::number(parseError.offset));
        return;
    }
    if (!document.isArray()) {
        qCritical() << "Error: JSON document must be array";
        return;
    }
    m_entries.clear();
    const QJsonArray entries = document.array();
    for (const QJsonValue &entry : entries) {
        if (entry.isObject())
            m_entries.append(ScriptDescribe::fromJson(entry.toObject(), m_folder));
    }
}

bool ScriptDescribeList::holds(const QString &script) const
{
    if (script.isEmpty() || QDir::isAbsolutePath(script) || QDir::isAbsolutePath(QDir::fromNativeSeparators(script)))
        return false;
    const QString folder = QDir::cleanPath(m_folder);
    return QDir::cleanPath(folder + QLatin1Char('/') + QDir::fromNativeSeparators(script))
        .startsWith(folder + QLatin1Char('/'));
}

const ScriptDescribe &ScriptDescribeList::findScript(const QString &script) const
{
    for (const ScriptDescribe &entry : m_entries) {
        if (entry.script().compare(script, Qt::CaseInsensitive) == 0)
            return entry;
    }
    return ScriptDescribe::notFound();
}
