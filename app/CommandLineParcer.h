#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>

// The options by which a parent program drives this process.
class CommandLineParcer : public QCommandLineParser
{
public:
    CommandLineParcer();

    QString operation() const { return value(m_optionOperation); }
    // Paths of the command line are those of the caller's working directory.
    QString exchangeFile() const { return callerPath(value(m_optionExchangeFile)); }
    QString caption() const { return value(m_optionCaption); }
    QString page() const { return value(m_optionPage); }
    bool isEditEnabled() const { return isSet(m_optionEnableEdit); }
    QString jsonFile() const { return callerPath(value(m_optionExportToJson)); }
    QString fileSaveTo() const { return callerPath(value(m_optionFileSaveTo)); }
    QString remoteConsoleName() const { return value(m_optionRemoteConsoleName); }
    bool isHelpSet() const { return isSet(m_optionHelp); }
    bool isVersionSet() const { return isSet(m_optionVersion); }
    // True when any option was given; positional arguments don't count.
    bool hasOptions() const { return !optionNames().isEmpty(); }

    bool isExecute() const;
    bool isRead() const;
    bool isWrite() const;
    bool isGetProps() const;
    bool isCalculate() const;
    bool isSaveZVA() const;
    bool isRunAssembleZVA() const;
    bool isRunMStimestepping() const;

    static const QStringList &operations();

    // A path as the caller meant it: relative to the working directory at start;
    // the program moves to its own folder later. Empty stays empty.
    QString callerPath(const QString &path) const;

    // Whether the options make sense for a headless operation; says why not.
    bool checkOptions() const;

private:
    void addChecked(const QCommandLineOption &option, const char *memberName);

    QString m_callerDirectory;
    QCommandLineOption m_optionHelp;
    QCommandLineOption m_optionVersion;
    QCommandLineOption m_optionOperation;
    QCommandLineOption m_optionExchangeFile;
    QCommandLineOption m_optionCaption;
    QCommandLineOption m_optionPage;
    QCommandLineOption m_optionEnableEdit;
    QCommandLineOption m_optionExportToJson;
    QCommandLineOption m_optionFileSaveTo;
    QCommandLineOption m_optionRemoteConsoleName;
};
