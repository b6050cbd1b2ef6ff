#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QSortFilterProxyModel>

#include "base/ScriptConsole.h"

// The messages of a document's consoles, one row each, oldest first. The memory is
// bounded: past the limit the oldest rows go. Counters by kind and scope follow
// every row that comes and goes.
class ConsoleContentModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Kind { LogKind = 1, InformationKind = 2, WarningKind = 4, ErrorKind = 8 };
    enum Role { KindRole = Qt::UserRole + 1, ScopeRole = Qt::UserRole + 2 };
    static constexpr int rowLimit = 8000;

    explicit ConsoleContentModel(QObject *parent = nullptr);
    ~ConsoleContentModel() override;

    // Routes the console's messages here; from worker threads they arrive queued.
    void attach(ScriptConsole *console);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // The rows of a kind among the scopes of the mask.
    int errors(ScriptConsole::Scopes scopes) const;
    int warnings(ScriptConsole::Scopes scopes) const;
    int informations(ScriptConsole::Scopes scopes) const;
    int logs(ScriptConsole::Scopes scopes) const;

signals:
    void errorsChanged();
    void warningsChanged();
    void informationsChanged();
    void logsChanged();

public slots:
    void log(ScriptConsole::Scope scope, QString str);
    void info(ScriptConsole::Scope scope, QString str);
    void warn(ScriptConsole::Scope scope, QString str);
    void error(ScriptConsole::Scope scope, QString str);
    void clear(ScriptConsole::Scopes scopes);

protected:
    // Whoever connects to a counter gets its present state at once.
    void connectNotify(const QMetaMethod &signal) override;

private:
    struct Row {
        ScriptConsole::Scope scope;
        qint32 kind;
        QString text;
    };

    void add(ScriptConsole::Scope scope, qint32 kind, const QString &message);
    void countDown(const Row &row);
    QHash<int, int> &counterOf(qint32 kind);
    void emitCounterOf(qint32 kind);
    static int count(const QHash<int, int> &counter, ScriptConsole::Scopes scopes);

    QHash<int, int> m_errors;
    QHash<int, int> m_warnings;
    QHash<int, int> m_informations;
    QHash<int, int> m_logs;
    QList<Row *> m_rows;
};

// Passes the rows whose kind and scope are both in their masks; keeps the order.
class ConsoleFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit ConsoleFilterModel(QObject *parent = nullptr);

    qint32 kinds() const { return m_kinds; }
    void setKindVisible(qint32 kind, bool visible);
    ScriptConsole::Scopes scopes() const { return m_scopes; }
    void setScopes(ScriptConsole::Scopes scopes);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    qint32 m_kinds = 15;
    ScriptConsole::Scopes m_scopes = ScriptConsole::All;
};
