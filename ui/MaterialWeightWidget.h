#pragma once

#include <QPointer>
#include <QWidget>

#include "document/MaterialMasses.h"

class Document;
class QGridLayout;
class QLabel;

// The mass of the machine by material: stator and rotor iron, the stator winding,
// magnets and rotor conductors, and their total. A row shows only while the machine
// has such material.
class MaterialWeightWidget : public QWidget
{
    Q_OBJECT
public:
    explicit MaterialWeightWidget(QWidget *parent = nullptr);

    void setDocument(Document *document);

private:
    enum Row { StatorIron, StatorWinding, RotorIron, RotorMagnet, RotorConductor, Total, RowCount };

    void takePieces();
    void refresh();
    // Shows the row and returns the mass counted in the total: 0 where the material is unknown.
    double showRow(Row row, const MaterialMass &mass);

    QPointer<Document> m_document;
    // As last built: weighing never builds them.
    PieceList m_pieces;
    QLabel *m_values[RowCount];
    QList<QWidget *> m_rowWidgets[RowCount];
};
