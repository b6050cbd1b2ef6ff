#pragma once

#include <QApplication>

#include "app/CommandLineParcer.h"
#include "app/ParentProcess.h"

class Document;

// The process object: reads the command line first and knows which program started it.
class Application : public QApplication
{
    Q_OBJECT
public:
    Application(int &argc, char **argv);
    ~Application() override;

    const CommandLineParcer &parser() const { return m_parser; }
    ParentProcessKind parentProcessKind() const { return ::parentProcessKind(); }

    static Application *instance() { return qobject_cast<Application *>(QCoreApplication::instance()); }

    // One operation of the command line without a window; the exit code.
    int runHeadless();

    void handleCmdExecute(Document &document, const QString &exchangeFile);
    void handleCmdRead(Document &document, const QString &exchangeFile);
    void handleCmdGetProps(Document &document, const QString &exchangeFile);
    void handleCmdCalculate(Document &document, const QString &exchangeFile);
    void handleCmdSaveZVA(Document &document, const QString &exchangeFile, const QString &fileToSave);
    void handleCmdWrite(Document &document, const QString &exchangeFile, const QString &documentFile);
    void runAssembleZVA(const QString &exchangeFile);
    void runMStimestepping(const QString &exchangeFile);

    // The document named on the command line, with shell links resolved; empty if none.
    QString documentArgument() const;

private:
    int runWrite();
    int runDocumentOperation();
    bool loadDocument(Document &document, const QString &path);

    CommandLineParcer m_parser;
};
