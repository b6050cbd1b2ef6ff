#include "ui/Viewer/VolumeMeshSource.h"

#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>

VolumeMeshSource::VolumeMeshSource(std::shared_ptr<const VolumeMesh> mesh, std::vector<int> triangles)
    : m_mesh(std::move(mesh))
    , m_triangles(std::move(triangles))
{
    for (std::size_t i = 0; i < m_triangles.size(); ++i) {
        m_elements.Add(int(i) + 1);
        for (int vertex : m_mesh->triangles[m_triangles[i]].vertices)
            m_nodes.Add(vertex + 1);
    }
}

Standard_Boolean VolumeMeshSource::GetGeom(const Standard_Integer id, const Standard_Boolean isElement,
                                           TColStd_Array1OfReal &coords, Standard_Integer &nodeCount,
                                           MeshVS_EntityType &type) const
{
    const auto put = [&coords](int slot, const servoce::point3 &point) {
        coords(coords.Lower() + 3 * slot) = point.x;
        coords(coords.Lower() + 3 * slot + 1) = point.y;
        coords(coords.Lower() + 3 * slot + 2) = point.z;
    };
    if (isElement) {
        if (id < 1 || id > int(m_triangles.size()) || coords.Length() < 9)
            return Standard_False;
        const VolumeMesh::Triangle &triangle = m_mesh->triangles[m_triangles[id - 1]];
        for (int corner = 0; corner < 3; ++corner)
            put(corner, m_mesh->points[triangle.vertices[corner]]);
        nodeCount = 3;
        type = MeshVS_ET_Face;
        return Standard_True;
    }
    if (id < 1 || id > int(m_mesh->points.size()) || coords.Length() < 3)
        return Standard_False;
    put(0, m_mesh->points[id - 1]);
    nodeCount = 1;
    type = MeshVS_ET_Node;
    return Standard_True;
}

Standard_Boolean VolumeMeshSource::GetGeomType(const Standard_Integer id, const Standard_Boolean isElement,
                                               MeshVS_EntityType &type) const
{
    if (isElement) {
        if (id < 1 || id > int(m_triangles.size()))
            return Standard_False;
        type = MeshVS_ET_Face;
        return Standard_True;
    }
    if (id < 1 || id > int(m_mesh->points.size()))
        return Standard_False;
    type = MeshVS_ET_Node;
    return Standard_True;
}

Standard_Address VolumeMeshSource::GetAddr(const Standard_Integer, const Standard_Boolean) const
{
    return nullptr;
}

Standard_Boolean VolumeMeshSource::GetNodesByElement(const Standard_Integer id, TColStd_Array1OfInteger &nodes,
                                                     Standard_Integer &nodeCount) const
{
    if (id < 1 || id > int(m_triangles.size()) || nodes.Length() < 3)
        return Standard_False;
    const VolumeMesh::Triangle &triangle = m_mesh->triangles[m_triangles[id - 1]];
    for (int corner = 0; corner < 3; ++corner)
        nodes(nodes.Lower() + corner) = triangle.vertices[corner] + 1;
    nodeCount = 3;
    return Standard_True;
}
