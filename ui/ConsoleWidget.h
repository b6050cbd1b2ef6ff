#pragma once

#include <QPointer>
#include <QTableView>

#include "base/ScriptConsole.h"

class ConsoleContentModel;
class ConsoleFilterModel;

// The rows of a console model through its own filter, scrolled to the newest row
// while autoscroll is on. Its counters count the rows of its scopes, whatever the
// kind filter hides.
class ConsoleWidget : public QTableView
{
    Q_OBJECT
    Q_PROPERTY(bool autoscroll READ autoscroll WRITE setAutoScroll)
public:
    explicit ConsoleWidget(QWidget *parent = nullptr);

    bool autoscroll() const { return m_autoscroll; }
    ScriptConsole::Scopes scopes() const { return m_scopes; }
    ConsoleContentModel *sourceModel() const { return m_source; }
    void setSourceModel(ConsoleContentModel *model);
    void setScopes(ScriptConsole::Scopes scopes);
    void setKindVisible(qint32 kind, bool visible);

signals:
    void errorsChanged(int count);
    void warningsChanged(int count);
    void informationsChanged(int count);
    void logsChanged(int count);

public slots:
    void setAutoScroll(bool on);
    void clear();

private:
    void scrollToNewest();
    void showContextMenu(const QPoint &position);
    void copySelection();
    void countErrors();
    void countWarnings();
    void countInformations();
    void countLogs();

    bool m_autoscroll = true;
    ScriptConsole::Scopes m_scopes = ScriptConsole::All;
    QPointer<ConsoleContentModel> m_source;
    ConsoleFilterModel *m_filter;
};
