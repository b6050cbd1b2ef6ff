#pragma once

#include <QVector>
#include <QWidget>

class QGraphicsView;

// A scale along one edge of a flat view, in the view's scene units: ticks at round
// steps chosen from the current zoom, their values, and a line where the cursor is.
class QDRuler : public QWidget
{
    Q_OBJECT
public:
    enum Type { Horizontal = 0, Vertical = 1 };
    Q_ENUM(Type)

    QDRuler(Type type, QGraphicsView *view, QWidget *parent = nullptr);

    Type type() const { return m_type; }
    // The ruler's thickness: what the sample text "000.000" needs.
    int breadth() const;
    // The scene values of the ticks now on view, and their step.
    QVector<double> tickValues() const;
    double tickStep() const;
    // Where, along the ruler, a scene value stands.
    double pixelOf(double value) const;

public slots:
    void redraw();
    void setCursorPos(const QPoint &viewportPos);
    void setMouseTrack(bool track);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    // The scene value at a pixel along the ruler.
    double valueAt(double pixel) const;
    double length() const;

    Type m_type;
    QGraphicsView *m_view;
    QPoint m_cursor;
    bool m_track = false;
};

// The square where the two rulers meet.
class QCornerRuler : public QWidget
{
    Q_OBJECT
public:
    explicit QCornerRuler(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
