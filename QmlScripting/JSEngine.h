#pragma once

#include <QJSValue>
#include <QQmlEngine>
#include <QString>

#include <exception>
#include <mutex>

class ScriptModules;

// The engine of one script owner: the configuration of a document, a stator, a rotor
// or the end turns of a winding. It comes with the script world that all of them
// share: the enumerations of the program, `include` and `require`, and `motor`.
// An owner creates a new engine for every load of its script.
class JSEngine : public QQmlEngine
{
    Q_OBJECT
public:
    explicit JSEngine(QObject *parent = nullptr);
    // The same with `motor`, the document the scripts describe.
    JSEngine(QObject *motor, QObject *parent);

    // One line for a failed script result: "Error in file '...', at line n: ...".
    // A script of the program's own assets shows by its path from "/scripts" on.
    static QString errorString(const QJSValue &error);

    // A class of the design, above this layer, whose enumerators scripts write by its
    // name (Stator.ID1). Engines made afterwards know it; "Motor" also gets the machine types.
    static void exposeClass(const QString &name, const QMetaObject *metaObject);

    // Calls `console[method](text)` of the script world, whichever console is installed.
    void consoleCall(const QString &method, const QString &text);

    // Sets a global of that name to the object; the object stays the program's,
    // so that neither the collector nor the end of the engine deletes it.
    void installObject(const QString &name, QObject *object);

    // The lock that the owner holds whenever it calls into the engine, from any
    // thread. A script value destroyed on a thread other than the engine's is freed
    // later on the engine's thread, from its event queue: under that lock too.
    void shareLock(std::recursive_mutex &lock) { m_lock = &lock; }

    // include and require, whose folder state outlives a single call.
    ScriptModules *modules() const { return m_modules; }

    // Runs the work of a native method that a script called. No exception may leave
    // it into the engine: compiled script code cannot pass one on, and the process
    // would end. An exception becomes a script error, a console error and a log line,
    // and the result is the default value of its type.
    template <typename Work>
    auto guarded(const QString &method, Work &&work) -> decltype(work())
    {
        try {
            return work();
        } catch (const std::exception &exception) {
            reportException(method, QString::fromLocal8Bit(exception.what()));
        } catch (...) {
            reportException(method, tr("unknown exception"));
        }
        return decltype(work())();
    }

signals:
    void fileIncluded(const QString &path);
    void fileRequired(const QString &path);

protected:
    bool event(QEvent *event) override;

private:
    void installEnumerations();
    void installModules();
    void reportException(const QString &method, const QString &what);

    ScriptModules *m_modules;
    std::recursive_mutex *m_lock = nullptr;
};
