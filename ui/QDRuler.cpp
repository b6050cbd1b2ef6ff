#include "ui/QDRuler.h"

#include <QGraphicsView>
#include <QPainter>
#include <cmath>

namespace {

const QString sampleText = QStringLiteral("000.000");
// Ticks stand at least this far apart on screen.
const double tickSpacing = 60.0;
const QColor background(240, 240, 240);

// The smallest step of 1, 2 or 5 times a power of ten that is at least `least`.
double roundStep(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0, 10.0}) {
        if (factor * power >= least)
            return factor * power;
    }
    return 10.0 * power;
}

} // namespace

QDRuler::QDRuler(Type type, QGraphicsView *view, QWidget *parent)
    : QWidget(parent ? parent : view), m_type(type), m_view(view)
{
    setObjectName(type == Horizontal ? QStringLiteral("rulerHorizontal") : QStringLiteral("rulerVertical"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

int QDRuler::breadth() const
{
    return fontMetrics().horizontalAdvance(sampleText) + 8;
}

double QDRuler::length() const
{
    return m_type == Horizontal ? m_view->viewport()->width() : m_view->viewport()->height();
}

double QDRuler::valueAt(double pixel) const
{
    const QPointF at = m_type == Horizontal ? m_view->mapToScene(QPoint(int(std::lround(pixel)), 0))
                                            : m_view->mapToScene(QPoint(0, int(std::lround(pixel))));
    return m_type == Horizontal ? at.x() : at.y();
}

double QDRuler::pixelOf(double value) const
{
    const QPointF scene = m_type == Horizontal ? QPointF(value, 0.0) : QPointF(0.0, value);
    const QPointF viewport = m_view->viewportTransform().map(scene);
    return m_type == Horizontal ? viewport.x() : viewport.y();
}

double QDRuler::tickStep() const
{
    const double unitsPerPixel = std::abs(valueAt(length()) - valueAt(0.0)) / std::max(1.0, length());
    return unitsPerPixel > 0.0 ? roundStep(unitsPerPixel * tickSpacing) : 1.0;
}

QVector<double> QDRuler::tickValues() const
{
    QVector<double> values;
    const double step = tickStep();
    const double first = valueAt(0.0);
    const double last = valueAt(length());
    const double low = std::min(first, last);
    const double high = std::max(first, last);
    for (double k = std::ceil(low / step); k * step <= high && values.size() < 1000; ++k)
        values.append(k * step);
    return values;
}

void QDRuler::redraw()
{
    update();
}

void QDRuler::setCursorPos(const QPoint &viewportPos)
{
    m_cursor = viewportPos;
    if (m_track)
        update();
}

void QDRuler::setMouseTrack(bool track)
{
    m_track = track;
    update();
}

void QDRuler::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), background);
    painter.setPen(QColor(120, 120, 120));
    const bool horizontal = m_type == Horizontal;
    const int edge = horizontal ? height() - 1 : width() - 1;
    if (horizontal)
        painter.drawLine(0, edge, width(), edge);
    else
        painter.drawLine(edge, 0, edge, height());
    const double step = tickStep();
    const int decimals = std::max(0, std::min(3, int(std::ceil(-std::log10(step)))));
    for (const double value : tickValues()) {
        const double at = pixelOf(value);
        const QString text = QString::number(std::abs(value) < step * 1e-9 ? 0.0 : value, 'f', decimals);
        if (horizontal) {
            painter.drawLine(QPointF(at, edge - 6), QPointF(at, edge));
            painter.drawText(QPointF(at + 2, edge - 7), text);
        } else {
            painter.drawLine(QPointF(edge - 6, at), QPointF(edge, at));
            painter.drawText(QRectF(0, at - fontMetrics().height(), edge - 2, fontMetrics().height()),
                             Qt::AlignRight | Qt::AlignBottom, text);
        }
    }
    if (m_track) {
        painter.setPen(QColor(200, 0, 0));
        if (horizontal)
            painter.drawLine(m_cursor.x(), 0, m_cursor.x(), height());
        else
            painter.drawLine(0, m_cursor.y(), width(), m_cursor.y());
    }
}

QCornerRuler::QCornerRuler(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("rulerCorner"));
}

void QCornerRuler::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), background);
}
