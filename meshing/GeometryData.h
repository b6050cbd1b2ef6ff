#pragma once

#include <QList>

#include "meshing/Segment.h"
#include "meshing/Shape2D.h"
#include "meshing/Subdomain.h"

// The planar graph of a section and the regions found in it.
struct GeometryData
{
    double distanceTolerant = 0.0;
    QList<Node> nodes;
    // The live segments.
    SegmentList segments;
    SubdomainList subdomains;
    // Segments of no subdomain, and their ends that have fewer than two segments.
    SegmentList freeSegments;
    QList<PointF> openPoints;

    // The segments as lines between their nodes.
    Shape2DList lines() const;
};
