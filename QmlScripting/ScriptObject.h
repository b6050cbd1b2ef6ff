#pragma once

#include <QJSValue>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <mutex>

class QJSEngine;

// Mirrors the top-level variables of one script object as dynamic Qt properties,
// so that undo, files and editors reach script variables like any other property.
// Writing a dynamic property passes the value on to the script and announces it
// with variableChanged. The script decides which variables exist.
class ScriptObject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariantMap properties READ properties WRITE setProperties)

public:
    // The object name is "script" and the name with its first letter in upper case.
    explicit ScriptObject(const QString &name, QObject *parent = nullptr);

    // Binds the mirror; an undefined object with a null engine empties it. Binding
    // neither writes back to the script nor emits variableChanged.
    void setScriptObject(const QJSValue &object, QJSEngine *engine);

    // The lock of whoever runs the script on other threads; every touch of the
    // script's values takes it, since the script heap serves one thread at a time.
    void shareLock(std::recursive_mutex &lock) { m_lock = &lock; }

    QVariantMap properties() const;
    void setProperties(const QVariantMap &map);

    QVariantMap scriptProperties() const;
    QVariant scriptProperty(const QString &name) const;
    void setScriptProperty(const QString &name, const QVariant &value);

signals:
    void variableChanged(const QString &name, const QVariant &newValue);

protected:
    bool event(QEvent *event) override;

private:
    std::unique_lock<std::recursive_mutex> lockScript() const;
    // Passes the value to the script; whether it is worth announcing.
    bool passToScript(const QString &name, const QVariant &value);

    std::recursive_mutex *m_lock = nullptr;
    QJSValue m_scriptObject;
    QJSEngine *m_engine = nullptr;
    // Off until a script object is bound and while binding: nothing to pass on.
    bool m_enabled = false;
};
