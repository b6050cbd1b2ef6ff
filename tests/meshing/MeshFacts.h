#pragma once

#include <QColor>
#include <QLineF>
#include <QString>
#include <QStringList>
#include <QVector>
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include <gtest/gtest.h>

#include "materials/AbstractMaterial.h"
#include "meshing/CDT.h"
#include "meshing/GeometryData.h"
#include "MeshingSupport.h"

// What a 2D mesh of a machine must be, known from the machine's dimensions and
// not from the mesher.
struct MeshFacts
{
    // A band of the outline over the whole width from x0: one body with its
    // rows up to the middle band of each of its gaps.
    struct Strip
    {
        double low;
        double high;
        double x0 = 0.0;
    };
    // A row of a gap beside its middle band, over zones that start and end at
    // the given abscissas.
    struct Row
    {
        double y;
        QVector<double> zoneEnds;
    };
    // The two rows of a gap have the same number of equal segments in each zone.
    struct GapPair
    {
        Row lower;
        Row upper;
    };

    double width = 0.0;
    double sizeBound = 0.0;
    // The sides of each strip at x0 and x0 + width are seams of the period.
    bool periodic = true;
    QVector<Strip> strips;
    QVector<GapPair> gaps;
    // The area that each material kind must cover.
    std::map<qint32, double> areas;
    // The regions of the same cut, which name the material of each triangle.
    const GeometryData *regions = nullptr;
};

namespace meshfacts {

constexpr double tolerance = 1e-6;

inline bool near(double a, double b)
{
    return std::abs(a - b) <= tolerance;
}

inline QColor kindColour(qint32 kind)
{
    static const QColor colours[] = {Qt::white,      QColor("#9ecae1"), QColor("#bdbdbd"), QColor("#fdae6b"),
                                     QColor("#e6550d"), QColor("#31a354"), QColor("#756bb1"), QColor("#636363"),
                                     QColor("#fdd0a2")};
    return kind >= 0 && kind < 9 ? colours[kind] : QColor(Qt::magenta);
}

// The vertices of a row, left to right.
inline QVector<double> rowAbscissas(const CDT::Snapshot &mesh, double y, double x0, double x1)
{
    QVector<double> xs;
    for (const CDT::Vertex &vertex : mesh.vertices) {
        const QPointF &p = vertex.point;
        if (std::abs(p.y() - y) <= 1e-7 && p.x() >= x0 - tolerance && p.x() <= x1 + tolerance)
            xs.append(p.x());
    }
    std::sort(xs.begin(), xs.end());
    return xs;
}

// The ordinates of the vertices on one seam, bottom up.
inline QVector<double> seamOrdinates(const CDT::Snapshot &mesh, double x, const MeshFacts::Strip &strip)
{
    QVector<double> ys;
    for (const CDT::Vertex &vertex : mesh.vertices) {
        const QPointF &p = vertex.point;
        if (near(p.x(), x) && p.y() >= strip.low - tolerance && p.y() <= strip.high + tolerance)
            ys.append(p.y());
    }
    std::sort(ys.begin(), ys.end());
    return ys;
}

inline bool onOutline(const MeshFacts &facts, const QPointF &a, const QPointF &b)
{
    return std::any_of(facts.strips.cbegin(), facts.strips.cend(), [&](const MeshFacts::Strip &strip) {
        const double x1 = strip.x0 + facts.width;
        const auto within = [](double v, double lo, double hi) { return v >= lo - tolerance && v <= hi + tolerance; };
        const bool inX = within(a.x(), strip.x0, x1) && within(b.x(), strip.x0, x1);
        const bool inY = within(a.y(), strip.low, strip.high) && within(b.y(), strip.low, strip.high);
        const bool side = inY && ((near(a.x(), strip.x0) && near(b.x(), strip.x0)) || (near(a.x(), x1) && near(b.x(), x1)));
        const bool end = inX && ((near(a.y(), strip.low) && near(b.y(), strip.low))
                                 || (near(a.y(), strip.high) && near(b.y(), strip.high)));
        return side || end;
    });
}

} // namespace meshfacts

// Checks a mesh against its facts. A failure names every broken fact and
// leaves a picture, triangles coloured by material and what failed marked red,
// whose path it gives.
inline ::testing::AssertionResult meetsFacts(const CDT &cdt, const MeshFacts &facts, const QString &name)
{
    using namespace meshfacts;
    const CDT::Snapshot mesh = cdt.snapshot();
    // Each broken fact once, with how often it broke and its first instance.
    std::map<QString, std::pair<int, QString>> failures;
    MeshMarks marks;
    const auto fail = [&failures](const QString &fact, const QString &instance = QString()) {
        auto &entry = failures[fact];
        if (entry.first++ == 0)
            entry.second = instance;
    };

    std::map<std::pair<int, int>, int> sides;
    std::map<qint32, double> areas;
    int faces = 0;
    for (int f = 0; f < mesh.faces.size(); ++f) {
        const CDT::Face &face = mesh.faces.at(f);
        if (!face.inDomain)
            continue;
        ++faces;
        const QPointF a = mesh.vertices.at(face.vertices[0]).point;
        const QPointF b = mesh.vertices.at(face.vertices[1]).point;
        const QPointF c = mesh.vertices.at(face.vertices[2]).point;
        const double area = signedArea(a, b, c);
        if (area <= 0.0) {
            fail(QStringLiteral("triangles of no area"), QStringLiteral("%1 at %2").arg(area).arg(flat::pointText(face.centroid)));
            marks.points.append(face.centroid);
        }
        for (int i = 0; i < 3; ++i) {
            const int u = face.vertices[i];
            const int v = face.vertices[(i + 1) % 3];
            ++sides[{std::min(u, v), std::max(u, v)}];
        }
        const QSharedPointer<Subdomain> region = [&]() -> QSharedPointer<Subdomain> {
            for (const QSharedPointer<Subdomain> &candidate : facts.regions->subdomains) {
                if (candidate->contains(face.centroid))
                    return candidate;
            }
            return {};
        }();
        if (!region || !region->material()) {
            fail(region ? QStringLiteral("triangles in a region without material")
                        : QStringLiteral("triangles in no region"),
                 flat::pointText(face.centroid));
            marks.points.append(face.centroid);
            continue;
        }
        areas[region->material()->kind()] += area;
        marks.faceColours[f] = kindColour(region->material()->kind());
    }
    if (faces == 0)
        fail(QStringLiteral("no triangle in the domain"));
    for (const QSharedPointer<Subdomain> &region : facts.regions->subdomains) {
        if (!region->material())
            fail(QStringLiteral("regions without material"), QStringLiteral("region %1").arg(region->id()));
    }

    double boundary = 0.0;
    for (const auto &[side, count] : sides) {
        const QPointF a = mesh.vertices.at(side.first).point;
        const QPointF b = mesh.vertices.at(side.second).point;
        const double length = QLineF(a, b).length();
        if (length > facts.sizeBound * (1 + 1e-9)) {
            fail(QStringLiteral("sides beyond the size bound"),
                 QStringLiteral("%1 mm from %2 to %3").arg(length).arg(flat::pointText(a), flat::pointText(b)));
            marks.edges.append(QLineF(a, b));
        }
        // Two nodes a rounding error apart are one point the mesher failed to merge.
        if (length < tolerance) {
            fail(QStringLiteral("sides shorter than a rounding error"),
                 QStringLiteral("%1 mm at %2").arg(length).arg(flat::pointText(a)));
            marks.points.append(a);
        }
        if (count > 2 || (count == 1 && !onOutline(facts, a, b))) {
            fail(count > 2 ? QStringLiteral("sides of more than two triangles")
                           : QStringLiteral("sides of one triangle inside the outline"),
                 QStringLiteral("%1 to %2").arg(flat::pointText(a), flat::pointText(b)));
            marks.edges.append(QLineF(a, b));
        }
        if (count == 1)
            boundary += length;
    }
    double outline = 0.0;
    for (const MeshFacts::Strip &strip : facts.strips)
        outline += 2 * (facts.width + strip.high - strip.low);
    if (std::abs(boundary - outline) > tolerance * outline)
        fail(QStringLiteral("boundary of %1 mm, the outline is %2 mm").arg(boundary, 0, 'f', 9).arg(outline, 0, 'f', 9));

    for (const MeshFacts::Strip &strip : facts.strips) {
        if (!facts.periodic)
            break;
        const QVector<double> left = seamOrdinates(mesh, strip.x0, strip);
        const QVector<double> right = seamOrdinates(mesh, strip.x0 + facts.width, strip);
        bool paired = left.size() == right.size();
        for (int k = 0; paired && k < left.size(); ++k)
            paired = near(left.at(k), right.at(k));
        if (!paired) {
            fail(QStringLiteral("seams of the strip %1 to %2 do not pair: %3 and %4 nodes")
                     .arg(strip.low).arg(strip.high).arg(left.size()).arg(right.size()));
            for (const double y : left)
                marks.points.append(QPointF(strip.x0, y));
            for (const double y : right)
                marks.points.append(QPointF(strip.x0 + facts.width, y));
        }
    }

    for (const MeshFacts::GapPair &gap : facts.gaps) {
        const MeshFacts::Row rows[] = {gap.lower, gap.upper};
        QVector<int> counts[2];
        for (int r = 0; r < 2; ++r) {
            const MeshFacts::Row &row = rows[r];
            for (int z = 0; z + 1 < row.zoneEnds.size(); ++z) {
                const double x0 = row.zoneEnds.at(z);
                const double x1 = row.zoneEnds.at(z + 1);
                const QVector<double> xs = rowAbscissas(mesh, row.y, x0, x1);
                counts[r].append(xs.size());
                bool equal = xs.size() >= 2;
                for (int k = 0; equal && k < xs.size(); ++k)
                    equal = near(xs.at(k), x0 + (x1 - x0) * k / (xs.size() - 1));
                if (!equal) {
                    fail(QStringLiteral("row %1 from %2 to %3 is not of equal segments").arg(row.y).arg(x0).arg(x1));
                    for (const double x : xs)
                        marks.points.append(QPointF(x, row.y));
                }
            }
        }
        if (counts[0] != counts[1]) {
            fail(QStringLiteral("rows %1 and %2 differ in their segments").arg(gap.lower.y).arg(gap.upper.y));
            marks.edges.append(QLineF(gap.lower.zoneEnds.first(), gap.lower.y, gap.lower.zoneEnds.last(), gap.lower.y));
            marks.edges.append(QLineF(gap.upper.zoneEnds.first(), gap.upper.y, gap.upper.zoneEnds.last(), gap.upper.y));
        }
    }

    for (const auto &[kind, expected] : facts.areas) {
        const double area = areas[kind];
        if (std::abs(area - expected) > 1e-6 * std::abs(expected))
            fail(QStringLiteral("material kind %1 covers %2 mm², expected %3 mm²")
                     .arg(kind).arg(area, 0, 'f', 9).arg(expected, 0, 'f', 9));
    }
    for (const auto &[kind, area] : areas) {
        if (facts.areas.count(kind) == 0 && std::abs(area) > 0.0)
            fail(QStringLiteral("material kind %1 covers %2 mm², expected none").arg(kind).arg(area));
    }

    if (failures.empty())
        return ::testing::AssertionSuccess();
    QStringList lines;
    for (const auto &[fact, broken] : failures)
        lines << (broken.first > 1 ? QStringLiteral("%1 (%2 times, first %3)").arg(fact).arg(broken.first).arg(broken.second)
                                   : QStringLiteral("%1 %2").arg(fact, broken.second).trimmed());
    return ::testing::AssertionFailure() << lines.join(QStringLiteral("\n")).toStdString() << "\ndrawn in "
                                         << writeSvg(cdt, name, marks).toStdString();
}
