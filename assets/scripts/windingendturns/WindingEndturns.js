// Arched end turns. Each coil end leaves its slot and runs round in one circular arch to the
// slot of its other side: beyond the outer radius of the stator at the outside, inside the
// inner radius at the inside. The arch rises a quarter of its chord above the slot circle, but
// at least one coil width, so that it clears the coil ends it passes over. A coil round the
// yoke arches over the rim of the body from one face to the other. Whether the arches of a side
// do clear each other is measured, and told as an overlap where they don't: the arches of
// neighbouring coils whose spans overlap, as in a distributed winding, cross. The stacked end
// turns of StackedEndturns.js part those, for more room beside the stator.

include("../include/EndturnArch.js");

function riseOf(end, least) {
    var a = end.begin.center;
    var b = end.end.center;
    var chord = Math.sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) + (a.z - b.z) * (a.z - b.z));
    return Math.max(least, chord / 4);
}

function calcEndturnPaths(width, height, innerRadius, outerRadius, endturns, autoOverhang, generate) {
    // Without a measured coil a twentieth of the active length stands in for its width.
    var least = width > 0 ? width : 0.05 * (outerRadius - innerRadius);
    var paths = [];
    for (var i = 0; i < endturns.length; ++i) {
        var e = endturns[i];
        // Inside, the arch may take at most half of the room that the inner radius leaves.
        var inward = Math.min(riseOf(e.inner, least), innerRadius / 2);
        paths.push({ outerPath: arch(e.outer, riseOf(e.outer, least)), innerPath: arch(e.inner, -inward) });
    }
    return endturnPathsResult(endturns, paths, width, height, least);
}
