#pragma once

#include <QDir>
#include <QLineF>
#include <QPainter>
#include <QSvgGenerator>
#include <QTransform>
#include <QPointF>
#include <QPolygonF>
#include <QColor>
#include <QVector>
#include <cmath>
#include <initializer_list>
#include <map>
#include <utility>

#include <gtest/gtest.h>

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

// What a failing check marks in its picture, in the mesh's coordinates.
struct MeshMarks
{
    // The fill of faces of the domain, by their index in the snapshot; grey for a face without one.
    std::map<int, QColor> faceColours;
    QVector<QLineF> edges;
    QVector<QPointF> points;
};

// Draws a triangulation for a failing test: triangles of the domain grey or
// in their colour, others white, constraints blue, sides with more than two
// triangles, faces that are not counter-clockwise and the marks red. Written
// beside the test program.
inline QString writeSvg(const CDT &cdt, const QString &name, const MeshMarks &marks = {})
{
    const CDT::Snapshot snapshot = cdt.snapshot();
    QRectF bounds;
    for (const CDT::Vertex &vertex : snapshot.vertices)
        bounds |= QRectF(vertex.point, QSizeF(1e-9, 1e-9));
    const double scale = 800.0 / std::max({bounds.width(), bounds.height(), 1e-9});
    const QString path = QDir::current().absoluteFilePath(name + QStringLiteral(".svg"));
    QSvgGenerator svg;
    svg.setFileName(path);
    const QSize size(int(bounds.width() * scale) + 20, int(bounds.height() * scale) + 20);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    QPainter painter(&svg);
    // Points are mapped, not the painter, so that lines keep their width; the
    // section's ordinate points up.
    const QTransform toPicture = QTransform::fromTranslate(-bounds.left(), -bounds.top())
                                 * QTransform::fromScale(scale, -scale)
                                 * QTransform::fromTranslate(10, 10 + bounds.height() * scale);
    const auto at = [&](int index) { return toPicture.map(QPointF(snapshot.vertices.at(index).point)); };
    std::map<std::pair<int, int>, int> sides;
    for (int f = 0; f < snapshot.faces.size(); ++f) {
        const CDT::Face &face = snapshot.faces.at(f);
        const QPolygonF triangle({at(face.vertices[0]), at(face.vertices[1]), at(face.vertices[2])});
        // The picture's y runs down, so a counter-clockwise face turns clockwise in it.
        const bool turned = signedArea(triangle[0], triangle[1], triangle[2]) >= 0.0;
        const auto colour = marks.faceColours.find(f);
        const QColor inDomain = colour != marks.faceColours.end() ? colour->second : QColor(Qt::lightGray);
        painter.setPen(QPen(Qt::darkGray, 0.5));
        painter.setBrush(turned ? QColor(Qt::red) : face.inDomain ? inDomain : QColor(Qt::white));
        painter.drawPolygon(triangle);
        for (int i = 0; i < 3; ++i) {
            const int u = face.vertices[i];
            const int v = face.vertices[(i + 1) % 3];
            ++sides[{std::min(u, v), std::max(u, v)}];
        }
    }
    painter.setPen(QPen(Qt::blue, 1.0));
    for (const CDT::Edge &edge : snapshot.constraints)
        painter.drawLine(at(edge.vertex0), at(edge.vertex1));
    painter.setPen(QPen(Qt::red, 3.0));
    for (const auto &[side, count] : sides) {
        if (count > 2)
            painter.drawLine(at(side.first), at(side.second));
    }
    for (const QLineF &edge : marks.edges)
        painter.drawLine(toPicture.map(edge.p1()), toPicture.map(edge.p2()));
    painter.setBrush(Qt::NoBrush);
    for (const QPointF &point : marks.points)
        painter.drawEllipse(toPicture.map(point), 5.0, 5.0);
    return path;
}

// A mesh without turned faces and without sides of three or more triangles;
// a failure leaves its picture.
inline ::testing::AssertionResult isPlanarMesh(const CDT &cdt, const QString &name)
{
    const MeshMeasures mesh = measure(cdt, false);
    if (mesh.smallestArea > 0.0 && mesh.overusedSides == 0)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "smallest area " << mesh.smallestArea << ", " << mesh.overusedSides
                                         << " sides of more than two triangles, drawn in "
                                         << writeSvg(cdt, name).toStdString();
}
