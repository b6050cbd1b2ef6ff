#pragma once

#include <QLineF>
#include <QPointF>
#include <QPolygonF>
#include <cmath>
#include <initializer_list>
#include <map>
#include <utility>

#include "meshing/CDT.h"
#include "meshing/Shape2D.h"

inline Shape2DList linesOf(std::initializer_list<QLineF> lines)
{
    Shape2DList list;
    for (const QLineF &line : lines)
        list.appendLine(line.p1(), line.p2());
    return list;
}

// The outline of an axis-parallel rectangle, counter-clockwise.
inline Shape2DList rectangleLines(double x, double y, double width, double height)
{
    return linesOf({QLineF(x, y, x + width, y), QLineF(x + width, y, x + width, y + height),
                    QLineF(x + width, y + height, x, y + height), QLineF(x, y + height, x, y)});
}

inline double signedArea(const QPointF &a, const QPointF &b, const QPointF &c)
{
    return ((b.x() - a.x()) * (c.y() - a.y()) - (c.x() - a.x()) * (b.y() - a.y())) / 2.0;
}

// What a finished triangulation of a region must satisfy, measured from its
// triangles alone.
struct MeshMeasures
{
    int faces = 0;
    double area = 0.0;
    double smallestArea = 1e300;
    double longestSide = 0.0;
    // Sides with one triangle, and their total length.
    int boundarySides = 0;
    double boundaryLength = 0.0;
    // Sides with more than two triangles, which no planar mesh has.
    int overusedSides = 0;
};

inline MeshMeasures measure(const CDT &cdt, bool inDomainOnly = true)
{
    const CDT::Snapshot snapshot = cdt.snapshot();
    MeshMeasures result;
    std::map<std::pair<int, int>, int> sides;
    for (const CDT::Face &face : snapshot.faces) {
        if (inDomainOnly && !face.inDomain)
            continue;
        ++result.faces;
        const QPointF a = snapshot.vertices.at(face.vertices[0]).point;
        const QPointF b = snapshot.vertices.at(face.vertices[1]).point;
        const QPointF c = snapshot.vertices.at(face.vertices[2]).point;
        const double area = signedArea(a, b, c);
        result.area += area;
        result.smallestArea = std::min(result.smallestArea, area);
        for (int i = 0; i < 3; ++i) {
            const int u = face.vertices[i];
            const int v = face.vertices[(i + 1) % 3];
            ++sides[{std::min(u, v), std::max(u, v)}];
        }
    }
    for (const auto &[side, count] : sides) {
        const double length = QLineF(snapshot.vertices.at(side.first).point, snapshot.vertices.at(side.second).point)
                                  .length();
        result.longestSide = std::max(result.longestSide, length);
        if (count == 1) {
            ++result.boundarySides;
            result.boundaryLength += length;
        } else if (count > 2) {
            ++result.overusedSides;
        }
    }
    return result;
}
