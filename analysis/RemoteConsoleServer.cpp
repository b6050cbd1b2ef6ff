#include "analysis/RemoteConsoleServer.h"

#include "base/ScriptConsole.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QScopedPointer>

RemoteConsoleServer::RemoteConsoleServer(const QString &name, ScriptConsole *console, QObject *parent)
    : QObject(parent)
    , m_console(console)
{
    connect(&m_server, &QLocalServer::newConnection, this, &RemoteConsoleServer::receiveMessage);
    // A run that crashed leaves its socket file behind, which would block the name.
    QLocalServer::removeServer(name);
    if (!m_server.listen(name))
        qCritical() << "RemoteConsoleServer, listen" << name << "failed:" << m_server.errorString();
}

void RemoteConsoleServer::receivePending()
{
    // Each accepted connection is served by receiveMessage before the next poll.
    bool timedOut = false;
    while (m_server.isListening() && !timedOut)
        m_server.waitForNewConnection(0, &timedOut);
}

void RemoteConsoleServer::receiveMessage()
{
    const QScopedPointer<QLocalSocket, QScopedPointerDeleteLater> socket(m_server.nextPendingConnection());
    if (!socket->waitForReadyRead()) {
        qDebug() << socket->errorString();
        return;
    }
    const QJsonObject message = QJsonDocument::fromJson(socket->readAll()).object();
    m_console->message(static_cast<ScriptConsole::Method>(message.value(QLatin1String("method")).toInt()),
                       message.value(QLatin1String("message")).toString());
    socket->disconnectFromServer();
}

QString remoteConsoleServerName()
{
    return QStringLiteral("remoteConsole_%1").arg(QCoreApplication::applicationPid());
}
