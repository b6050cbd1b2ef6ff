#include "QmlScripting/QmlGuiProvider.h"

#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlWidgets.h"

#include <QDebug>
#include <QtQml>

namespace {
const char prologue[] = "function QPixmap(path){return QtGui.createQPixmap(path);}";
} // namespace

QmlGuiProvider::QmlGuiProvider(QObject *parent)
    : QObject(parent)
{
    setObjectName(QStringLiteral("QtGuiProvider"));
}

void QmlGuiProvider::initialize(JSEngine *engine)
{
    qRegisterMetaType<QmlPixmap *>("QmlPixmap*");
    qmlRegisterType<QmlGuiProvider>("ScriptQtGui", 1, 0, "QtGui");
    engine->installObject(QStringLiteral("QtGui"), new QmlGuiProvider(engine));
    const QJSValue result = engine->evaluate(QString::fromLatin1(prologue), QString(), 1);
    if (result.isError())
        qCritical().noquote() << JSEngine::errorString(result);
}

QmlPixmap *QmlGuiProvider::createQPixmap(const QString &path)
{
    return new QmlPixmap(QPixmap(path));
}
