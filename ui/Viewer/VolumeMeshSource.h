#pragma once

#include <MeshVS_DataSource.hxx>
#include <TColStd_PackedMapOfInteger.hxx>
#include <memory>
#include <vector>

#include "meshing/VolumeMesh.h"

// Triangles of a volume mesh as Open CASCADE's mesh presentation reads them:
// nodes and elements numbered from 1.
class VolumeMeshSource : public MeshVS_DataSource
{
public:
    // The triangles chosen by their indices in the mesh.
    VolumeMeshSource(std::shared_ptr<const VolumeMesh> mesh, std::vector<int> triangles);

    Standard_Boolean GetGeom(const Standard_Integer id, const Standard_Boolean isElement, TColStd_Array1OfReal &coords,
                             Standard_Integer &nodeCount, MeshVS_EntityType &type) const override;
    Standard_Boolean GetGeomType(const Standard_Integer id, const Standard_Boolean isElement,
                                 MeshVS_EntityType &type) const override;
    Standard_Address GetAddr(const Standard_Integer id, const Standard_Boolean isElement) const override;
    Standard_Boolean GetNodesByElement(const Standard_Integer id, TColStd_Array1OfInteger &nodes,
                                       Standard_Integer &nodeCount) const override;
    const TColStd_PackedMapOfInteger &GetAllNodes() const override { return m_nodes; }
    const TColStd_PackedMapOfInteger &GetAllElements() const override { return m_elements; }

    DEFINE_STANDARD_RTTI_INLINE(VolumeMeshSource, MeshVS_DataSource)

private:
    std::shared_ptr<const VolumeMesh> m_mesh;
    std::vector<int> m_triangles;
    TColStd_PackedMapOfInteger m_nodes;
    TColStd_PackedMapOfInteger m_elements;
};
