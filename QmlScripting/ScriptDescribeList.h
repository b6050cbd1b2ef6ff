#pragma once

#include <QString>
#include <QVector>

#include "QmlScripting/ScriptDescribe.h"

// A script catalogue: the entries of one JSON file in the order of the file, and the
// folder that the file and its scripts lie in. The program's three catalogues are
// read once, on first use, and kept for the life of the process.
class ScriptDescribeList
{
public:
    using const_iterator = QVector<ScriptDescribe>::const_iterator;

    explicit ScriptDescribeList(const QString &folder);

    static const ScriptDescribeList &stators();
    static const ScriptDescribeList &rotors();
    static const ScriptDescribeList &endturns();

    // The folder of the three catalogues' folders: "/assets/scripts" beside the program,
    // unless set to another one before the first catalogue is used.
    static QString scriptsRoot();
    static void setScriptsRoot(const QString &root);

    // Replaces the entries with those of the file in the folder; a file that can't be
    // read leaves them. Afterwards the list is never empty.
    void load(const QString &fileName);

    QString folder() const { return m_folder; }

    // Whether a script of that name lies inside the folder. Names come from documents,
    // which may come from anyone: one that leads elsewhere, up or to an absolute path,
    // would make opening a file run code from anywhere on the machine.
    bool holds(const QString &script) const;

    // The first entry of that script file, in any case; the not-found entry otherwise.
    const ScriptDescribe &findScript(const QString &script) const;

    int size() const { return m_entries.size(); }
    const ScriptDescribe &at(int index) const { return m_entries.at(index); }
    const_iterator begin() const { return m_entries.cbegin(); }
    const_iterator end() const { return m_entries.cend(); }

private:
    static ScriptDescribeList loaded(const QString &subfolder, const QString &fileName);
    void read(const QString &fileName);

    QString m_folder;
    QVector<ScriptDescribe> m_entries;
};
