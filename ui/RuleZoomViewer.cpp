#include "ui/RuleZoomViewer.h"

#include <QDebug>
#include <QMouseEvent>

#include "ui/QDRuler.h"
#include <QWheelEvent>
#include <cmath>

RuleZoomViewer::RuleZoomViewer(QWidget *parent)
    : QGraphicsView(parent), m_horizontalRuler(new QDRuler(QDRuler::Horizontal, this, this)),
      m_verticalRuler(new QDRuler(QDRuler::Vertical, this, this)), m_corner(new QCornerRuler(this))
{
    setObjectName(QStringLiteral("RuleZoomViewer"));
    setRenderHint(QPainter::Antialiasing);
    setTransformationAnchor(QGraphicsView::AnchorUnderMouse);
    setResizeAnchor(QGraphicsView::AnchorViewCenter);
    setDragMode(QGraphicsView::ScrollHandDrag);
    setTransform(QTransform::fromScale(1.0, -1.0));
    connect(this, &RuleZoomViewer::scaleChanged, this, [this] {
        viewport()->update();
        redrawRulers();
    });
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    const int breadth = m_verticalRuler->breadth();
    setViewportMargins(breadth, fontMetrics().height() + 8, 0, 0);
    placeRulers();
}

void RuleZoomViewer::placeRulers()
{
    const QRect view = viewport()->geometry();
    const int left = view.left();
    const int top = view.top();
    m_corner->setGeometry(frameWidth(), frameWidth(), left - frameWidth(), top - frameWidth());
    m_horizontalRuler->setGeometry(left, frameWidth(), view.width(), top - frameWidth());
    m_verticalRuler->setGeometry(frameWidth(), top, left - frameWidth(), view.height());
    redrawRulers();
}

void RuleZoomViewer::redrawRulers()
{
    m_horizontalRuler->redraw();
    m_verticalRuler->redraw();
}

void RuleZoomViewer::mouseMoveEvent(QMouseEvent *event)
{
    QGraphicsView::mouseMoveEvent(event);
    for (QDRuler *ruler : {m_horizontalRuler, m_verticalRuler}) {
        ruler->setMouseTrack(true);
        ruler->setCursorPos(event->pos());
    }
}

void RuleZoomViewer::leaveEvent(QEvent *event)
{
    QGraphicsView::leaveEvent(event);
    for (QDRuler *ruler : {m_horizontalRuler, m_verticalRuler})
        ruler->setMouseTrack(false);
}

void RuleZoomViewer::scrollContentsBy(int dx, int dy)
{
    QGraphicsView::scrollContentsBy(dx, dy);
    redrawRulers();
}

void RuleZoomViewer::zoomIn(double factor)
{
    zoomBy(factor);
}

void RuleZoomViewer::zoomOut(double factor)
{
    if (qFuzzyIsNull(factor)) {
        qCritical() << "Error: zoom factor is null";
        return;
    }
    zoomBy(1.0 / factor);
}

void RuleZoomViewer::zoomBy(double factor)
{
    if (qFuzzyIsNull(factor)) {
        qCritical() << "Error: zoom factor is null";
        return;
    }
    setZoomAutoFit(false);
    applyScale(qBound(minimumScale, scaleFactor() * factor, maximumScale));
}

void RuleZoomViewer::zoomFit()
{
    const QRectF scene = sceneRect();
    if (!scene.isValid() || scene.width() <= 0.0 || scene.height() <= 0.0) {
        qCritical() << "Error: scene rect is invalid";
        return;
    }
    const QRect view = viewport()->rect().adjusted(fitMargin, fitMargin, -fitMargin, -fitMargin);
    if (view.width() <= 0 || view.height() <= 0)
        return;
    double xratio = view.width() / scene.width();
    double yratio = view.height() / scene.height();
    const auto limited = [](double ratio, const char *below, const char *above) {
        if (ratio < minimumScale) {
            qCritical() << below;
            return minimumScale;
        }
        if (ratio > maximumScale) {
            qCritical() << above;
            return maximumScale;
        }
        return ratio;
    };
    xratio = limited(xratio, "xratio < 0.00001", "xratio > 10000");
    yratio = limited(yratio, "yratio < 0.00001", "yratio > 10000");
    applyScale(qMin(xratio, yratio));
    centerOn(scene.center());
}

void RuleZoomViewer::setZoomAutoFit(bool on)
{
    if (m_autoFit == on)
        return;
    m_autoFit = on;
    if (on)
        zoomFit();
    emit zoomAutoFitChanged(on);
}

void RuleZoomViewer::applyScale(double scale)
{
    if (qFuzzyCompare(scale, scaleFactor()))
        return;
    setTransform(QTransform::fromScale(scale, -scale));
    emit scaleChanged(scale);
}

void RuleZoomViewer::wheelEvent(QWheelEvent *event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0)
        return;
    zoomBy(std::pow(stepFactor, steps));
    event->accept();
}

void RuleZoomViewer::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    placeRulers();
    // An empty scene has nothing to fit yet; that is no error.
    if (m_autoFit && scene() && !scene()->items().isEmpty())
        zoomFit();
}
