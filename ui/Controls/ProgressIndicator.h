#pragma once

#include <QColor>
#include <QWidget>

// A spinner of twelve spokes that turns while work goes on.
class ProgressIndicator : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int delay READ animationDelay WRITE setAnimationDelay)
    Q_PROPERTY(bool displayedWhenStopped READ isDisplayedWhenStopped WRITE setDisplayedWhenStopped)
    Q_PROPERTY(QColor color READ color WRITE setColor)
public:
    explicit ProgressIndicator(QWidget *parent = nullptr);

    int animationDelay() const { return m_delay; }
    bool isAnimated() const { return m_timerId != -1; }
    bool isDisplayedWhenStopped() const { return m_displayedWhenStopped; }
    const QColor &color() const { return m_color; }
    int angle() const { return m_angle; }
    QSize sizeHint() const override { return {20, 20}; }

public slots:
    void startAnimation();
    void stopAnimation();
    void setAnimationDelay(int delay);
    void setDisplayedWhenStopped(bool state);
    void setColor(const QColor &color);

protected:
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int m_angle = 0;
    int m_timerId = -1;
    int m_delay = 40;
    bool m_displayedWhenStopped = false;
    QColor m_color = Qt::black;
};
