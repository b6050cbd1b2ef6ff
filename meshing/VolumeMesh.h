#pragma once

#include <array>
#include <vector>

#include "geometry/servoce/geombase.h"

// A tetrahedral mesh of touching solids, numbered from 0. Every tetrahedron is
// right-handed: its fourth vertex lies on the side its first three turn
// counter-clockwise towards.
struct VolumeMesh
{
    struct Tetrahedron
    {
        std::array<int, 4> vertices;
        // The solid it fills, from 1.
        int domain = 0;
    };

    // A triangle of a face of the solids, between the domains on its two sides;
    // 0 on a side where no solid lies.
    struct Triangle
    {
        std::array<int, 3> vertices;
        // The face of the geometry, from 1.
        int face = 0;
        int domainInside = 0;
        int domainOutside = 0;
    };

    std::vector<servoce::point3> points;
    std::vector<Tetrahedron> tetrahedra;
    std::vector<Triangle> triangles;

    bool isEmpty() const { return tetrahedra.empty(); }
    // Positive for a right-handed tetrahedron.
    double signedVolume(const Tetrahedron &tetrahedron) const;
    double volume() const;
};
