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
