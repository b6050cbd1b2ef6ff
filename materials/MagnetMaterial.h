#pragma once

#include <QVector>

#include "materials/AbstractMaterial.h"
#include "materials/Magnetization.h"

// A magnet with its field pattern, split into segments at the given radiuses.
class MagnetMaterial : public AbstractMaterial, public Magnetization
{
public:
    void save(QDataStream &out) const override;
    void load(QDataStream &in) override;
    // Blue for a field that points back (toward the centre or counter-clockwise), else red.
    QColor color() const override;
    QBrush brush() const override;
    // Shades the body by its field and draws the field as arrows over it.
    void draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
              bool noOutline) const override;
    QString description() const override;
    bool equals(const AbstractMaterial &other) const override;

    const QVector<double> &segmentRadiuses() const { return m_segmentRadiuses; }

    // The faces where the field leaves a magnet (its north pole) and enters it.
    static QColor northColor();
    static QColor southColor();

protected:
    MagnetMaterial(const Magnetization &magnetization, const QVector<double> &segmentRadiuses);

private:
    QVector<double> m_segmentRadiuses;
};

class MagnetParallelMaterial : public MagnetMaterial
{
public:
    explicit MagnetParallelMaterial(double angle = 0.0, const QVector<double> &segmentRadiuses = {},
                                    bool savePoleBorder = true);

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
    // An axial magnet shows its field as dots when it points out of the section, as
    // crosses when it points into it.
    void draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
              bool noOutline) const override;
    bool equals(const AbstractMaterial &other) const override;

    bool savePoleBorder() const { return m_savePoleBorder; }
    // Set when a section cuts a magnet that is magnetised along the machine's axis.
    bool axial() const { return m_axial; }
    void setAxial(bool axial) { m_axial = axial; }

private:
    bool m_savePoleBorder;
    bool m_axial = false;
};

class MagnetRadialMaterial : public MagnetMaterial
{
public:
    explicit MagnetRadialMaterial(Direction direction = Direction::From, const QPointF &center = {},
                                  const QVector<double> &segmentRadiuses = {});

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
};
