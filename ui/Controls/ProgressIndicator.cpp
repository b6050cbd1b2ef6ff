#include "ui/Controls/ProgressIndicator.h"

#include <QPainter>
#include <QTimerEvent>

ProgressIndicator::ProgressIndicator(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::NoFocus);
}

void ProgressIndicator::startAnimation()
{
    m_angle = 0;
    if (m_timerId == -1)
        m_timerId = startTimer(m_delay);
}

void ProgressIndicator::stopAnimation()
{
    if (m_timerId != -1)
        killTimer(m_timerId);
    m_timerId = -1;
    update();
}

void ProgressIndicator::setAnimationDelay(int delay)
{
    if (m_timerId != -1)
        killTimer(m_timerId);
    m_delay = delay;
    if (m_timerId != -1)
        m_timerId = startTimer(m_delay);
}

void ProgressIndicator::setDisplayedWhenStopped(bool state)
{
    m_displayedWhenStopped = state;
    update();
}

void ProgressIndicator::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void ProgressIndicator::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timerId)
        return;
    m_angle = (m_angle + 30) % 360;
    update();
}

void ProgressIndicator::paintEvent(QPaintEvent *)
{
    if (!m_displayedWhenStopped && !isAnimated())
        return;
    const int side = qMin(width(), height());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int outerRadius = (side - 1) / 2;
    const int innerRadius = int((side - 1) * 0.5 * 0.38);
    const int capsuleHeight = outerRadius - innerRadius;
    const int capsuleWidth = side > 32 ? int(capsuleHeight * 0.23) : int(capsuleHeight * 0.35);
    const int capsuleRadius = capsuleWidth / 2;
    // Each spoke fades with its distance behind the leading one.
    for (int i = 0; i < 12; ++i) {
        QColor color = m_color;
        color.setAlphaF(1.0 - (i / 12.0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.save();
        painter.translate(rect().center());
        painter.rotate(m_angle - i * 30.0);
        painter.drawRoundedRect(-capsuleWidth / 2, -(innerRadius + capsuleHeight), capsuleWidth, capsuleHeight,
                                capsuleRadius, capsuleRadius);
        painter.restore();
    }
}
