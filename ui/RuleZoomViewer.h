#pragma once

#include <QGraphicsView>

#include "ui/Controls/ZoomableView.h"

class QCornerRuler;
class QDRuler;

// A view of a flat scene with the y axis up, rulers along its top and left edges,
// zoomed by the wheel or the zoom actions, and fitted to the scene while automatic fit is on.
class RuleZoomViewer : public QGraphicsView, public ZoomableView
{
    Q_OBJECT
public:
    explicit RuleZoomViewer(QWidget *parent = nullptr);

    // Pixels per scene unit.
    double scaleFactor() const { return transform().m11(); }
    bool zoomAutoFit() const { return m_autoFit; }
    QDRuler *horizontalRuler() const { return m_horizontalRuler; }
    QDRuler *verticalRuler() const { return m_verticalRuler; }

    bool isZoomable() const override { return true; }
    bool canZoomIn() const override { return scaleFactor() < maximumScale; }
    bool canZoomOut() const override { return scaleFactor() > minimumScale; }
    void zoomIn() override { zoomIn(stepFactor); }
    void zoomOut() override { zoomOut(stepFactor); }
    bool canAutoFit() const override { return true; }
    bool isAutoFit() const override { return m_autoFit; }
    void setAutoFit(bool autoFit) override { setZoomAutoFit(autoFit); }

public slots:
    void zoomIn(double factor);
    void zoomOut(double factor);
    void zoomFit();
    void setZoomAutoFit(bool on);

signals:
    void scaleChanged(double scale);
    void zoomAutoFitChanged(bool on);

protected:
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    static constexpr double stepFactor = 1.25;
    static constexpr double minimumScale = 1e-5;
    static constexpr double maximumScale = 10000.0;
    static constexpr int fitMargin = 10;

    // A manual zoom ends the automatic fit.
    void zoomBy(double factor);
    void applyScale(double scale);

    void placeRulers();
    void redrawRulers();

    bool m_autoFit = true;
    QDRuler *m_horizontalRuler;
    QDRuler *m_verticalRuler;
    QCornerRuler *m_corner;
};
