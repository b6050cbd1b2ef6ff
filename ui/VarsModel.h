#pragma once

#include <QAbstractTableModel>
#include <QVector>

#include "base/Machine.h"

class Document;

// The variables of the solver's time-stepping data that a time plot may name, with
// their descriptions and units; empty unless the document shows its analysis.
class VarsModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, DescriptionColumn, UnitsColumn, ColumnCount };

    explicit VarsModel(Document *document, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Variable
    {
        QString name;
        QString description;
        QString units;
    };

    void rebuild();
    static QVector<Variable> variablesOf(Machine::Type type);

    Document *m_document;
    QVector<Variable> m_variables;
};
