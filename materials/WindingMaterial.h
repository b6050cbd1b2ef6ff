#pragma once

#include "materials/AbstractMaterial.h"

// A winding side in a slot layer. The script gives the layer; the stator numbers slot
// and layout while it replicates the slot.
class WindingMaterial : public AbstractMaterial
{
public:
    explicit WindingMaterial(int layer = -1);

    const Record &persistenceKey() const override;
    void save(QDataStream &out) const override;
    void load(QDataStream &in) override;
    QSharedPointer<AbstractMaterial> clone() const override;
    QColor color() const override;
    // Marks a body of a numbered layer with its number in a disc of constant screen size.
    void draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
              bool noOutline) const override;
    QString description() const override;
    bool equals(const AbstractMaterial &other) const override;

    int layer() const { return m_layer; }
    void setLayer(int layer) { m_layer = layer; }
    int slot() const { return m_slot; }
    void setSlot(int slot) { m_slot = slot; }
    int layout() const { return m_layout; }
    void setLayout(int layout) { m_layout = layout; }

    // "None" for no layer, else the number.
    QString layerName() const;

private:
    int m_layer;
    int m_slot = 0;
    int m_layout = 0;
};

// An end turn of one phase of one layout.
class EndturnMaterial : public AbstractMaterial
{
public:
    explicit EndturnMaterial(int phase = 0, int layout = 0);

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
    QString description() const override;
    bool equals(const AbstractMaterial &other) const override;

    int phase() const { return m_phase; }
    int layout() const { return m_layout; }

private:
    int m_phase;
    int m_layout;
};
