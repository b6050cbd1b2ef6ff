#pragma once

#include <QSignalSpy>

#include "base/ScriptConsole.h"

// One spy per message method of a console.
struct ConsoleSpies {
    explicit ConsoleSpies(ScriptConsole *console)
        : log(console, &ScriptConsole::signalLog)
        , error(console, &ScriptConsole::signalError)
        , warn(console, &ScriptConsole::signalWarn)
        , info(console, &ScriptConsole::signalInfo)
    {
    }
    int total() const { return log.count() + error.count() + warn.count() + info.count(); }

    QSignalSpy log;
    QSignalSpy error;
    QSignalSpy warn;
    QSignalSpy info;
};
