#pragma once

#include <QWidget>

#include "ui/TimePlotView.h"

class Document;
class MagnetostaticTimePlotWidget;
class QCheckBox;
class QDoubleSpinBox;
class QPushButton;

// The panels beside the analysis's results: what to plot and how. Only the time plot
// is drawn; the field plots need field solutions that a run doesn't keep.
class MagnetostaticControlWidget : public QWidget
{
    Q_OBJECT
public:
    explicit MagnetostaticControlWidget(Document *document, QWidget *parent = nullptr);

    MagnetostaticTimePlotWidget *timePlot() const { return m_timePlot; }
    QPushButton *timePlotButton() const { return m_plotTime; }
    TimePlotOptions timePlotOptions() const;

signals:
    void timePlotRequested();

private:
    QWidget *createAirgapPanel();
    QWidget *createTimePanel();
    QWidget *createCrossSectionPanel();
    void updateUI();

    Document *m_document;
    MagnetostaticTimePlotWidget *m_timePlot = nullptr;
    QPushButton *m_plotTime = nullptr;
    QCheckBox *m_legend = nullptr;
    QCheckBox *m_synchronize = nullptr;
    QDoubleSpinBox *m_averaging = nullptr;
    QCheckBox *m_clearConsole = nullptr;
};
