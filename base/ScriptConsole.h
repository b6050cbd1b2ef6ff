#pragma once

#include <QAtomicInteger>
#include <QFlags>
#include <QObject>
#include <QString>

class QJSValue;

// The message channel of one element: scripts see it as `console`, native code
// reports through it too. Every message carries the scope fixed at construction.
// Any thread may write; receivers on other threads get the signals queued.
class ScriptConsole : public QObject
{
    Q_OBJECT
public:
    enum Scope {
        Empty = 0,
        Motor = 1,
        Stator = 2,
        Rotor = 4,
        Winding = 8,
        Mesh = 16,
        Magnitostatic = 32,
        All = 63,
    };
    Q_ENUM(Scope)
    Q_DECLARE_FLAGS(Scopes, Scope)
    Q_FLAG(Scopes)

    enum Method {
        Log = 0,
        Error = 1,
        Warn = 2,
        Info = 3,
    };
    Q_ENUM(Method)

    explicit ScriptConsole(ScriptConsole::Scope scope, QObject *parent = nullptr);

    ScriptConsole::Scope scope() const { return m_scope; }

    bool isMuted() const { return m_muted.loadAcquire(); }
    void setMuted(bool muted) { m_muted.storeRelease(muted); }

    // Raises the signal of the method; a number that is no method does nothing.
    void message(ScriptConsole::Method method, const QString &text);

    Q_INVOKABLE void print(const QString &text);
    Q_INVOKABLE void dir(const QJSValue &value);

public slots:
    // Scripts pass up to ten arguments; they are joined with one blank.
    void log(const QString &text1);
    void log(const QString &text1, const QString &text2);
    void log(const QString &text1, const QString &text2, const QString &text3);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
             const QString &text5);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
             const QString &text5, const QString &text6);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
             const QString &text5, const QString &text6, const QString &text7);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
             const QString &text5, const QString &text6, const QString &text7, const QString &text8);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
             const QString &text5, const QString &text6, const QString &text7, const QString &text8,
             const QString &text9);
    void log(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
             const QString &text5, const QString &text6, const QString &text7, const QString &text8,
             const QString &text9, const QString &text10);

    void error(const QString &text1);
    void error(const QString &text1, const QString &text2);
    void error(const QString &text1, const QString &text2, const QString &text3);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
               const QString &text5);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
               const QString &text5, const QString &text6);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
               const QString &text5, const QString &text6, const QString &text7);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
               const QString &text5, const QString &text6, const QString &text7, const QString &text8);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
               const QString &text5, const QString &text6, const QString &text7, const QString &text8,
               const QString &text9);
    void error(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
               const QString &text5, const QString &text6, const QString &text7, const QString &text8,
               const QString &text9, const QString &text10);

    void warn(const QString &text1);
    void warn(const QString &text1, const QString &text2);
    void warn(const QString &text1, const QString &text2, const QString &text3);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7, const QString &text8);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7, const QString &text8,
              const QString &text9);
    void warn(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7, const QString &text8,
              const QString &text9, const QString &text10);

    void info(const QString &text1);
    void info(const QString &text1, const QString &text2);
    void info(const QString &text1, const QString &text2, const QString &text3);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7, const QString &text8);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7, const QString &text8,
              const QString &text9);
    void info(const QString &text1, const QString &text2, const QString &text3, const QString &text4,
              const QString &text5, const QString &text6, const QString &text7, const QString &text8,
              const QString &text9, const QString &text10);

signals:
    // Types are written in full so that queued connections find their metatypes.
    void signalLog(ScriptConsole::Scope scope, const QString &text);
    void signalError(ScriptConsole::Scope scope, const QString &text);
    void signalWarn(ScriptConsole::Scope scope, const QString &text);
    void signalInfo(ScriptConsole::Scope scope, const QString &text);
    void clear(ScriptConsole::Scope scope);

private:
    void dirProperties(const QJSValue &value, int indent);

    const Scope m_scope;
    QAtomicInteger<bool> m_muted = false;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ScriptConsole::Scopes)
