#pragma once

#include <QVector>
#include <QWidget>

class Document;
class QCheckBox;
class QLineEdit;
class TimePlotTypeComboBox;

// One subplot as the user asked for it.
struct TimePlotRequest
{
    QString expression;
    QString type;
    QString xLimits;
    QString yLimits;
};

// Five rows of plot expressions; each checked row is one subplot, numbered on its
// check box in the order of the checked rows.
class MagnetostaticTimePlotWidget : public QWidget
{
    Q_OBJECT
public:
    static constexpr int rowCount = 5;

    explicit MagnetostaticTimePlotWidget(Document *document, QWidget *parent = nullptr);

    QVector<TimePlotRequest> checkedRows() const;

    QCheckBox *checkBox(int row) const { return m_rows.at(row).check; }
    QLineEdit *expression(int row) const { return m_rows.at(row).expression; }

private:
    struct Row
    {
        QCheckBox *check = nullptr;
        QLineEdit *expression = nullptr;
        TimePlotTypeComboBox *type = nullptr;
        QLineEdit *xLimits = nullptr;
        QLineEdit *yLimits = nullptr;
        QWidget *editButton = nullptr;
    };

    void chooseValues(int row);
    void updateRows();

    Document *m_document;
    QVector<Row> m_rows;
};
