#include "QmlScripting/ScriptModules.h"

#include "QmlScripting/JSEngine.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

ScriptModules::ScriptModules(JSEngine *engine)
    : QObject(engine)
    , m_engine(engine)
{
}

QJSValue ScriptModules::include(const QString &path)
{
    return m_engine->guarded(QStringLiteral("include"), [this, &path] { return includeFile(path); });
}

QJSValue ScriptModules::require(const QString &name)
{
    return m_engine->guarded(QStringLiteral("require"), [this, &name] { return requireModule(name); });
}

QJSValue ScriptModules::includeFile(const QString &path)
{
    const QString file = resolved(QString(), path);
    const QString canonical = QFileInfo(file).canonicalFilePath();
    QFile source(canonical);
    if (!source.open(QIODevice::ReadOnly)) {
        const QString message = tr("Can't open file %1 for reading").arg(QDir::toNativeSeparators(file));
        qCritical() << "Error:" << message;
        m_engine->throwError(message);
        return QJSValue(false);
    }
    const QString text = QString::fromUtf8(source.readAll());
    source.close();
    emit m_engine->fileIncluded(canonical);
    // Evaluated in the global scope, so the file's definitions become globals of the
    // including script and includeBasePath stays that of the main script.
    const QJSValue result = m_engine->evaluate(text, canonical, 1);
    if (result.isError()) {
        const QString message = QStringLiteral("%1: %2").arg(canonical, JSEngine::errorString(result));
        qCritical() << "Error:" << message;
        m_engine->throwError(message);
    }
    return result;
}

QJSValue ScriptModules::requireModule(const QString &name)
{
    m_engine->consoleCall(QStringLiteral("log"), QStringLiteral("require module: '%1'").arg(name));
    const QString path = QFileInfo(resolved(m_moduleFolder, name)).canonicalFilePath();
    if (!QFileInfo::exists(path)) {
        m_engine->throwError(tr("File '%1' is not exists").arg(path));
        return QJSValue();
    }
    const QJSValue module = importModule(path);
    if (module.isError()) {
        m_engine->consoleCall(QStringLiteral("error"), JSEngine::errorString(module));
        return QJSValue();
    }
    const QJSValue result = module.hasOwnProperty(QStringLiteral("default"))
                                ? module.property(QStringLiteral("default"))
                                : module;
    emit m_engine->fileRequired(path);
    return result;
}

QJSValue ScriptModules::importModule(const QString &path)
{
    const auto restoreFolder = qScopeGuard([this, outerFolder = m_moduleFolder] { m_moduleFolder = outerFolder; });
    m_moduleFolder = QDir(includeBasePath()).relativeFilePath(QFileInfo(path).absolutePath());
    const QJSValue module = m_engine->importModule(path);
    // A failure of the module's own code stays pending in the engine; evaluating
    // nothing hands it over as the result instead of running.
    const QJSValue pending = m_engine->evaluate(QString());
    if (pending.isUndefined())
        return module;
    return pending.isError() ? pending : m_engine->newErrorObject(QJSValue::GenericError, pending.toString());
}

QString ScriptModules::includeBasePath() const
{
    const QJSValue base = m_engine->globalObject().property(QStringLiteral("includeBasePath"));
    return base.isString() ? base.toString() : QString();
}

QString ScriptModules::resolved(const QString &folder, const QString &name) const
{
    if (!QDir::isRelativePath(name))
        return name;
    QStringList parts{includeBasePath(), folder, name};
    parts.removeAll(QString());
    return parts.join(QDir::separator());
}
