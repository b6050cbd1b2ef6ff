#pragma once

#include <QTransform>
#include <QVector>
#include <QtGlobal>
#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "meshing/Shape2D.h"

// The constrained Delaunay triangulation of every two-dimensional mesh, in
// the mm of a flat section. Points are inserted with a tolerance, so that
// meshes built apart can be moved and merged into one. A value: copies are
// deep. The kernel stays in the .cpp file.
class CDT
{
public:
    enum VertexType : qint32 {
        VertexFree = 0,
        // End of a constraint on an inner row of an air-gap layer stack.
        VertexAirgapRow = 1,
        // Of the mesh proper: boundaries, rows, refinement.
        VertexBase = 2,
    };

    struct Vertex
    {
        PointF point;
        VertexType type;
    };

    // Corners counter-clockwise, as indexes into the vertices of the same snapshot.
    struct Face
    {
        std::array<int, 3> vertices;
        bool inDomain;
        PointF centroid;
    };

    struct Edge
    {
        int vertex0;
        int vertex1;
    };

    // The finite part of a triangulation, read out in one go.
    struct Snapshot
    {
        QVector<Vertex> vertices;
        QVector<Face> faces;
        QVector<Edge> constraints;
    };

    CDT();
    CDT(const CDT &other);
    // A moved-from triangulation may only be assigned to or destroyed.
    CDT(CDT &&other) noexcept;
    CDT &operator=(const CDT &other);
    CDT &operator=(CDT &&other) noexcept;
    ~CDT();

    int dimension() const;
    int numberOfVertices() const;
    int numberOfFaces() const;
    int numberOfConstraints() const;
    Snapshot snapshot() const;

    // The vertex within 1e-7 of the point, else a new one; nothing when the
    // point is not finite or when the kernel locates it on a vertex farther away.
    std::optional<PointF> insert(const PointF &point);
    void setVertexType(const PointF &point, VertexType type);
    // False when an end could not be inserted or both ends are one vertex.
    // Crossing constraints split each other.
    bool insert_constraint(const PointF &p1, const PointF &p2);
    bool insert_base_constraint(const PointF &p1, const PointF &p2, VertexType type);
    // Takes over all vertices, with their types, and all constraints of other.
    void merge(const CDT &other);

    // Moves every vertex in place; a move of 0.01 mm or less is not applied.
    // The transform must keep the orientation of the faces.
    void map(const QTransform &transform);
    void translate(double dx);
    CDT translated(double dx) const;
    // Mirrored copies, rebuilt so that their faces are counter-clockwise again.
    CDT reflectedOrdinate(double y0) const;
    CDT reflectedAbscissa(double x0) const;

    // Removes the constraints whose two ends pass the test; their vertices stay.
    void removeConstraintsIf(const std::function<bool(const PointF &, const PointF &)> &test);
    // Gives both ends of the constraints that pass the test the type.
    void markConstraintEndsIf(const std::function<bool(const PointF &, const PointF &)> &test, VertexType type);
    // Removes the vertices that pass the test, except those with a constraint.
    void removeVerticesIf(const std::function<bool(const PointF &)> &test);

    // Refines by the mesher until done or until stepLimit steps; all faces
    // within the outer constraints are the domain. The number of steps made.
    // Raises std::runtime_error, having changed nothing, when a triangle is
    // flat by rounding, which the mesher cannot refine.
    int refine(double aspectBound, double sizeBound, int stepLimit);
    // Marks the faces within the outer constraints as the domain, without refining;
    // the faces that a seed reaches without crossing a constraint are not.
    void markDomain(const QVector<PointF> &seeds = {});
    // Turns the faces of the domain whose centroid lies strictly between the two
    // ordinates towards a lattice: taken by abscissa, every second face flips its
    // first free side that strays 30 degrees or more from the diagonal, which
    // rises by slope degrees and falls by it in turn. Sides along the axes stay.
    void alignBand(double y0, double y1, double slope);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
