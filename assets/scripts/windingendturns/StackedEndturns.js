// Stacked end turns, for a machine of little radial room. Each coil end keeps close to the
// stator: it runs round on a low arch only one coil width beyond the slot circle, whatever
// its span, and the end turns that start from the second layer lie one coil width further
// out (or in) than those of the first, so that coils whose ends cross lie on two levels.
// A coil round the yoke takes the shortest way over the rim.

function middleAngleOf(a1, a2, dir) {
    var d = Math.atan2(Math.sin(a2 - a1), Math.cos(a2 - a1));
    if (Math.abs(Math.abs(d) - Math.PI) < 1e-9)
        d = dir === Coil.CW ? -Math.PI : Math.PI;
    return a1 + d / 2;
}

// An arch through the point `rise` beyond the slot circle at the middle angle.
function lowArch(end, rise) {
    var a = end.begin.center;
    var b = end.end.center;
    var ra = Math.sqrt(a.x * a.x + a.y * a.y);
    var rb = Math.sqrt(b.x * b.x + b.y * b.y);
    var m = middleAngleOf(Math.atan2(a.y, a.x), Math.atan2(b.y, b.x), end.dir);
    var r = (ra + rb) / 2 + rise;
    return Geom.arc(a, Geom.point3(r * Math.cos(m), r * Math.sin(m), (a.z + b.z) / 2), b);
}

function calcEndturnPaths(width, height, innerRadius, outerRadius, endturns, autoOverhang, generate) {
    // Without a measured coil a twentieth of the active length stands in for its width.
    var w = width > 0 ? width : 0.05 * (outerRadius - innerRadius);
    var paths = [];
    for (var i = 0; i < endturns.length; ++i) {
        var e = endturns[i];
        paths.push({
            outerPath: lowArch(e.outer, e.outer.begin.layer * w),
            innerPath: lowArch(e.inner, -Math.min(e.inner.begin.layer * w, innerRadius / 2))
        });
    }
    return { paths: paths };
}
