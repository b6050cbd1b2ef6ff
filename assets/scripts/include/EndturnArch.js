// What the shipped end-turn scripts share: circular arches from one slot centre to another.

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

// The end-turn objects of one side, "outer" or "inner", each with its path, as the winding
// measures them.
function endturnItems(endturns, paths, side) {
    var items = [];
    for (var i = 0; i < endturns.length; ++i) {
        var end = endturns[i][side];
        items.push({ dir: end.dir, begin: end.begin, end: end.end, path: paths[i][side + "Path"] });
    }
    return items;
}

// The least distance between two coil sides where the end turns of one side leave the slots.
function closestCoilSides(endturns, side) {
    var centres = [];
    for (var i = 0; i < endturns.length; ++i)
        centres.push(endturns[i][side].begin.center, endturns[i][side].end.center);
    var closest = Number.MAX_VALUE;
    for (var m = 0; m < centres.length; ++m) {
        for (var n = m + 1; n < centres.length; ++n) {
            var a = centres[m], b = centres[n];
            var d = Math.sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) + (a.z - b.z) * (a.z - b.z));
            // A coil round the yoke leaves and enters at one place.
            if (d > 1e-7)
                closest = Math.min(closest, d);
        }
    }
    return closest;
}

// Whether the end turns of one side interpenetrate. The program sweeps each as a round bundle
// as thick as the narrower side of the coil's section, measured where the section is widest;
// two bundles overlap where their centre lines come closer than that. Where the coil sides
// narrow, two that share a slot leave it closer together, touching: a bundle is no thicker
// than the room between two coil sides, and a hundredth of it is left for rounding.
function endturnsOverlap(endturns, paths, side, thickness) {
    var bundle = Math.min(thickness, closestCoilSides(endturns, side));
    var distance = motor.winding.distanceBetweenEndturns(endturnItems(endturns, paths, side));
    var overlap = endturns.length > 1 && distance < 0.99 * bundle;
    console.log(side + " end turns: closest " + distance.toFixed(3) + " mm apart, bundles "
                + bundle.toFixed(3) + " mm thick" + (overlap ? ", they overlap" : ""));
    return overlap;
}

// The answer of calcEndturnPaths: the paths and whether the bundles of a side overlap.
function endturnPathsResult(endturns, paths, width, height, least) {
    var thickness = width > 0 && height > 0 ? Math.min(width, height) : least;
    return {
        paths: paths,
        outerOverlap: endturnsOverlap(endturns, paths, "outer", thickness),
        innerOverlap: endturnsOverlap(endturns, paths, "inner", thickness)
    };
}
