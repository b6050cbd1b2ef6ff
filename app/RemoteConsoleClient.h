#pragma once

#include <QObject>
#include <QString>

#include "analysis/MCRCtrl/MCRCtrlInterface.h"
#include "base/ScriptConsole.h"

// The solver plug-in's console in a child process: sends each message to the
// parent's RemoteConsoleServer. Without a server the messages are lost.
class RemoteConsoleClient : public QObject, public MCRCtrlInterface::Console
{
    Q_OBJECT
public:
    explicit RemoteConsoleClient(const QString &name, QObject *parent = nullptr);

    // Blocks for at most two seconds.
    void sendMessage(ScriptConsole::Method method, const QString &text) const;

    void info(const QString &text) override;
    void error(const QString &text) override;

private:
    QString m_name;
};
