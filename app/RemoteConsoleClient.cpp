#include "app/RemoteConsoleClient.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>

RemoteConsoleClient::RemoteConsoleClient(const QString &name, QObject *parent)
    : QObject(parent)
    , m_name(name)
{
}

void RemoteConsoleClient::sendMessage(ScriptConsole::Method method, const QString &text) const
{
    // A connection per message: the client holds nothing open between messages.
    QLocalSocket socket;
    socket.connectToServer(m_name, QIODevice::ReadWrite);
    if (!socket.waitForConnected(1000))
        return;
    const QJsonObject message{
        {QLatin1String("method"), method},
        {QLatin1String("message"), text},
    };
    socket.write(QJsonDocument(message).toJson());
    if (!socket.waitForBytesWritten(1000)) {
        qCritical() << "RemoteConsoleClient, for" << m_name << "send message:" << text << "with error:"
                    << socket.errorString();
    }
    socket.disconnectFromServer();
}

void RemoteConsoleClient::info(const QString &text)
{
    sendMessage(ScriptConsole::Info, text);
}

void RemoteConsoleClient::error(const QString &text)
{
    sendMessage(ScriptConsole::Error, text);
}
