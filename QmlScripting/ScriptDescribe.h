#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

#include "base/ElementTypes.h"
#include "base/Machine.h"

// One entry of a script catalogue: what the user sees of a stator, rotor or end-turn
// script, where its pictures and manuals lie, and for which machines it is meant.
class ScriptDescribe
{
    Q_DECLARE_TR_FUNCTIONS(ScriptDescribe)
public:
    ScriptDescribe() = default;

    // The entry of a catalogue object; paths are taken relative to the catalogue's folder.
    static ScriptDescribe fromJson(const QJsonObject &entry, const QString &folder);
    // What a catalogue holds when it could not be read or lists nothing.
    static const ScriptDescribe &emptyList();
    // What a look-up finds for a script that no entry names.
    static const ScriptDescribe &notFound();

    QString name() const { return m_name; }
    // Lower-cased keys to absolute paths.
    QJsonObject pictures() const { return m_pictures; }
    QJsonObject manuals() const { return m_manuals; }
    QString script() const { return m_script; }
    bool fileExists() const { return m_fileExists; }
    int applicability() const { return m_applicability; }

    bool isSeparator() const;
    bool isApplicable(Machine::Type type) const;
    // The picture for a machine and body type: ":/prohibition.png" where the catalogue
    // has none for that pair. With either type unknown, the entry's general picture.
    QString picture(Machine::Type type, ElementTypes::MiddleType middle) const;
    // The same for manuals; a missing one is an empty text.
    QString manual(Machine::Type type, ElementTypes::MiddleType middle) const;

private:
    ScriptDescribe(const QString &name, int applicability);

    QString m_name;
    QJsonObject m_pictures;
    QJsonObject m_manuals;
    QString m_script;
    bool m_fileExists = false;
    int m_applicability = Machine::UnknownApplicability;
};
