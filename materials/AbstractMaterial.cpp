#include "materials/AbstractMaterial.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPixmapCache>

AbstractMaterial::AbstractMaterial(Kind kind)
    : m_kind(kind)
{
}

QString AbstractMaterial::key() const
{
    return materialTypeName(m_kind);
}

QColor AbstractMaterial::color() const
{
    return materialTypeColor(m_kind);
}

QBrush AbstractMaterial::brush() const
{
    return QBrush(color());
}

void AbstractMaterial::draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
                            bool noOutline) const
{
    Q_UNUSED(scale)
    Q_UNUSED(clipRect)
    painter->fillPath(path, brush());
    if (noOutline)
        return;
    QPen outline(color().darker(150), 1.5);
    outline.setCosmetic(true);
    painter->strokePath(path, outline);
}

QString AbstractMaterial::description() const
{
    return materialTypeName(m_kind);
}

bool AbstractMaterial::equals(const AbstractMaterial &other) const
{
    return m_kind == other.m_kind;
}

QString materialTypeName(qint32 kind)
{
    switch (kind) {
    case AbstractMaterial::EmptyKind:
        return AbstractMaterial::tr("Not assigned");
    case AbstractMaterial::GeneralKind:
        return AbstractMaterial::tr("General");
    case AbstractMaterial::IronKind:
        return AbstractMaterial::tr("Iron");
    case AbstractMaterial::MagnetKind:
        return AbstractMaterial::tr("Magnet");
    case AbstractMaterial::WindingKind:
        return AbstractMaterial::tr("Winding");
    case AbstractMaterial::ConductorKind:
        return AbstractMaterial::tr("Conductor");
    case AbstractMaterial::EndturnKind:
        return AbstractMaterial::tr("EndTurn");
    case AbstractMaterial::CustomKind:
        return AbstractMaterial::tr("Custom");
    default:
        return AbstractMaterial::tr("Unknown material type");
    }
}

QColor materialTypeColor(qint32 kind)
{
    switch (kind) {
    case AbstractMaterial::EmptyKind:
        return QColor(245, 245, 245, 0);
    case AbstractMaterial::GeneralKind:
        return QColor(128, 255, 255);
    case AbstractMaterial::IronKind:
        return QColor(213, 221, 224);
    case AbstractMaterial::MagnetKind:
        return QColor(255, 211, 168);
    case AbstractMaterial::WindingKind:
        return QColor(255, 140, 105);
    case AbstractMaterial::ConductorKind:
        return QColor(255, 219, 139);
    case AbstractMaterial::EndturnKind:
        return QColor(255, 161, 110);
    case AbstractMaterial::CustomKind:
        return QColor(128, 128, 128);
    case AbstractMaterial::DummyKind:
        return QColor(153, 153, 204);
    default:
        return QColor(128, 128, 128);
    }
}

QPixmap pixmapOf(const AbstractMaterial &material, int size)
{
    const QString typeText = materialTypeName(material.kind());
    const QString key = QStringLiteral("%1:%2").arg(typeText).arg(size);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    pixmap = QPixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(material.brush());
    const QRectF disc(0.0, 0.0, size, size);
    painter.drawEllipse(disc);

    QFont font = painter.font();
    font.setPointSizeF(size / 2.0);
    painter.setFont(font);
    painter.setPen(material.color().darker(300));
    const QString letter = typeText.left(1).toUpper();
    const QRectF letterBox = QFontMetricsF(font, &pixmap).tightBoundingRect(letter);
    painter.drawText(disc.center() - letterBox.center(), letter);
    painter.end();

    QPixmapCache::insert(key, pixmap);
    return pixmap;
}
