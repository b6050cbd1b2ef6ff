// Arched end turns. Each coil end leaves its slot and runs round in one circular arch to the
// slot of its other side: beyond the outer radius of the stator at the outside, inside the
// inner radius at the inside. The arch rises a quarter of its chord above the slot circle, but
// at least one coil width, so that it clears the coil ends it passes over. A coil round the
// yoke arches over the rim of the body from one face to the other.

// The middle of the arc from a1 to a2 the short way round; half a turn goes in the coil's sense.
function middleAngleOf(a1, a2, dir) {
    var d = Math.atan2(Math.sin(a2 - a1), Math.cos(a2 - a1));
    if (Math.abs(Math.abs(d) - Math.PI) < 1e-9)
        d = dir === Coil.CW ? -Math.PI : Math.PI;
    return a1 + d / 2;
}

// An arch through the point `rise` beyond the middle of the two slot centres, outwards for a
// positive rise.
function arch(end, rise) {
    var a = end.begin.center;
    var b = end.end.center;
    var ra = Math.sqrt(a.x * a.x + a.y * a.y);
    var rb = Math.sqrt(b.x * b.x + b.y * b.y);
    var m = middleAngleOf(Math.atan2(a.y, a.x), Math.atan2(b.y, b.x), end.dir);
    var r = (ra + rb) / 2 + rise;
    return Geom.arc(a, Geom.point3(r * Math.cos(m), r * Math.sin(m), (a.z + b.z) / 2), b);
}

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
    return { paths: paths };
}
