// The geometry script of a stator or rotor: reading it into an engine of the
// element's own, asking it for the geometry of a body, and following its file.

#include "geometry/MotorElement.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalBlocker>

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "QmlScripting/ScriptObject.h"
#include "QmlScripting/ScriptPanel.h"
#include "base/FileWatcher.h"
#include "base/UserMessage.h"
#include "document/Document.h"
#include "geometry/DesignChange.h"
#include "geometry/GeometryScriptResult.h"

namespace {

QString capitalized(const QString &name)
{
    return name.left(1).toUpper() + name.mid(1);
}

} // namespace

QString MotorElement::scriptPath(const QString &script) const
{
    return QDir::toNativeSeparators(catalogue().folder() + QLatin1Char('/') + script);
}

QString MotorElement::nameScript() const
{
    return catalogue().findScript(m_script).name();
}

void MotorElement::setScript(const QString &script)
{
    const ScriptDescribe &entry = catalogue().findScript(script);
    const QString name = !entry.script().isEmpty() ? entry.script() : script;
    if (m_script == name)
        return;
    if (!m_script.isEmpty())
        m_watcher->removePath(scriptPath(m_script));
    m_watcher->removePaths(m_scriptFiles);
    m_scriptObject->setScriptObject(QJSValue(QJSValue::UndefinedValue), nullptr);
    m_scriptLoaded = false;
    m_script = name;
    clearCashPieces();
    if (!m_script.isEmpty()) {
        if (catalogue().holds(m_script))
            m_watcher->addPath(scriptPath(m_script));
        readNamedScript();
    }
    document()->setModified(true);
    emitNotify("script", m_script);
    emitElementChanged();
}

void MotorElement::readNamedScript()
{
    if (!catalogue().holds(m_script)) {
        m_scriptLoaded = false;
        scriptFailure(tr("The script %1 is outside the script folder %2: it is not run")
                          .arg(m_script, QDir::toNativeSeparators(catalogue().folder())));
        return;
    }
    readScript(scriptPath(m_script));
}

bool MotorElement::readScript(const QString &path)
{
    m_scriptLoaded = evaluateScript(path);
    return m_scriptLoaded;
}

bool MotorElement::evaluateScript(const QString &path)
{
    // A body may be running the old engine's script on a worker.
    const std::lock_guard locker(m_engineMutex);
    const QString name = capitalized(objectName());
    m_scriptObject->setScriptObject(QJSValue(QJSValue::UndefinedValue), nullptr);
    m_watcher->removePaths(m_scriptFiles);
    resetEngine();
    m_engine->installObject(name + QStringLiteral("Object"), this);
    if (!readScriptFile(path))
        return false;
    if (!m_engine->globalObject().property(name + QStringLiteral("Geom")).isObject()) {
        scriptFailure(tr("Script does not contain function '%1'").arg(name + QStringLiteral("Geom")));
        return false;
    }
    const QJSValue object = m_engine->globalObject().property(objectName());
    if (!object.isObject()) {
        scriptFailure(tr("Script does not contain variable '%1'").arg(objectName()));
        return false;
    }
    m_scriptObject->setScriptObject(object, m_engine.get());
    return true;
}

bool MotorElement::readScriptFile(const QString &path)
{
    QFile file(path);
    if (!file.exists()) {
        scriptFailure(tr("File %1 does not exist").arg(path));
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        scriptFailure(tr("Can't open file %1 for reading").arg(path));
        return false;
    }
    const QString text = QString::fromUtf8(file.readAll());
    QJSValue global = m_engine->globalObject();
    global.setProperty(QStringLiteral("scriptFile"), QDir::toNativeSeparators(path));
    global.setProperty(QStringLiteral("includeBasePath"),
                       QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    const QJSValue result = m_engine->evaluate(text, path, 1);
    if (result.isError()) {
        m_lastError = JSEngine::errorString(result);
        scriptFailure(m_lastError);
        return false;
    }
    return true;
}

void MotorElement::resetEngine()
{
    m_scriptFiles.clear();
    m_engine = std::make_unique<JSEngine>(document(), nullptr);
    // The bodies call the script on workers while the views keep the main thread busy.
    m_engine->shareLock(m_engineMutex);
    connect(m_engine.get(), &QQmlEngine::warnings, this, &MotorElement::engineException);
    connect(m_engine.get(), &JSEngine::fileIncluded, this, &MotorElement::trackScriptFile);
    connect(m_engine.get(), &JSEngine::fileRequired, this, &MotorElement::trackScriptFile);
    m_engine->installObject(QStringLiteral("console"), m_console);
}

void MotorElement::trackScriptFile(const QString &path)
{
    if (m_scriptFiles.contains(path))
        return;
    m_scriptFiles.append(path);
    m_watcher->addPath(path);
}

void MotorElement::engineException(const QList<QQmlError> &errors)
{
    for (const QQmlError &error : errors)
        scriptFailure(error.toString());
}

void MotorElement::scriptFailure(const QString &message) const
{
    qCritical().noquote() << "Error:" << message;
    m_console->error(message);
}

QString MotorElement::scriptErrorText() const
{
    const std::lock_guard locker(m_engineMutex);
    return m_lastError;
}

QVariantMap MotorElement::geometry(const QString &objectName, int id) const
{
    const std::lock_guard locker(m_engineMutex);
    if (!m_engine)
        return {};
    m_lastError.clear();
    const QJSValue object = m_engine->globalObject().property(objectName);
    if (!object.isObject()) {
        m_console->error(tr("Object '%1' does not exist").arg(objectName));
        return {};
    }
    QJSValue getGeometry = object.property(QStringLiteral("getGeometry"));
    if (!getGeometry.isCallable()) {
        m_console->error(tr("function '%1.getGeometry' does not exist").arg(objectName));
        return {};
    }
    QJSValue result;
    try {
        result = getGeometry.call({id});
    } catch (...) {
        m_lastError = tr("Critical error script engine in %1").arg(objectName);
        scriptFailure(m_lastError);
        return {};
    }
    if (result.isError()) {
        m_lastError = JSEngine::errorString(result);
        scriptFailure(m_lastError);
        return {};
    }
    const GeometryScriptResult reader([this](const QString &message) {
        m_lastError = message;
        m_console->error(message);
    });
    return reader.read(result);
}

QVariantMap MotorElement::scriptEditedProperties()
{
    if (!m_scriptLoaded)
        return {};
    const QString panelFunction = QStringLiteral("create%1UI").arg(capitalized(objectName()));
    const std::lock_guard locker(m_engineMutex);
    QJSValue create = m_engine->globalObject().property(panelFunction);
    if (create.isUndefined()) {
        qCritical().noquote() << tr("Not found function '%1'").arg(panelFunction);
        return {};
    }
    if (create.property(QStringLiteral("length")).toInt() != 1) {
        m_console->error(tr("The function '%1' must has 1 argument").arg(panelFunction));
        return {};
    }
    Document *doc = document();
    const bool modified = doc->isModified();
    const bool geometryModified = doc->isGeometryModified();
    const QVariantMap values = m_scriptObject->properties();

    const ScriptPanelEditors editors = scriptPanelEditors(*m_engine, create);
    if (!editors.error.isEmpty()) {
        qCritical().noquote() << "Error:" << editors.error;
        return {};
    }
    QVariantMap edited;
    for (const QString &name : editors.names)
        edited.insert(name, m_scriptObject->property(name.toLatin1().constData()));
    // The panel function may have written variables as it ran: the script starts
    // afresh and gets the values back.
    readNamedScript();
    {
        const QSignalBlocker blocker(m_scriptObject);
        m_scriptObject->setProperties(values);
    }
    doc->setModified(modified);
    doc->setGeometryModified(geometryModified);
    return edited;
}

void MotorElement::scriptFileChanged(const QString &path)
{
    const QVariantMap values = m_scriptObject->properties();
    {
        const QSignalBlocker blocker(this);
        clearCashPieces();
        m_console->info(tr("Script '%1' changed").arg(QDir::toNativeSeparators(path)));
        readNamedScript();
        if (!values.isEmpty())
            m_scriptObject->setProperties(values);
    }
    emit scriptLoaded();
    emitElementChanged();
}

void MotorElement::setScriptValues(const QVariantMap &map)
{
    const QString file = map.value(QStringLiteral("scriptFile"), m_script).toString();
    if (m_scriptLoaded && file.compare(m_script, Qt::CaseInsensitive) == 0) {
        m_scriptObject->setProperties(map.value(QStringLiteral("scriptProps")).toMap());
        return;
    }
    const QString message = tr("For %1 can't set the properties of script '%2' from other script '%3'")
                                .arg(objectName(), nameScript(), map.value(QStringLiteral("scriptName")).toString());
    UserMessage::critical(message);
    qCritical().noquote() << message;
    m_console->error(message);
}
