#pragma once

#include <QImage>
#include <QWidget>

#include <AIS_InteractiveContext.hxx>
#include <AIS_ViewController.hxx>
#include <V3d_View.hxx>
#include <V3d_Viewer.hxx>

#include "ui/Controls/ZoomableView.h"

class AIS_TextLabel;

namespace occ {

// An Open CASCADE view inside a Qt widget. Mouse and wheel go to the view
// controller: left button turns, middle pans, right zooms, the wheel zooms at the
// cursor. Where the platform gives the widget an X window the view draws into it;
// elsewhere it renders into a hidden window and the widget paints the image.
class View : public QWidget, public ZoomableView, protected AIS_ViewController
{
    Q_OBJECT
    Q_PROPERTY(bool zoomAutoFit READ zoomAutoFit WRITE setZoomAutoFit NOTIFY zoomAutoFitChanged)
    Q_PROPERTY(bool modeRuler READ modeRuler WRITE setModeRuler)
public:
    explicit View(QWidget *parent = nullptr);
    ~View() override;

    // Views draw through an X server: false when there is none to reach.
    static bool isAvailable();

    const Handle(AIS_InteractiveContext) &context() const { return m_context; }
    // Null until the widget is first shown.
    const Handle(V3d_View) &view() const { return m_view; }

    bool zoomAutoFit() const { return m_zoomAutoFit; }
    void setZoomAutoFit(bool on);

    bool isZoomable() const override { return true; }
    bool canZoomIn() const override { return true; }
    bool canZoomOut() const override { return true; }
    bool canAutoFit() const override { return true; }
    bool isAutoFit() const override { return m_zoomAutoFit; }
    void setAutoFit(bool autoFit) override { setZoomAutoFit(autoFit); }
    bool modeRuler() const { return m_modeRuler; }
    void setModeRuler(bool on);

    // The picture of the view at the widget's size, rendered now; null before the
    // widget has a window.
    QImage renderImage();

    QPaintEngine *paintEngine() const override;

signals:
    void selectionChanged();
    void zoomAutoFitChanged(bool on);

public slots:
    void redraw();
    void axo();
    void setShading();
    void setWireframe();
    void fitAll(double margin);
    void fitAll();
    void zoomIn() override;
    void zoomOut() override;

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

    void handleViewRedraw(const Handle(AIS_InteractiveContext) &context, const Handle(V3d_View) &view) override;
    void OnSelectionChanged(const Handle(AIS_InteractiveContext) &context, const Handle(V3d_View) &view) override;

private:
    bool ensureWindow();
    bool drawsOnScreen() const;
    void userMovedView();
    void showRulerAt(const QPoint &position);

    Handle(V3d_Viewer) m_viewer;
    Handle(V3d_View) m_view;
    Handle(AIS_InteractiveContext) m_context;
    Handle(AIS_TextLabel) m_rulerX;
    Handle(AIS_TextLabel) m_rulerY;
    bool m_zoomAutoFit = true;
    bool m_modeRuler = false;
};

} // namespace occ
