#pragma once

#include <QDialog>

class Document;
class QTableView;
class VarsModel;

// Picks variables of the time-stepping data and gives the plot command of them.
class PlotValueSelectDialog : public QDialog
{
    Q_OBJECT
public:
    explicit PlotValueSelectDialog(Document *document, QWidget *parent = nullptr);

    QTableView *table() const { return m_table; }
    // plot(time,A,time,B);legend('A, units','B, units'); for the selected rows A, B.
    QString plotCommand() const;

private:
    VarsModel *m_model;
    QTableView *m_table;
};
