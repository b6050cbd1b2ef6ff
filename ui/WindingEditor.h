#pragma once

#include <QWidget>

class Document;
class LayoutCoilsView;
class PropertyRows;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QToolButton;
class WindingObject;

// The settings of the winding: slots and poles, wire, circuit, coils, the layouts with
// their coil table, and the end winding. It shows what the winding says and sends
// each change through the undo stack; it computes nothing itself.
class WindingEditor : public QWidget
{
    Q_OBJECT
public:
    explicit WindingEditor(Document *document, QWidget *parent = nullptr);

    LayoutCoilsView *coilsView() const { return m_coilsView; }

private:
    void createForm();
    void createLayoutRows(QGridLayout *grid);
    void createEndWindingRows();
    // A red mark at the end of a property's row, hidden until a check fails.
    QLabel *addMark(const PropertyRows *rows, const char *property, const char *name);
    // The document can be changed: neither protected nor read-only, nor locked by
    // an analysis that ran or runs.
    bool isEditable() const;
    void updateUI();
    void updateFacts();
    void updateMarks();
    static QString endInductanceText();
    // The end inductance's tool tip tells its inner and outer parts while it is automatic.
    void updateEndInductanceToolTip();
    // A span of one on upper and lower layers asks to put the sides side by side.
    void setCoilSpan(int span);
    void unlockCoilSpan();
    void saveLayouts();
    void showHarmonicFactors();
    void showMmfSpectrum();

    Document *m_document;
    WindingObject *m_winding;
    PropertyRows *m_rows = nullptr;
    PropertyRows *m_statorRows = nullptr;
    PropertyRows *m_rotorRows = nullptr;
    PropertyRows *m_endRows = nullptr;
    PropertyRows *m_swgRows = nullptr;
    QLabel *m_machineType = nullptr;
    QLabel *m_windingFactor = nullptr;
    QLabel *m_lcm = nullptr;
    QLabel *m_gcd = nullptr;
    QLabel *m_markSlots = nullptr;
    QLabel *m_markPolePairs = nullptr;
    QLabel *m_markParallelPaths = nullptr;
    QComboBox *m_layouts = nullptr;
    LayoutCoilsView *m_coilsView = nullptr;
    QCheckBox *m_reverseLayers = nullptr;
    QToolButton *m_unlockCoilSpan = nullptr;
};
