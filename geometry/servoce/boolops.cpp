#include "geometry/servoce/boolops.h"

#include <BRepAlgoAPI_Common.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepAlgoAPI_BuilderAlgo.hxx>
#include <BRepAlgoAPI_Section.hxx>
#include <BOPTools_AlgoTools.hxx>
#include <IntTools_Context.hxx>
#include <Message_Report.hxx>
#include <QDebug>
#include <TopTools_ListOfShape.hxx>
#include <mutex>
#include <sstream>

#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

namespace {

std::recursive_mutex sectionMutex;

constexpr const char *unionFailed = "warn: union algorithm failed";
constexpr const char *differenceFailed = "warn: difference algorithm failed";
constexpr const char *intersectFailed = "warn: intersect algorithm failed";
constexpr const char *fragmentsFailed = "warn: fragments algorithm failed";
constexpr const char *sectionFailed = "warn: section algorithm failed";

void reportFailure(const char *text, const BRepAlgoAPI_Algo &algorithm)
{
    detail::report(text);
    std::ostringstream alerts;
    algorithm.GetReport()->Dump(alerts);
    if (!alerts.str().empty())
        qWarning().noquote() << QString::fromStdString(alerts.str()).trimmed();
}

void simplifyResult(BRepAlgoAPI_BuilderAlgo &algorithm)
{
    try {
        algorithm.SimplifyResult(true, true, 1e-9);
    } catch (...) {
        // Unifying is a nicety: the result stands unsimplified.
    }
}

// Shapes are shared between threads (the copies of a body, a sector tested against every
// piece), and the kernel by default raises tolerances inside its arguments: it must work on
// copies of what it would change.
void buildLeavingArguments(BRepAlgoAPI_BuilderAlgo &algorithm)
{
    algorithm.SetNonDestructive(true);
    algorithm.Build();
}

template <class Algorithm>
TopoDS_Shape binary(const TopoDS_Shape &a, const TopoDS_Shape &b, bool simplify, const char *failureText)
{
    TopTools_ListOfShape arguments;
    arguments.Append(a);
    TopTools_ListOfShape tools;
    tools.Append(b);
    Algorithm algorithm;
    algorithm.SetArguments(arguments);
    algorithm.SetTools(tools);
    buildLeavingArguments(algorithm);
    if (!algorithm.IsDone()) {
        reportFailure(failureText, algorithm);
        return TopoDS_Shape();
    }
    if (simplify)
        simplifyResult(algorithm);
    return detail::unwrap(algorithm.Shape());
}

template <class Algorithm>
shape inTurn(const std::vector<shape> &shapes, bool simplify, const char *failureText)
{
    if (shapes.empty())
        return shape();
    TopoDS_Shape result = shapes.front().Shape();
    for (size_t i = 1; i < shapes.size(); ++i)
        result = binary<Algorithm>(result, shapes[i].Shape(), simplify, failureText);
    return shape(result);
}

} // namespace

namespace detail {

TopoDS_Shape difference(const TopoDS_Shape &a, const TopoDS_Shape &b, bool simplify)
{
    return binary<BRepAlgoAPI_Cut>(a, b, simplify, differenceFailed);
}

} // namespace detail

shape make_union(const shape &a, const shape &b, bool simplify)
{
    return guarded("make_union", shape(), [&] {
        return shape(binary<BRepAlgoAPI_Fuse>(a.Shape(), b.Shape(), simplify, unionFailed));
    });
}

shape make_difference(const shape &a, const shape &b, bool simplify)
{
    return guarded("make_difference", shape(), [&] { return shape(detail::difference(a.Shape(), b.Shape(), simplify)); });
}

shape make_difference(const std::vector<shape> &shapes, bool simplify)
{
    return guarded("make_difference", shape(), [&] {
        return inTurn<BRepAlgoAPI_Cut>(shapes, simplify, differenceFailed);
    });
}

shape make_intersect(const shape &a, const shape &b, bool simplify)
{
    return guarded("make_intersect", shape(), [&] {
        return shape(binary<BRepAlgoAPI_Common>(a.Shape(), b.Shape(), simplify, intersectFailed));
    });
}

shape make_intersect(const std::vector<shape> &shapes, bool simplify)
{
    return guarded("make_intersect", shape(), [&] {
        return inTurn<BRepAlgoAPI_Common>(shapes, simplify, intersectFailed);
    });
}

shape make_section(const shape &a, const shape &b, bool pretty)
{
    return guarded("make_section", shape(), [&] {
        const std::lock_guard<std::recursive_mutex> lock(sectionMutex);
        BRepAlgoAPI_Section section(a.Shape(), b.Shape(), false);
        section.Approximation(pretty);
        section.Build();
        if (!section.IsDone()) {
            reportFailure(sectionFailed, section);
            return shape();
        }
        return shape(section.Shape());
    });
}

shape general_fuse(const std::vector<shape> &shapes, bool simplify)
{
    return guarded("general_fuse", shape(), [&] {
        if (shapes.size() < 2)
            return shapes.empty() ? shape() : shapes.front();
        TopTools_ListOfShape arguments;
        arguments.Append(shapes.front().Shape());
        TopTools_ListOfShape tools;
        for (size_t i = 1; i < shapes.size(); ++i)
            tools.Append(shapes[i].Shape());
        BRepAlgoAPI_Fuse fuse;
        fuse.SetArguments(arguments);
        fuse.SetTools(tools);
        buildLeavingArguments(fuse);
        if (!fuse.IsDone()) {
            reportFailure(unionFailed, fuse);
            return shape();
        }
        if (simplify)
            simplifyResult(fuse);
        return shape(fuse.Shape());
    });
}

shape make_fragments(const std::vector<shape> &shapes)
{
    return guarded("make_fragments", shape(), [&] {
        TopTools_ListOfShape arguments;
        for (const shape &part : shapes) {
            if (!part.is_null())
                arguments.Append(part.Shape());
        }
        // The kernel asks for two at least; one alone is split already.
        if (arguments.Size() < 2)
            return arguments.IsEmpty() ? shape() : shape(arguments.First());
        BRepAlgoAPI_BuilderAlgo builder;
        builder.SetArguments(arguments);
        buildLeavingArguments(builder);
        if (builder.HasErrors()) {
            reportFailure(fragmentsFailed, builder);
            return shape();
        }
        return shape(builder.Shape());
    });
}

shape makeUnion(const QList<shape> &shapes, bool simplify)
{
    return unwrap(general_fuse(std::vector<shape>(shapes.begin(), shapes.end()), simplify));
}

shape unwrap(const shape &wrapped)
{
    return guarded("unwrap", shape(), [&] { return shape(detail::unwrap(wrapped.Shape())); });
}

bool holds_point(const shape &solid, const point3 &point, double tolerance)
{
    return guarded("holds_point", false, [&] {
        if (solid.is_null() || solid.Shape().ShapeType() != TopAbs_SOLID)
            return false;
        const Handle(IntTools_Context) context = new IntTools_Context();
        const TopAbs_State state = BOPTools_AlgoTools::ComputeState(
            gp_Pnt(point.x, point.y, point.z), TopoDS::Solid(solid.Shape()), tolerance, context);
        return state == TopAbs_IN || state == TopAbs_ON;
    });
}

} // namespace servoce
