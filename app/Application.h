#pragma once

#include <QApplication>

#include "app/CommandLineParcer.h"
#include "app/ParentProcess.h"

// The process object: reads the command line first and knows which program started it.
class Application : public QApplication
{
    Q_OBJECT
public:
    Application(int &argc, char **argv);
    ~Application() override;

    const CommandLineParcer &parser() const { return m_parser; }
    ParentProcessKind parentProcessKind() const { return m_parentProcessKind; }

    static Application *instance() { return qobject_cast<Application *>(QCoreApplication::instance()); }

private:
    CommandLineParcer m_parser;
    ParentProcessKind m_parentProcessKind = ParentProcessKind::None;
};

QString zvaSuffix();
QString zvapSuffix();
