#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

class ScriptConsole;

// Receives the messages of a solver step running in a child process and passes
// them to a console of this process. Each message comes on a connection of its own.
class RemoteConsoleServer : public QObject
{
    Q_OBJECT
public:
    RemoteConsoleServer(const QString &name, ScriptConsole *console, QObject *parent = nullptr);

    // Takes the messages that are waiting already, without the event loop: a child
    // that has ended may have sent its last ones just before.
    void receivePending();

private:
    void receiveMessage();

    ScriptConsole *m_console;
    QLocalServer m_server;
};

// The name under which this process listens for its children.
QString remoteConsoleServerName();
