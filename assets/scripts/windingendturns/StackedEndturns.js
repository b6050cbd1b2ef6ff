// Stacked end turns, for a machine of little radial room. Each coil end keeps close to the
// stator: it runs round on a low arch only one coil width beyond the slot circle, whatever
// its span, and the end turns that start from the second layer lie one coil width further
// out (or in) than those of the first. That parts crossing end turns that start from
// different layers; crossing end turns of one level, as a distributed double-layer winding
// has them next to each other, still overlap, and the script tells of it.
// A coil round the yoke takes the shortest way over the rim.

include("../include/EndturnArch.js");

function calcEndturnPaths(width, height, innerRadius, outerRadius, endturns, autoOverhang, generate) {
    // Without a measured coil a twentieth of the active length stands in for its width.
    var w = width > 0 ? width : 0.05 * (outerRadius - innerRadius);
    var paths = [];
    for (var i = 0; i < endturns.length; ++i) {
        var e = endturns[i];
        paths.push({
            outerPath: arch(e.outer, e.outer.begin.layer * w),
            innerPath: arch(e.inner, -Math.min(e.inner.begin.layer * w, innerRadius / 2))
        });
    }
    return endturnPathsResult(endturns, paths, width, height, w);
}
