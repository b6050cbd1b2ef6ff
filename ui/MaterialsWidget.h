#pragma once

#include <QPointer>
#include <QSharedPointer>
#include <QWidget>

#include "geometry/Piece.h"

class AbstractMaterial;
class Document;
class MaterialConductorWidget;
class MaterialIronWidget;
class MaterialMagnetWidget;
class QCheckBox;
class QFrame;
class QGroupBox;
class QLabel;
class QPushButton;
class QScrollArea;

// The materials of the pieces beside a 3D view: per body and material kind a check
// button that shows or hides those pieces, and the material's row where the user
// chooses it. Choices go to the stator or rotor through the undo stack.
class MaterialsWidget : public QWidget
{
    Q_OBJECT
public:
    enum RowId { General, StatorIron, StatorWinding, StatorEndturn, RotorIron, RotorConductor, RotorMagnet, RowCount };

    explicit MaterialsWidget(QWidget *parent = nullptr);

    void setDocument(Document *document);
    // Shows the rows that these pieces need.
    void setPieces(const PieceList &pieces);
    // The piece picked in the view; an empty piece for none.
    void setSelection(const Piece &piece);
    void setRowChecked(RowId row, bool checked);
    bool isRowChecked(RowId row) const;
    bool isRowShown(RowId row) const;

    MaterialIronWidget *statorIronWidget() const { return m_statorIron; }
    MaterialConductorWidget *statorWindingWidget() const { return m_statorWinding; }
    MaterialIronWidget *rotorIronWidget() const { return m_rotorIron; }
    MaterialConductorWidget *rotorConductorWidget() const { return m_rotorConductor; }
    MaterialMagnetWidget *rotorMagnetWidget() const { return m_rotorMagnet; }

signals:
    void buttonMaterialGeneralToggled(bool checked);
    void buttonMaterialStatorIronToggled(bool checked);
    void buttonMaterialStatorWindingToggled(bool checked);
    void buttonMaterialStatorEndturnToggled(bool checked);
    void buttonMaterialRotorIronToggled(bool checked);
    void buttonMaterialRotorConductorToggled(bool checked);
    void buttonMaterialRotorMagnetToggled(bool checked);
    void hightlightWindingPhasesToggled(bool checked);
    void showOnlyFilamentsToggled(bool checked);

private:
    struct Row
    {
        QCheckBox *button = nullptr;
        QFrame *frame = nullptr;
        QWidget *widget = nullptr;
    };

    void createRows();
    QFrame *addRow(RowId row, QWidget *widget);
    void rowToggled(RowId row, bool checked);
    // The row of a piece by its material kind and body; -1 for none.
    static int rowOf(const Piece &piece);
    void refresh();
    void showSelection();
    void updateFrames();
    void updateEnabled();
    void showAllRows();
    // An undoable change of a property of the stator or rotor.
    void setElementProperty(QObject *element, const char *name, const QVariant &value);

    QPointer<Document> m_document;
    QSharedPointer<AbstractMaterial> m_selectedMaterial;
    Piece::Scope m_selectedScope = Piece::Empty;
    int m_selectedRow = -1;
    Row m_rows[RowCount];
    QScrollArea *m_scrollArea = nullptr;
    QPushButton *m_buttonShowAll = nullptr;
    MaterialIronWidget *m_statorIron = nullptr;
    MaterialConductorWidget *m_statorWinding = nullptr;
    MaterialIronWidget *m_rotorIron = nullptr;
    MaterialConductorWidget *m_rotorConductor = nullptr;
    MaterialMagnetWidget *m_rotorMagnet = nullptr;
    QLabel *m_labelStatorWindingLayer = nullptr;
    QLabel *m_valueStatorWindingLayer = nullptr;
    QGroupBox *m_groupBoxRotorMagnetization = nullptr;
    QLabel *m_valueMagnetizationType = nullptr;
    QLabel *m_valueMagnetizationDirection = nullptr;
    QLabel *m_valueMagnetizationAngle = nullptr;
    QLabel *m_valueMagnetizationCenter = nullptr;
    QList<QWidget *> m_angleRow;
    QList<QWidget *> m_radialRows;
};
