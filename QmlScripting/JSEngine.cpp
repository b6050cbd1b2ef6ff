#include "QmlScripting/JSEngine.h"

#include "QmlScripting/QmlGeomProvider.h"
#include "QmlScripting/QmlGuiProvider.h"
#include "QmlScripting/QmlMaterialProvider.h"
#include "QmlScripting/QmlWidgetsProvider.h"
#include "QmlScripting/ScriptModules.h"
#include "base/Machine.h"
#include "geometry/PoleArrangement.h"
#include "winding/Winding.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEvent>
#include <QMetaEnum>
#include <mutex>
#include <QVector>

namespace {

struct ExposedClass {
    QString name;
    const QMetaObject *metaObject;
};

std::mutex exposedMutex;
QVector<ExposedClass> exposedClasses;

QVector<ExposedClass> exposedSoFar()
{
    const std::lock_guard locker(exposedMutex);
    return exposedClasses;
}

} // namespace

JSEngine::JSEngine(QObject *parent)
    : QQmlEngine(parent)
    , m_modules(new ScriptModules(this))
{
    installExtensions(QJSEngine::AllExtensions);
    installModules();
    QmlGuiProvider::initialize(this);
    QmlWidgetsProvider::initialize(this);
    QmlGeomProvider::initialize(this);
    QmlMaterialProvider::initialize(this);
    installEnumerations();
}

JSEngine::JSEngine(QObject *motor, QObject *parent)
    : JSEngine(parent)
{
    installObject(QStringLiteral("motor"), motor);
}

bool JSEngine::event(QEvent *event)
{
    if (event->type() != QEvent::MetaCall || !m_lock)
        return QQmlEngine::event(event);
    const std::lock_guard locker(*m_lock);
    return QQmlEngine::event(event);
}

QString JSEngine::errorString(const QJSValue &error)
{
    if (!error.isError())
        return tr("This is not error");
    const QJSValue file = error.property(QStringLiteral("fileName"));
    QString fileName = file.isUndefined() ? QString() : file.toString();
    fileName.remove(QCoreApplication::applicationDirPath() + QStringLiteral("/assets"), Qt::CaseInsensitive);
    // Script file names reach the engine as URLs: "file:////C:/..." on Windows, "file:///..." here.
    fileName.remove(QStringLiteral("file:////"));
    fileName.remove(QStringLiteral("file://"));
    const int line = error.property(QStringLiteral("lineNumber")).toInt();
    return tr("Error in file '%1', at line %2: %3").arg(fileName, QString::number(line), error.toString());
}

void JSEngine::consoleCall(const QString &method, const QString &text)
{
    const QJSValue console = globalObject().property(QStringLiteral("console"));
    console.property(method).callWithInstance(console, {text});
}

void JSEngine::installObject(const QString &name, QObject *object)
{
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    globalObject().setProperty(name, newQObject(object));
}

void JSEngine::installModules()
{
    QQmlEngine::setObjectOwnership(m_modules, QQmlEngine::CppOwnership);
    const QJSValue modules = newQObject(m_modules);
    // The methods stay bound to their object when called as plain functions.
    globalObject().setProperty(QStringLiteral("include"), modules.property(QStringLiteral("include")));
    globalObject().setProperty(QStringLiteral("require"), modules.property(QStringLiteral("require")));
}

void JSEngine::exposeClass(const QString &name, const QMetaObject *metaObject)
{
    const std::lock_guard locker(exposedMutex);
    for (ExposedClass &exposed : exposedClasses) {
        if (exposed.name == name) {
            exposed.metaObject = metaObject;
            return;
        }
    }
    exposedClasses.append({name, metaObject});
}

void JSEngine::installEnumerations()
{
    // Scripts write the program's enumerators by their class: Coil.CW, StatorItem.ID1.
    QJSValue global = globalObject();
    for (const ExposedClass &exposed : exposedSoFar())
        global.setProperty(exposed.name, newQMetaObject(exposed.metaObject));
    QJSValue motor = global.property(QStringLiteral("Motor"));
    if (!motor.isObject())
        motor = newObject();
    const QMetaEnum types = QMetaEnum::fromType<Machine::Type>();
    for (int i = 0; i < types.keyCount(); ++i) {
        if (types.value(i) != Machine::UnknownType)
            motor.setProperty(QString::fromLatin1(types.key(i)), types.value(i));
    }
    global.setProperty(QStringLiteral("Motor"), motor);
    global.setProperty(QStringLiteral("Coil"), newQMetaObject(&Winding::Coil::staticMetaObject));
    QJSValue winding = newQMetaObject(&Winding::staticMetaObject);
    winding.setProperty(QStringLiteral("SingleLayer"), 1);
    winding.setProperty(QStringLiteral("DoubleLayer"), 2);
    global.setProperty(QStringLiteral("Winding"), winding);
    global.setProperty(QStringLiteral("PoleArrangement"), newQMetaObject(&PoleArrangement::staticMetaObject));
}

void JSEngine::reportException(const QString &method, const QString &what)
{
    const QString message = tr("Exception in %1: %2").arg(method, what);
    qCritical() << "Error:" << message;
    consoleCall(QStringLiteral("error"), message);
    throwError(message);
}
