#include "ui/MagnetostaticTimePlotWidget.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include "ui/Controls/EnumComboBoxes.h"
#include "ui/PlotValueSelectDialog.h"

MagnetostaticTimePlotWidget::MagnetostaticTimePlotWidget(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
{
    setObjectName(QStringLiteral("MagnetostaticTimePlotWidget"));
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2);
    grid->addWidget(new QLabel(tr("Plot function or Matlab expression"), this), 0, 1, 1, 2);
    grid->addWidget(new QLabel(tr("Plot type"), this), 0, 3);
    grid->addWidget(new QLabel(tr("X-axis limits"), this), 0, 4);
    grid->addWidget(new QLabel(tr("Y-axis limits"), this), 0, 5);
    for (int i = 0; i < rowCount; ++i) {
        Row row;
        row.check = new QCheckBox(this);
        row.check->setObjectName(QStringLiteral("checkPlot%1").arg(i + 1));
        row.expression = new QLineEdit(this);
        row.expression->setObjectName(QStringLiteral("expression%1").arg(i + 1));
        row.expression->setToolTip(tr("Plot function or Matlab expression"));
        auto *edit = new QToolButton(this);
        edit->setObjectName(QStringLiteral("buttonSelectValues%1").arg(i + 1));
        edit->setIcon(QIcon(QStringLiteral(":/edit-16.png")));
        edit->setToolTip(tr("Select values to plot"));
        row.editButton = edit;
        row.type = new TimePlotTypeComboBox(this);
        row.type->setToolTip(tr("Plot type"));
        row.xLimits = new QLineEdit(this);
        row.xLimits->setToolTip(tr("X-axis limits"));
        row.yLimits = new QLineEdit(this);
        row.yLimits->setToolTip(tr("Y-axis limits"));
        grid->addWidget(row.check, i + 1, 0);
        grid->addWidget(row.expression, i + 1, 1);
        grid->addWidget(edit, i + 1, 2);
        grid->addWidget(row.type, i + 1, 3);
        grid->addWidget(row.xLimits, i + 1, 4);
        grid->addWidget(row.yLimits, i + 1, 5);
        m_rows.append(row);
        connect(row.check, &QCheckBox::toggled, this, &MagnetostaticTimePlotWidget::updateRows);
        connect(edit, &QToolButton::clicked, this, [this, i] { chooseValues(i); });
    }
    grid->setColumnStretch(1, 1);
    updateRows();
}

QVector<TimePlotRequest> MagnetostaticTimePlotWidget::checkedRows() const
{
    QVector<TimePlotRequest> requests;
    for (const Row &row : m_rows) {
        if (row.check->isChecked())
            requests.append({row.expression->text(), row.type->currentValue(), row.xLimits->text(),
                             row.yLimits->text()});
    }
    return requests;
}

void MagnetostaticTimePlotWidget::chooseValues(int row)
{
    // Window-modal rather than exec(), so that nothing blocks where nobody answers.
    auto *dialog = new PlotValueSelectDialog(m_document, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, row] { m_rows.at(row).expression->setText(dialog->plotCommand()); });
    dialog->open();
}

void MagnetostaticTimePlotWidget::updateRows()
{
    int subplot = 0;
    for (const Row &row : m_rows) {
        const bool checked = row.check->isChecked();
        row.check->setText(checked ? QString::number(++subplot) : QString());
        for (QWidget *field : {static_cast<QWidget *>(row.expression), row.editButton,
                               static_cast<QWidget *>(row.type), static_cast<QWidget *>(row.xLimits),
                               static_cast<QWidget *>(row.yLimits)})
            field->setEnabled(checked);
    }
}
