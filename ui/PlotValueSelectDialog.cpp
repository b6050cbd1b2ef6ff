#include "ui/PlotValueSelectDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/VarsModel.h"

PlotValueSelectDialog::PlotValueSelectDialog(Document *document, QWidget *parent)
    : QDialog(parent)
    , m_model(new VarsModel(document, this))
    , m_table(new QTableView(this))
{
    setObjectName(QStringLiteral("PlotValueSelectDialog"));
    setWindowTitle(tr("Select values to plot"));
    m_table->setObjectName(QStringLiteral("tableVars"));
    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::MultiSelection);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->verticalHeader()->hide();
    m_table->resizeColumnsToContents();

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_table, &QTableView::doubleClicked, this, &QDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addWidget(buttons);
    resize(640, 480);
}

QString PlotValueSelectDialog::plotCommand() const
{
    QModelIndexList rows = m_table->selectionModel()->selectedRows(VarsModel::NameColumn);
    std::sort(rows.begin(), rows.end(), [](const QModelIndex &a, const QModelIndex &b) { return a.row() < b.row(); });
    QStringList items;
    QStringList legend;
    for (const QModelIndex &row : rows) {
        const QString name = row.data().toString();
        const QString units = row.siblingAtColumn(VarsModel::UnitsColumn).data().toString();
        items.append(QStringLiteral("time,%1").arg(name));
        legend.append(QStringLiteral("'%1, %2'").arg(name, units));
    }
    return QStringLiteral("plot(%1);legend(%2);").arg(items.join(QLatin1Char(',')), legend.join(QLatin1Char(',')));
}
