#pragma once

#include <QHash>
#include <QVariantMap>
#include <QWidget>

class Document;
class MagnetostaticAnalysis;
class QGridLayout;
class QLineEdit;
class QVBoxLayout;

// The values that the solver returned for the last run, in four sections that the
// user opens and closes; each row's tool tip names the solver's variable.
class MagnetostaticResultWidget : public QWidget
{
    Q_OBJECT
public:
    explicit MagnetostaticResultWidget(Document *document, QWidget *parent = nullptr);

    // The field of a result, by the solver's name; null for a name without a row.
    QLineEdit *editor(const QString &name) const { return m_editors.value(name); }

public slots:
    void resultsChanged();

private:
    struct Result
    {
        const char *name;
        QString label;
        QString unit;
    };

    QGridLayout *addSection(QVBoxLayout *layout, const QString &title, const QString &settingsKey);
    void addRows(QGridLayout *grid, const QVector<Result> &rows);
    void clear();
    void showValue(QLineEdit *editor, const QVariant &value) const;
    void describeTorque(const QVariantMap &results) const;
    void describeLosses(const QVariantMap &results) const;
    void describeComposite(const QVariantMap &results, const char *name, const QString &total,
                           const QString &perWinding) const;

    Document *m_document;
    MagnetostaticAnalysis *m_analysis;
    QHash<QString, QLineEdit *> m_editors;
};
