#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

// A run of the program with a data folder of its own, so that its log can be read back.
struct ProgramRun
{
    QTemporaryDir home;
    int exitCode = -1;
    QString standardOutput;
    QString program = QStringLiteral(ZDS_EXECUTABLE);
    // Where the program is started from; the test's own folder if empty.
    QString workingDirectory;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", home.path());
        environment.remove("DISPLAY");
        environment.remove("WAYLAND_DISPLAY");
        environment.remove("QT_QPA_PLATFORM");
        return environment;
    }

    bool start(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(environment());
        process.setWorkingDirectory(workingDirectory);
        process.start(program, arguments);
        // A hang, not a slow run: a whole design's meshes take a minute under the sanitizers.
        if (!process.waitForFinished(300000))
            return false;
        exitCode = process.exitCode();
        standardOutput = QString::fromLocal8Bit(process.readAllStandardOutput());
        return true;
    }

    QString logsFolder() const { return home.path() + "/Quorlan/Zolvane Design Studio/logs"; }

    QStringList logFiles() const { return QDir(logsFolder()).entryList({"Zolvane_DS_*.log"}, QDir::Files); }

    QString logText() const
    {
        QString text;
        for (const QString &name : logFiles()) {
            QFile file(logsFolder() + "/" + name);
            file.open(QIODevice::ReadOnly);
            text += QString::fromUtf8(file.readAll());
        }
        return text;
    }
};
