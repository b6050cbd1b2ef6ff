#include "materials/WindingMaterial.h"

#include <QPainterPath>
#include <QFontMetricsF>
#include <QPainter>

#include "base/Polylabel.h"

namespace {

const AbstractMaterial::Record windingRecord{"WindingMaterial", 1, &AbstractMaterial::createDefault<WindingMaterial>};
const AbstractMaterial::Registration windingRegistration(windingRecord);

const AbstractMaterial::Record endturnRecord{"EndturnMaterial", 1, &AbstractMaterial::createDefault<EndturnMaterial>};
const AbstractMaterial::Registration endturnRegistration(endturnRecord);

// Phases are named by one letter of "ABC", as the winding names them.
QString phaseName(int phase)
{
    const QString names = QStringLiteral("ABC");
    return phase >= 0 && phase < names.size() ? QString(names.at(phase)) : QString();
}

} // namespace

WindingMaterial::WindingMaterial(int layer)
    : AbstractMaterial(WindingKind)
    , m_layer(layer)
{
}

const AbstractMaterial::Record &WindingMaterial::persistenceKey() const
{
    return windingRecord;
}

void WindingMaterial::save(QDataStream &out) const
{
    out << qint32(m_layer);
}

void WindingMaterial::load(QDataStream &in)
{
    qint32 layer = 0;
    in >> layer;
    m_layer = layer;
}

QSharedPointer<AbstractMaterial> WindingMaterial::clone() const
{
    return QSharedPointer<WindingMaterial>::create(*this);
}

QColor WindingMaterial::color() const
{
    if (m_layer < 0)
        return QColor(253, 124, 110);
    if (m_layer == 0)
        return QColor(255, 130, 105);
    if (m_layer % 2 == 1)
        return QColor(255, 180, 105);
    return QColor(230, 255, 105);
}

void WindingMaterial::draw(QPainter *painter, const QPainterPath &path, double scale, const QRectF &clipRect,
                           bool noOutline) const
{
    AbstractMaterial::draw(painter, path, scale, clipRect, noOutline);
    if (m_layer == 0 || scale <= 0.0)
        return;
    // The centre is wanted to a pixel.
    const QPointF centre = polylabel(path.toSubpathPolygons(), 1.0 / scale);
    // Sized by a two-digit sample, so that all marks are alike.
    const QRectF sample = QFontMetricsF(painter->font(), painter->device()).boundingRect(QStringLiteral("%1"));
    const double side = 1.5 * qMax(sample.width(), sample.height());
    QRectF mark(0.0, 0.0, side, side);
    mark.moveCenter(centre);

    QTransform unscaled;
    unscaled.translate(centre.x(), centre.y());
    unscaled.scale(1.0 / scale, -1.0 / scale);
    unscaled.translate(-centre.x(), -centre.y());

    painter->save();
    painter->setTransform(unscaled, true);
    painter->setPen(QPen(Qt::black, 0.0));
    painter->setBrush(color().lighter(130));
    painter->drawEllipse(mark);
    painter->drawText(mark, Qt::AlignCenter, layerName());
    painter->restore();
}

QString WindingMaterial::description() const
{
    return tr("%1, layer %2, slot %3, layout %4")
        .arg(materialTypeName(kind()), layerName())
        .arg(m_slot)
        .arg(m_layout);
}

bool WindingMaterial::equals(const AbstractMaterial &other) const
{
    const auto *winding = dynamic_cast<const WindingMaterial *>(&other);
    return winding && AbstractMaterial::equals(other) && winding->m_layer == m_layer
        && winding->m_slot == m_slot && winding->m_layout == m_layout;
}

QString WindingMaterial::layerName() const
{
    return m_layer == -1 ? tr("None") : QString::number(m_layer);
}

EndturnMaterial::EndturnMaterial(int phase, int layout)
    : AbstractMaterial(EndturnKind)
    , m_phase(phase)
    , m_layout(layout)
{
}

const AbstractMaterial::Record &EndturnMaterial::persistenceKey() const
{
    return endturnRecord;
}

QSharedPointer<AbstractMaterial> EndturnMaterial::clone() const
{
    return QSharedPointer<EndturnMaterial>::create(*this);
}

QString EndturnMaterial::description() const
{
    if (m_layout < 1)
        return materialTypeName(kind());
    return tr("%1, phase %2, layout %3")
        .arg(materialTypeName(kind()), phaseName(m_phase))
        .arg(m_layout);
}

bool EndturnMaterial::equals(const AbstractMaterial &other) const
{
    const auto *endturn = dynamic_cast<const EndturnMaterial *>(&other);
    return endturn && AbstractMaterial::equals(other) && endturn->m_phase == m_phase
        && endturn->m_layout == m_layout;
}
