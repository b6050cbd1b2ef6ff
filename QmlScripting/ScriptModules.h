#pragma once

#include <QJSValue>
#include <QObject>
#include <QString>

class JSEngine;

// The module rules of an engine: `include` evaluates a file into the global scope,
// `require` imports an ECMAScript module. Relative names resolve against the global
// `includeBasePath`, the folder of the main script, also from a nested include.
class ScriptModules : public QObject
{
    Q_OBJECT
public:
    explicit ScriptModules(JSEngine *engine);

    // The result of the file's evaluation; false with a script exception when the
    // file can't be read or fails.
    Q_INVOKABLE QJSValue include(const QString &path);
    // The default export of the module, or the module object without one; undefined
    // when the module is missing (with a script exception) or fails.
    Q_INVOKABLE QJSValue require(const QString &name);

private:
    QJSValue includeFile(const QString &path);
    QJSValue requireModule(const QString &name);
    // Imports with the module's folder as the current one, for the module's own require
    // calls; an error value if the module failed.
    QJSValue importModule(const QString &path);
    QString includeBasePath() const;
    // A relative name below includeBasePath and the folder, which may be empty.
    QString resolved(const QString &folder, const QString &name) const;

    JSEngine *m_engine;
    // The folder of the module being imported, relative to includeBasePath, so that
    // its own require calls find their modules beside it; empty outside require.
    QString m_moduleFolder;
};
