#pragma once

#include <QWidget>

#include "ui/PageViewer.h"

class Document;
class MmfSpectrumView;
class QComboBox;
class WindingObject;
class WindingViewer;

// The slots of one layout as the winding fills them: a column per slot, a cell per
// layer with the phase and direction of the coil side that lies there.
class WindingLayoutView : public QWidget
{
    Q_OBJECT
public:
    explicit WindingLayoutView(WindingObject *winding, QWidget *parent = nullptr);

    void setLayoutIndex(int index);
    QSize minimumSizeHint() const override { return {300, 120}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WindingObject *m_winding;
    int m_layoutIndex = 0;
};

// The winding page: the winding in 3D, the slot layout of each stator face and the
// spectrum of the winding's magnetomotive force, all following every change of the winding.
class WindingPageViewer : public PageViewer
{
    Q_OBJECT
public:
    explicit WindingPageViewer(Document *document, QWidget *parent = nullptr);

    ZoomableView *zoomableView() override;
    WindingLayoutView *layoutView() const { return m_layoutView; }
    MmfSpectrumView *spectrum() const { return m_spectrum; }
    // Null without a display for 3D views.
    WindingViewer *viewer() const { return m_viewer; }

private:
    void updateUI();

    Document *m_document;
    QComboBox *m_layouts;
    WindingLayoutView *m_layoutView;
    MmfSpectrumView *m_spectrum;
    WindingViewer *m_viewer = nullptr;
    NoZoomableView m_noZoom;
};
