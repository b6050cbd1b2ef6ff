#pragma once

#include <QSharedPointer>
#include <QStringList>
#include <QVector>
#include <array>

#include "meshing/CDT.h"
#include "meshing/Subdomain.h"

// A face of a mesh with the region its centroid falls in, null for none.
struct MeshFace
{
    QSharedPointer<Subdomain> subdomain;
    std::array<int, 3> vertices;
    PointF point;
};

// A mesh as the solver numbers it: vertices from 0 in the order of the
// triangulation, and regions from 1 over the rotor's bodies, then the stator's,
// body by body in the order of the given flags.
class SliceData
{
public:
    SliceData(const SubdomainList &subdomains, const CDT &cdt, const QVector<quint32> &rotorScopes,
              const QVector<quint32> &statorScopes);

    const CDT::Snapshot &mesh() const { return m_mesh; }
    const QVector<MeshFace> &meshFaces() const { return m_meshFaces; }
    // The regions that faces fall in, in the order of their numbers.
    SubdomainList regions() const;
    // The material key of each region, in the same order.
    QStringList materialTypes() const;
    // The number of a region, from 1; 0, with a critical log line, for a region of no body meshed here.
    int indexSubdomain(const Subdomain &subdomain) const;

private:
    void getMeshFaces(const SubdomainList &subdomains);
    SubdomainList regionsOf(quint32 scope) const;

    CDT::Snapshot m_mesh;
    QVector<MeshFace> m_meshFaces;
    QVector<quint32> m_rotorScopes;
    QVector<quint32> m_statorScopes;
    QVector<SubdomainList> m_rotorLists;
    QVector<SubdomainList> m_statorLists;
    int m_rotorBase = 1;
    int m_statorBase = 1;
};
