#pragma once

#include <QPointer>
#include <QWidget>

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

    // Volumes in mm³ change with the pieces only; materials and the wire come later.
    struct Volumes
    {
        double statorIron = 0.0;
        double rotorIron = 0.0;
        double rotorMagnet = 0.0;
        double rotorConductor = 0.0;
        bool hasStatorIron = false;
        bool hasStatorWinding = false;
        bool hasRotorIron = false;
        bool hasRotorMagnet = false;
        bool hasRotorConductor = false;
    };

    void takePieces();
    void refresh();
    // Shows the row and returns the mass counted in the total: 0 where the material is unknown.
    double showRow(Row row, bool shown, double mass, bool known);

    QPointer<Document> m_document;
    Volumes m_volumes;
    QLabel *m_values[RowCount];
    QList<QWidget *> m_rowWidgets[RowCount];
};
