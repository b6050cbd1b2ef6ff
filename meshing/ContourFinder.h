#pragma once

#include "meshing/GeometryData.h"
#include "meshing/Subdomain.h"

class GeometryGenerator;

// Works out which regions lie inside which, so that a region with islands
// keeps only its own area and gets a path with holes.
class ContourFinder
{
public:
    // The subdomains of data, those with islands cut open.
    static SubdomainList find(const GeometryGenerator &generator, const GeometryData &data);
};
