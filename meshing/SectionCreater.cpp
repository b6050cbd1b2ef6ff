#include "meshing/SectionCreater.h"

#include <BRepAdaptor_Curve.hxx>
#include <GCPnts_QuasiUniformAbscissa.hxx>
#include <GCPnts_QuasiUniformDeflection.hxx>
#include <QtMath>
#include <QDebug>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Circ.hxx>
#include <gp_Pnt.hxx>
#include <vector>

#include "base/Tbb.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/face.h"
#include "geometry/servoce/solid.h"
#include "meshing/GeometryGenerator.h"
#include "base/Numeric.h"

namespace {

const double zeroTolerance = Numeric::zeroTolerance;
// Curves that are not lines are drawn by chords of this sag, mm.
const double chordDeflection = 0.02;
// Lines shorter than this, mm, are worth a look in the log.
const double shortLine = 0.005;
// A curve with more points than this is redrawn with that many evenly spaced ones.
const int mostCurvePoints = 10;
const double cleaningTolerance = 1e-5;

double polarAngle(const gp_Pnt &point)
{
    return Numeric::normalizeAngle(qRadiansToDegrees(std::atan2(point.Y(), point.X())));
}

void reportShortLine(const Line2D &line)
{
    if (line.length() < shortLine)
        qCritical().noquote() << "Very short line" << line.toString();
}

// Points along a curve at most chordDeflection from it.
std::vector<gp_Pnt> curvePoints(const BRepAdaptor_Curve &curve, bool limitCount)
{
    GCPnts_QuasiUniformDeflection deflection(curve, chordDeflection, GeomAbs_C1);
    const int count = deflection.IsDone() ? deflection.NbPoints() : 0;
    if (count < 2)
        return {curve.Value(curve.FirstParameter()), curve.Value(curve.LastParameter())};
    std::vector<gp_Pnt> points;
    if (limitCount && count > mostCurvePoints) {
        GCPnts_QuasiUniformAbscissa abscissa(curve, mostCurvePoints);
        for (int i = 1; i <= abscissa.NbPoints(); ++i)
            points.push_back(curve.Value(abscissa.Parameter(i)));
        return points;
    }
    for (int i = 1; i <= count; ++i)
        points.push_back(deflection.Value(i));
    return points;
}

// The section is cleaned of doubled, crossing and broken lines before anyone sees it.
Shape2DList cleaned(const Shape2DList &lines)
{
    return GeometryGenerator().createGeometrySegments(lines, cleaningTolerance, true, false).lines();
}

} // namespace

SectionCreater::SectionCreater(double sizeLimit, const servoce::shape &tool)
    : m_sizeLimit(sizeLimit)
    , m_tool(tool)
{
}

ShapeList SectionCreater::makeSection(const ShapeList &shapes) const
{
    if (shapes.isEmpty())
        return {};
    const auto cut = [this](const servoce::shape &shape) {
        return shape.is_null() ? servoce::shape() : servoce::make_section(shape, m_tool, false);
    };
    if (shapes.size() == 1) {
        const servoce::shape section = cut(shapes.first());
        return section.is_null() ? ShapeList() : ShapeList{section};
    }
    tbb::concurrent_vector<servoce::shape> sections;
    tbb::parallel_for(0, int(shapes.size()), [&](int i) {
        const servoce::shape section = cut(shapes.at(i));
        if (!section.is_null())
            sections.push_back(section);
    });
    return ShapeList(sections.begin(), sections.end());
}

CylindricalSectionCreater::CylindricalSectionCreater(double radius, double length, double sizeLimit)
    : SectionCreater(sizeLimit, servoce::cylinder(radius, 1.2 * length, false).translated(0.0, 0.0, -0.1 * length))
    , m_radius(radius)
{
}

Shape2DList CylindricalSectionCreater::create(const ShapeList &shapes) const
{
    if (shapes.isEmpty())
        return {};
    const double r = m_radius;
    const auto abscissa = [r](double phi) { return r * phi * M_PI / 180.0; };
    Shape2DList lines;
    // A chord or a straight edge; one that crosses phi = 0 runs on beyond 360 degrees.
    const auto appendUnrolled = [&](const gp_Pnt &a, const gp_Pnt &b) {
        double phi1 = polarAngle(a);
        double phi2 = polarAngle(b);
        if (std::abs(phi1 - phi2) > 180.0) {
            if (phi2 < phi1)
                phi2 += 360.0;
            else
                phi1 += 360.0;
        }
        if (std::abs(phi1 - phi2) <= zeroTolerance && std::abs(a.Z() - b.Z()) <= zeroTolerance)
            return;
        const Line2D line(abscissa(phi1), a.Z(), abscissa(phi2), b.Z());
        reportShortLine(line);
        lines.appendLine(line.p1(), line.p2());
    };

    for (const servoce::edge_shape &edge : makeSection(shapes).toCompound().edges()) {
        const BRepAdaptor_Curve curve(TopoDS::Edge(edge.Shape()));
        gp_Pnt first = curve.Value(curve.FirstParameter());
        gp_Pnt last = curve.Value(curve.LastParameter());
        switch (curve.GetType()) {
        case GeomAbs_Line:
            appendUnrolled(first, last);
            break;
        case GeomAbs_Circle: {
            const gp_Dir axis = curve.Circle().Axis().Direction();
            const bool up = axis.Angle(gp::DZ()) <= 1e-9;
            const bool down = axis.Angle(-gp::DZ()) <= 1e-9;
            if ((!up && !down) || std::abs(first.Z() - last.Z()) > zeroTolerance)
                break;
            // A circle about -Z runs clockwise: read it from its other end.
            if (down)
                std::swap(first, last);
            const double phi1 = polarAngle(first);
            double phi2 = polarAngle(last);
            if (std::abs(phi2 - phi1) <= zeroTolerance) {
                phi2 += 360.0;
            } else if (phi2 < phi1) {
                if (phi1 < 360.0 && phi2 > 0.0)
                    lines.appendLine(QPointF(0.0, first.Z()), QPointF(abscissa(phi2), last.Z()));
                phi2 += 360.0;
            }
            lines.appendLine(QPointF(abscissa(phi1), first.Z()), QPointF(abscissa(phi2), last.Z()));
            break;
        }
        default: {
            const std::vector<gp_Pnt> points = curvePoints(curve, true);
            for (size_t i = 1; i < points.size(); ++i)
                appendUnrolled(points.at(i - 1), points.at(i));
            break;
        }
        }
    }
    return cleaned(lines);
}

RadialSectionCreater::RadialSectionCreater(double sizeLimit)
    : SectionCreater(sizeLimit, servoce::infplane(servoce::point3(0.0, 0.0, 0.0), servoce::vector3(0.0, 1.0, 0.0)))
{
}

Shape2DList RadialSectionCreater::create(const ShapeList &shapes) const
{
    if (shapes.isEmpty())
        return {};
    const auto rounded = [](double value) { return std::round(value * 1e6) / 1e6; };
    Shape2DList lines;
    const auto append = [&lines](const Line2D &line) {
        reportShortLine(line);
        lines.appendLine(line.p1(), line.p2());
    };
    for (const servoce::edge_shape &edge : makeSection(shapes).toCompound().edges()) {
        const BRepAdaptor_Curve curve(TopoDS::Edge(edge.Shape()));
        if (curve.GetType() == GeomAbs_Line) {
            const gp_Pnt first = curve.Value(curve.FirstParameter());
            const gp_Pnt last = curve.Value(curve.LastParameter());
            append(Line2D(rounded(first.X()), rounded(first.Z()), rounded(last.X()), rounded(last.Z())));
            continue;
        }
        const std::vector<gp_Pnt> points = curvePoints(curve, false);
        for (size_t i = 1; i < points.size(); ++i)
            append(Line2D(points.at(i - 1).X(), points.at(i - 1).Z(), points.at(i).X(), points.at(i).Z()));
    }
    qDebug().noquote() << lines.toString();
    return cleaned(lines);
}

Shape2DList RadialSectionCreater::createAtAngle(const ShapeList &shapes, double radius, double bottom, double top,
                                                double angle, double pitch) const
{
    const double sweep = std::min(pitch, 180.0);
    const ShapeList cut = shapes.cutToSector(radius, bottom, top, qDegreesToRadians(angle - sweep / 2),
                                             qDegreesToRadians(sweep));
    return create(cut.rotatedZ(-qDegreesToRadians(angle)));
}
