#include "meshing/SliceData.h"

#include <QDebug>
#include <QElapsedTimer>
#include <algorithm>

#include "base/Tbb.h"
#include "materials/AbstractMaterial.h"

SliceData::SliceData(const SubdomainList &subdomains, const CDT &cdt, const QVector<quint32> &rotorScopes,
                     const QVector<quint32> &statorScopes)
    : m_mesh(cdt.snapshot())
    , m_rotorScopes(rotorScopes)
    , m_statorScopes(statorScopes)
{
    getMeshFaces(subdomains);
    for (quint32 scope : rotorScopes)
        m_rotorLists.append(regionsOf(scope));
    for (quint32 scope : statorScopes)
        m_statorLists.append(regionsOf(scope));
    m_rotorBase = 1;
    m_statorBase = m_rotorBase;
    for (const SubdomainList &list : qAsConst(m_rotorLists))
        m_statorBase += list.size();
}

void SliceData::getMeshFaces(const SubdomainList &subdomains)
{
    QElapsedTimer timer;
    timer.start();
    // Regions drawn later lie on top, as in the viewers: the highest id wins.
    SubdomainList sorted = subdomains;
    std::sort(sorted.begin(), sorted.end(),
              [](const QSharedPointer<Subdomain> &a, const QSharedPointer<Subdomain> &b) { return a->id() > b->id(); });
    for (const CDT::Face &face : qAsConst(m_mesh.faces)) {
        if (face.inDomain)
            m_meshFaces.append({nullptr, face.vertices, face.centroid});
    }
    qDebug() << "create list of meshFace at" << timer.elapsed() << "ms";

    MeshFace *faces = m_meshFaces.data();
    tbb::parallel_for(0, int(m_meshFaces.size()), [faces, &sorted](int index) {
        MeshFace &face = faces[index];
        const auto found = std::find_if(sorted.cbegin(), sorted.cend(),
                                        [&face](const QSharedPointer<Subdomain> &s) { return s->contains(face.point); });
        if (found != sorted.cend())
            face.subdomain = *found;
    });
    qDebug() << "init list of meshFaces at" << timer.elapsed() << "ms";
}

SubdomainList SliceData::regionsOf(quint32 scope) const
{
    SubdomainList list;
    for (const MeshFace &face : m_meshFaces) {
        if (face.subdomain && face.subdomain->scope() == scope && !list.contains(face.subdomain))
            list.append(face.subdomain);
    }
    // The same machine gives the same numbers, run after run.
    std::sort(list.begin(), list.end(),
              [](const QSharedPointer<Subdomain> &a, const QSharedPointer<Subdomain> &b) { return a->id() < b->id(); });
    return list;
}

SubdomainList SliceData::regions() const
{
    SubdomainList all;
    for (const SubdomainList &list : m_rotorLists)
        all += list;
    for (const SubdomainList &list : m_statorLists)
        all += list;
    return all;
}

QStringList SliceData::materialTypes() const
{
    QStringList keys;
    for (const QSharedPointer<Subdomain> &region : regions())
        keys.append(region->material() ? region->material()->key() : QString());
    return keys;
}

int SliceData::indexSubdomain(const Subdomain &subdomain) const
{
    const auto number = [&subdomain](const QVector<quint32> &scopes, const QVector<SubdomainList> &lists, int start,
                                     int &result) {
        for (int i = 0; i < scopes.size(); ++i) {
            if (scopes.at(i) == subdomain.scope()) {
                const SubdomainList &list = lists.at(i);
                const auto found = std::find_if(list.cbegin(), list.cend(), [&subdomain](const QSharedPointer<Subdomain> &s) {
                    return s.data() == &subdomain;
                });
                result = start + (found == list.cend() ? -1 : int(found - list.cbegin()));
                return true;
            }
            start += lists.at(i).size();
        }
        return false;
    };
    int result = 0;
    if (number(m_rotorScopes, m_rotorLists, m_rotorBase, result) || number(m_statorScopes, m_statorLists, m_statorBase, result))
        return result;
    qCritical() << "Error: incorrect piece scope" << subdomain.scope();
    return 0;
}
