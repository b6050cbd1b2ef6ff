#pragma once

#include "ui/PageViewer.h"

class Document;
class MagnetostaticControlWidget;
class MagnetostaticResultWidget;
class TimePlotView;

// The results of the analysis beside its time plots.
class MagnetostaticView : public QWidget, public NoZoomableView
{
    Q_OBJECT
public:
    explicit MagnetostaticView(Document *document, QWidget *parent = nullptr);

    MagnetostaticResultWidget *results() const { return m_results; }
    TimePlotView *timePlots() const { return m_timePlots; }

private:
    MagnetostaticResultWidget *m_results;
    TimePlotView *m_timePlots;
};

// The page of the magnetostatic analysis: the view, and the plot controls beside it.
class MagnetostaticPageViewer : public PageViewer
{
    Q_OBJECT
public:
    explicit MagnetostaticPageViewer(Document *document, QWidget *parent = nullptr);

    ZoomableView *zoomableView() override { return m_view; }
    MagnetostaticView *view() const { return m_view; }
    MagnetostaticControlWidget *control() const { return m_control; }

private:
    void plotTime();

    Document *m_document;
    MagnetostaticView *m_view;
    MagnetostaticControlWidget *m_control;
};
