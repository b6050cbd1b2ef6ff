#pragma once

#include <QWidget>

class Document;
class MagnetostaticAnalysis;
class NumberEdit;
class PropertyRows;
class QGridLayout;
class QLineEdit;
class QToolButton;

// The settings of the magnetostatic analysis, with the drive's settings below them.
// Each change goes through the document's undo stack; nothing can be changed while
// the analysis runs or the document can't be edited.
class MagnetostaticEditor : public QWidget
{
    Q_OBJECT
public:
    explicit MagnetostaticEditor(Document *document, QWidget *parent = nullptr);

private:
    void createTimePeriodRow();
    void createFolderRow();
    void setTimePeriodUndoable(double from, double to);
    void chooseFolder();
    void updateUI();

    Document *m_document;
    MagnetostaticAnalysis *m_analysis;
    QGridLayout *m_grid = nullptr;
    PropertyRows *m_rows = nullptr;
    NumberEdit *m_timeFrom = nullptr;
    NumberEdit *m_timeTo = nullptr;
    QLineEdit *m_folder = nullptr;
    QToolButton *m_buttonFolder = nullptr;
};
