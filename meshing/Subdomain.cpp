#include "meshing/Subdomain.h"

#include <QStringList>
#include <boost/geometry/algorithms/centroid.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/strategies/strategies.hpp>
#include <cmath>

#include "base/Polylabel.h"
#include "materials/BasicMaterials.h"

namespace {

struct ScopeName
{
    quint32 flag;
    const char *name;
};

const ScopeName scopeNames[] = {
    {0x1, "stator1"},      {0x2, "stator2"},      {0x4, "stator3"},      {0x10, "rotor1"},
    {0x20, "rotor2"},      {0x40, "rotor3"},      {0x10000, "airgap1"},  {0x20000, "airgap2"},
    {0x40000, "airgap3"},  {0x80000, "airgap4"},
};

} // namespace

Subdomain::Subdomain(qint32 id, const SegmentList &segments, const QPainterPath &path)
    : m_id(id)
    , m_segments(segments)
    , m_material(new EmptyMaterial)
{
    for (const SegmentPtr &segment : m_segments)
        segment->hide = false;
    setPath(path);
}

void Subdomain::setId(qint32 id)
{
    m_id = id;
}

void Subdomain::setScope(quint32 scope)
{
    m_scope = scope;
}

void Subdomain::setMaterial(const QSharedPointer<AbstractMaterial> &material)
{
    m_material = material;
}

void Subdomain::setArea(double area)
{
    m_area = area;
}

void Subdomain::setLength(double length)
{
    m_length = length;
}

void Subdomain::setPath(const QPainterPath &path)
{
    m_path = path;
    m_bounds = path.boundingRect().adjusted(-1.0, -1.0, 1.0, 1.0);
}

bool Subdomain::contains(const QPointF &point) const
{
    return m_bounds.contains(point) && m_path.contains(point);
}

PointF Subdomain::polylabelPoint() const
{
    if (m_path.isEmpty())
        return {};
    return polylabel(m_path.toSubpathPolygons(), 1.0);
}

PointF Subdomain::centroidPoint() const
{
    if (m_path.isEmpty())
        return {};
    using Point = boost::geometry::model::d2::point_xy<double>;
    boost::geometry::model::polygon<Point, false> polygon;
    for (int i = 0; i < m_path.elementCount(); ++i) {
        const QPainterPath::Element element = m_path.elementAt(i);
        polygon.outer().emplace_back(element.x, element.y);
    }
    try {
        Point centroid;
        boost::geometry::centroid(polygon, centroid);
        if (std::isfinite(centroid.x()) && std::isfinite(centroid.y()))
            return PointF(centroid.x(), centroid.y());
    } catch (const boost::geometry::centroid_exception &) {
    }
    const QPainterPath::Element first = m_path.elementAt(0);
    return PointF(first.x, first.y);
}

QString Subdomain::toolTip() const
{
    return QStringLiteral("Subdomain %1").arg(m_id)
           + QStringLiteral("\nMaterial: %1").arg(m_material ? m_material->description() : QString())
           + QStringLiteral("\nArea: %1").arg(m_area)
           + QStringLiteral("\nPosition: %1").arg(flat::pointText(polylabelPoint()));
}

QString scopeText(quint32 scope)
{
    if (scope == 0)
        return QStringLiteral("empty");
    QStringList names;
    quint32 known = 0;
    for (const ScopeName &name : scopeNames) {
        if (scope & name.flag) {
            names.append(QString::fromLatin1(name.name));
            known |= name.flag;
        }
    }
    if (known != scope)
        names.append(QStringLiteral("Unknown scope"));
    return names.join(QStringLiteral(" | "));
}
