#include "solver/Problem.h"

namespace solver {

QStringList problemErrors(const Problem &problem)
{
    QStringList errors;
    const auto nodeCount = static_cast<int>(problem.mesh.nodes.size());
    const auto isNode = [nodeCount](int node) { return node >= 0 && node < nodeCount; };
    for (std::size_t e = 0; e < problem.mesh.triangles.size(); ++e) {
        const Triangle &triangle = problem.mesh.triangles[e];
        if (!isNode(triangle.nodes[0]) || !isNode(triangle.nodes[1]) || !isNode(triangle.nodes[2])) {
            errors << QStringLiteral("Triangle %1 names a node out of range").arg(e);
            continue;
        }
        if (triangle.region < 0 || triangle.region >= static_cast<int>(problem.regions.size()))
            errors << QStringLiteral("Triangle %1 has no region %2").arg(e).arg(triangle.region);
        if (ElementShape(problem.mesh, triangle).area() <= 0.0)
            errors << QStringLiteral("Triangle %1 has no area").arg(e);
    }
    for (std::size_t r = 0; r < problem.regions.size(); ++r) {
        const Region &region = problem.regions[r];
        if (region.curve >= static_cast<int>(problem.curves.size()))
            errors << QStringLiteral("Region %1 has no curve %2").arg(r).arg(region.curve);
        if (!(region.relativePermeability > 0.0))
            errors << QStringLiteral("Region %1 has a relative permeability of %2").arg(r).arg(region.relativePermeability);
    }
    if (!problem.remanence.empty() && problem.remanence.size() != problem.mesh.triangles.size())
        errors << QStringLiteral("%1 remanence vectors for %2 triangles")
                      .arg(problem.remanence.size())
                      .arg(problem.mesh.triangles.size());
    for (const FixedPotential &fixed : problem.fixed) {
        if (!isNode(fixed.node))
            errors << QStringLiteral("Fixed node %1 is out of range").arg(fixed.node);
    }
    for (const NodePair &pair : problem.pairs) {
        if (!isNode(pair.slave) || !isNode(pair.master))
            errors << QStringLiteral("Seam pair %1, %2 is out of range").arg(pair.slave).arg(pair.master);
    }
    return errors;
}

} // namespace solver
