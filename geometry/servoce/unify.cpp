#include "geometry/servoce/unify.h"

#include <BRep_Builder.hxx>
#include <QDebug>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace {

// Rebuilds the geometry from its STEP form, in memory, as unification always has: what
// it merges rests on that form. Where the round trip fails the shape goes on as it is:
// merging faces matters more.
TopoDS_Shape throughStep(const TopoDS_Shape &shape)
{
    try {
        return detail::through_step_text(shape);
    } catch (const Standard_Failure &failure) {
        qWarning().noquote() << "unify without the STEP round trip:" << detail::message_of(failure).c_str();
        return shape;
    }
}

TopoDS_Shape unifySolid(const TopoDS_Shape &shape)
{
    ShapeUpgrade_UnifySameDomain unifier(throughStep(detail::unwrap(shape)), true, true, false);
    unifier.Build();
    return unifier.Shape();
}

TopoDS_Shape unifyShape(const TopoDS_Shape &shape);

TopoDS_Shape unifyCompound(const TopoDS_Shape &compound)
{
    try {
        TopoDS_Compound unified;
        BRep_Builder builder;
        builder.MakeCompound(unified);
        for (TopoDS_Iterator child(compound); child.More(); child.Next())
            builder.Add(unified, unifyShape(child.Value()));
        return unifySolid(unified);
    } catch (...) {
        detail::report("Exception in _unify_compound");
        throw;
    }
}

TopoDS_Shape unifyShape(const TopoDS_Shape &shape)
{
    if (shape.IsNull())
        throw Standard_Failure("Cannot remove splitter from empty shape");
    // Nothing to merge; STEP would give nothing back to read.
    if (!TopExp_Explorer(shape, TopAbs_VERTEX).More())
        return shape;
    const TopoDS_Shape unwrapped = detail::unwrap(shape);
    if (unwrapped.ShapeType() != TopAbs_COMPOUND)
        return unifySolid(unwrapped);
    return unifyCompound(unwrapped);
}

} // namespace

shape unify(const shape &model)
{
    return guarded("unify", shape(), [&] { return shape(unifyShape(model.Shape())); });
}

} // namespace servoce
