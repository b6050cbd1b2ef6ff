#pragma once

#include <QLineF>
#include <QList>
#include <QMetaType>
#include <QPainterPath>
#include <QPointF>
#include <QSharedPointer>
#include <QString>

// A point of a flat section: abscissa and ordinate in mm.
class PointF : public QPointF
{
public:
    using QPointF::QPointF;
    PointF() = default;
    PointF(const QPointF &point)
        : QPointF(point)
    {
    }
};

// A flat curve of a section.
class Shape2D
{
public:
    enum Type { ArcType = 1, LineType = 2 };

    virtual int type() const = 0;
    virtual QString toString() const = 0;
    virtual bool isNull() const = 0;
    virtual double length() const = 0;
    virtual QPainterPath toPath() const = 0;
    virtual Shape2D *clone() const = 0;
    virtual PointF p1() const = 0;
    virtual PointF p2() const = 0;
    virtual ~Shape2D() = default;

protected:
    Shape2D() = default;
    Shape2D(const Shape2D &) = default;
    Shape2D &operator=(const Shape2D &) = default;
};

class Line2D : public Shape2D, public QLineF
{
public:
    using QLineF::QLineF;
    Line2D() = default;
    Line2D(const QLineF &line)
        : QLineF(line)
    {
    }

    int type() const override { return LineType; }
    QString toString() const override;
    // At most 1e-7 long.
    bool isNull() const override;
    double length() const override { return QLineF::length(); }
    QPainterPath toPath() const override;
    Shape2D *clone() const override { return new Line2D(*this); }
    PointF p1() const override { return QLineF::p1(); }
    PointF p2() const override { return QLineF::p2(); }
};

// A circular arc; angles in degrees.
class Arc2D : public Shape2D
{
public:
    int type() const override { return ArcType; }
    QString toString() const override;
    bool isNull() const override;
    double length() const override;
    // Drawn through points whose chords sag by at most 1e-4.
    QPainterPath toPath() const override;
    Shape2D *clone() const override { return new Arc2D(*this); }
    PointF p1() const override { return pointAt(startAngle); }
    PointF p2() const override { return pointAt(endAngle); }

    // Products of 1e-7 or less are set to exactly 0, so that the ends of
    // quarter arcs land on the axes.
    PointF pointAt(double angle) const;
    // The signed angle swept from startAngle to endAngle.
    double sweep() const;
    QList<PointF> points() const;

    double startAngle = 0.0;
    double endAngle = 0.0;
    double radius = 0.0;
    PointF center;
    bool ccw = true;
};

Q_DECLARE_METATYPE(Line2D)
Q_DECLARE_METATYPE(Arc2D)

// Curves of a section. Copies share the curves.
class Shape2DList : public QList<QSharedPointer<Shape2D>>
{
public:
    using QList<QSharedPointer<Shape2D>>::QList;

    void appendLine(const QPointF &p1, const QPointF &p2);

    // Same type and equal within 1e-7; a line is not equal to its reverse.
    static bool sameAs(const Shape2D &a, const Shape2D &b);
    // Where two lines cross: shared ends within tolerance, else their
    // crossing point, or the ends of their overlap.
    static QList<PointF> intersections(const QLineF &a, const QLineF &b, double tolerance);

    Shape2DList shifted(double dx, double dy) const;
    // Lines with both ends within 1e-6 of x.
    Shape2DList linesAtAbscissa(double x) const;
    // Lines with both ends within 1e-6 of y.
    Shape2DList linesAtOrdinate(double y) const;
    // Lines with both ends left of x or within 1e-3 of it.
    Shape2DList leftOf(double x) const;
    // Lines with both ends below y or within 1e-6 of it.
    Shape2DList below(double y) const;
    QString toString() const;

private:
    template <typename Keep>
    Shape2DList linesWhere(Keep keep) const;
};

namespace flat {

// "(x, y)" for the log; 'f' with 9 decimals where the places matter.
QString pointText(const QPointF &point, char format = 'g', int precision = 12);

} // namespace flat

