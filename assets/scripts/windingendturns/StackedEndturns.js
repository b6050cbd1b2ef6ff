// Stacked end turns, for windings whose coils cross, as distributed windings have them. On each
// side of the stator the end turns are put on levels: two end turns whose arcs round the axis
// overlap never share a level, and tooth coils, whose end turns don't cross, all keep the first.
// The levels step towards the back of the stator, away from the gap of the face the coils lie at
// (each coil side's `towardsBack` tells which way), one coil height each, and where the layers lie
// one above the other also outwards (inwards inside), one coil width each: a staircase, every
// level clear of its neighbours by a coil and a twentieth.
// An end turn leaves its slot radially and leans a little towards its run. From the layer next
// to the back it first bends back to its level and then goes out to it; from the layer nearer
// the gap it first goes out, beyond the levels it passes, and then slopes back to its level
// along its run, within about half a slot pitch. The two end turns that meet at a slot thus part:
// the one in the slot's plane, the other beside it.
// A path is a wire of its straight and round pieces, so that the filaments the program samples
// from it follow every corner.
// Inside, where the levels would take more than half of the inner radius, their steps shrink,
// but to no less than a coil's thickness; whether the end turns clear each other is measured and
// told, as for any end-turn script.
// A coil round the yoke takes the shortest way over the rim.

include("../include/EndturnArch.js");

var eps = 1e-9;

function angleOf(p) {
    return Math.atan2(p.y, p.x);
}

function radiusOf(p) {
    return Math.sqrt(p.x * p.x + p.y * p.y);
}

// The angle an end turn sweeps round the axis, from its begin to its end: signed, the short way.
function sweepOf(end) {
    var a = angleOf(end.begin.center);
    return 2 * (middleAngleOf(a, angleOf(end.end.center), end.dir) - a);
}

function turnNormalised(a) {
    var t = a % (2 * Math.PI);
    return t < 0 ? t + 2 * Math.PI : t;
}

// The arc of the circle an end turn covers, from its smaller angle.
function extentOf(end) {
    var sweep = sweepOf(end);
    var a = angleOf(end.begin.center);
    return sweep >= 0 ? { from: turnNormalised(a), length: sweep } : { from: turnNormalised(a + sweep), length: -sweep };
}

// Arcs that overlap by more than a hair. Two end turns that only meet at a shared slot leave it
// from different layers, and part there (see legCorners).
function extentsOverlap(p, q) {
    var hair = 1e-7;
    var d = turnNormalised(q.from - p.from + hair) - hair;
    return d < p.length - hair || d + q.length > 2 * Math.PI + hair;
}

// Whether no two end turns on one level overlap.
function levelsPart(extents, levels) {
    for (var i = 0; i < extents.length; ++i) {
        for (var j = i + 1; j < extents.length; ++j) {
            if (levels[i] === levels[j] && extentsOverlap(extents[i], extents[j]))
                return false;
        }
    }
    return true;
}

// Levels round the circle: taking the end turns in the order of their arcs, the levels repeat
// with the fewest that part the overlapping ones, as in a regular winding; else each end turn
// takes the lowest level that none of those it overlaps already holds, where that needs fewer.
// A coil round the yoke covers no arc and needs no level.
function levelsOf(ends) {
    var extents = ends.map(extentOf);
    var order = [];
    ends.forEach(function (e, i) {
        if (extents[i].length >= eps)
            order.push(i);
    });
    order.sort(function (i, j) { return extents[i].from - extents[j].from; });
    var greedy = ends.map(function () { return 0; });
    order.forEach(function (i, k) {
        var taken = [];
        order.slice(0, k).forEach(function (j) {
            if (extentsOverlap(extents[i], extents[j]))
                taken[greedy[j]] = true;
        });
        while (taken[greedy[i]])
            ++greedy[i];
    });
    var most = Math.max.apply(null, greedy.concat([0]));
    for (var count = 1; count <= most; ++count) {
        var cyclic = ends.map(function () { return 0; });
        order.forEach(function (i, k) { cyclic[i] = k % count; });
        if (levelsPart(extents, cyclic))
            return cyclic;
    }
    return greedy;
}

// --- Paths drawn in developed coordinates: r from the axis, u the length along the run round
// the axis, z along it. Corners are rounded there, and the points mapped back to the machine.

function vec(r, u, z) {
    return { r: r, u: u, z: z };
}

function sub(a, b) {
    return vec(a.r - b.r, a.u - b.u, a.z - b.z);
}

function addScaled(a, v, s) {
    return vec(a.r + v.r * s, a.u + v.u * s, a.z + v.z * s);
}

function lengthOf(v) {
    return Math.sqrt(v.r * v.r + v.u * v.u + v.z * v.z);
}

// Corners without those that coincide with the one before or lie on a straight line.
function cleaned(corners) {
    var result = [];
    corners.forEach(function (p) {
        if (result.length > 0 && lengthOf(sub(p, result[result.length - 1])) < 1e-6)
            return;
        if (result.length > 1) {
            var a = result[result.length - 2], b = result[result.length - 1];
            var v1 = sub(b, a), v2 = sub(p, b);
            var cross = vec(v1.u * v2.z - v1.z * v2.u, v1.z * v2.r - v1.r * v2.z, v1.r * v2.u - v1.u * v2.r);
            if (lengthOf(cross) < 1e-9 * lengthOf(v1) * lengthOf(v2)) {
                result[result.length - 1] = p;
                return;
            }
        }
        result.push(p);
    });
    return result;
}

// A polyline whose corners are rounded with the radius bend, or less where a segment is too
// short: each inner segment gives half of its length to each of its corners. It comes as its
// pieces, straight and round in turn, each a list of points that begins where the one before
// ends: the program samples the path piece by piece, so that a corner is never cut short. A piece
// shorter than `least` goes on into the next, as the program refuses very short filaments, but
// into a straight one only as far as it lacks: a curve through a corner's close points and a long
// run's sparse ones would wave where they meet.
function roundedPieces(corners, bend, step, least) {
    var pieces = [[corners[0]]];
    var from = corners[0];
    var wanting = false;
    function current() {
        return pieces[pieces.length - 1];
    }
    function lengthAlong(points) {
        var sum = 0;
        for (var k = 1; k < points.length; ++k)
            sum += lengthOf(sub(points[k], points[k - 1]));
        return sum;
    }
    function straightTo(p) {
        var v = sub(p, from);
        if (lengthOf(v) < 1e-6)
            return;
        var n = Math.ceil(lengthOf(v) / step);
        for (var s = 1; s <= n; ++s) {
            var q = addScaled(from, v, s / n);
            current().push(q);
            if (wanting && s >= 2 && s < n && lengthAlong(current()) >= least) {
                pieces.push([q]);
                wanting = false;
            }
        }
        from = p;
    }
    function nextPiece() {
        wanting = lengthAlong(current()) < least;
        if (!wanting)
            pieces.push([from]);
    }
    for (var i = 1; i + 1 < corners.length; ++i) {
        var p = corners[i];
        var back = sub(corners[i - 1], p), ahead = sub(corners[i + 1], p);
        var lb = lengthOf(back), la = lengthOf(ahead);
        var e1 = addScaled(vec(0, 0, 0), back, 1 / lb), e2 = addScaled(vec(0, 0, 0), ahead, 1 / la);
        var cosine = Math.max(-1, Math.min(1, e1.r * e2.r + e1.u * e2.u + e1.z * e2.z));
        var half = Math.acos(cosine) / 2;
        var room = Math.min(i === 1 ? lb : lb / 2, i + 2 === corners.length ? la : la / 2);
        var radius = Math.min(bend, room * Math.tan(half));
        var tangent = radius / Math.tan(half);
        var t1 = addScaled(p, e1, tangent), t2 = addScaled(p, e2, tangent);
        straightTo(t1);
        nextPiece();
        var bisector = addScaled(e1, e2, 1);
        var centre = addScaled(p, bisector, radius / Math.sin(half) / lengthOf(bisector));
        var v1 = sub(t1, centre), v2 = sub(t2, centre);
        var omega = Math.PI - 2 * half;
        var n = Math.max(3, Math.ceil(omega / (Math.PI / 12)));
        for (var s = 1; s <= n; ++s) {
            var w1 = Math.sin((1 - s / n) * omega) / Math.sin(omega), w2 = Math.sin(s / n * omega) / Math.sin(omega);
            current().push(addScaled(addScaled(centre, v1, w1), v2, w2));
        }
        from = t2;
        nextPiece();
    }
    straightTo(corners[corners.length - 1]);
    if (pieces.length > 1 && lengthAlong(current()) < least)
        pieces[pieces.length - 2] = pieces[pieces.length - 2].concat(pieces.pop().slice(1));
    return pieces;
}

// Neighbouring levels keep a twentieth of a coil between them.
var spacing = 1.05;

// The staircase of one side, `sign` 1 outside and -1 inside: where the levels run, and how an
// end turn gets to its own.
function staircaseOf(ends, sign, width, height, roomInside) {
    // Levels step towards the back of the stator, away from the air gap of the face: the same
    // sense for all coil sides of a face.
    var towardsBack = ends[0].begin.towardsBack;
    var radii = [], depths = [], slots = 1;
    ends.forEach(function (e) {
        [e.begin, e.end].forEach(function (side) {
            radii.push(radiusOf(side.center));
            depths.push(side.center.z * towardsBack);
            slots = Math.max(slots, side.slot);
        });
    });
    var levels = levelsOf(ends);
    var count = Math.max.apply(null, levels) + 1;
    var thickness = Math.min(width, height);
    var bend = thickness / 2;
    var deepest = Math.max.apply(null, depths);
    // Where all coil sides lie next to the back, the levels are parted by height alone. A side
    // nearer the gap slopes to its level along the run, through the heights of those below: for
    // it each level also runs a coil width further out, inside closer if room is short.
    var across = 0;
    if (depths.some(function (d) { return d < deepest - 1e-6; })) {
        across = spacing * width;
        if (sign < 0 && bend + count * across > roomInside)
            across = Math.max(spacing * thickness, (roomInside - bend) / count);
    }
    var first = bend + (across > 0 ? across : spacing * width);
    var back = deepest * towardsBack;
    var slotRadius = sign > 0 ? Math.max.apply(null, radii) : Math.min.apply(null, radii);
    return {
        levels: levels,
        sign: sign,
        bend: bend,
        // Corners are rounded with a coil's thickness: a round bundle that thick, swept round a
        // tighter corner, would fold into itself on the inside.
        rounding: thickness,
        pitch: 2 * Math.PI / slots,
        slotRadius: slotRadius,
        // The height of the coil sides next to the back.
        back: back,
        runRadius: function (level) { return slotRadius + sign * (first + level * across); },
        runHeight: function (level) { return back + towardsBack * level * spacing * height; }
    };
}

// From a coil side at (r, z), at u, to the run at radius R and height Z, which goes on along u in
// the sense `ahead`. A side next to the back first bends back to its level and then goes out; a
// side nearer the gap first goes out and then slopes back to its level along the run. Going
// out, a leg leans towards its run, `lean` mm aside where it reaches it, so that it bends less
// and parts from the leg that leaves the next coil side the other way.
function legCorners(stairs, r, z, R, Z, u, ahead, lean) {
    var reach = Math.abs(R - r);
    function at(radius, height, aside, along) {
        return vec(radius, u + ahead * (aside * Math.abs(radius - r) / reach * R / radius + along), height);
    }
    if (Math.abs(z - stairs.back) < 1e-6) {
        var beside = stairs.slotRadius + stairs.sign * stairs.bend;
        return [at(r, z, lean, 0), at(beside, z, lean, 0), at(beside, Z, lean, 0), at(R, Z, lean, 0)];
    }
    // Inside, the legs at the gap's height draw together with those of the next slots, the more
    // the deeper their level: they don't lean there.
    var aside = stairs.sign > 0 ? lean : 0;
    // The slope takes half a slot pitch, or room for its two bends, but passes the leg of the next
    // slot, which goes out at the gap's height, a coil and its spacing away, measured square to the
    // slope. Where the slots are closer than that, it is at least down by a coil's thickness
    // before it passes the next slot.
    var pitch = R * stairs.pitch - aside;
    var drop = Math.abs(Z - z), clear = spacing * 2 * stairs.bend;
    var steepest = pitch > clear ? drop * Math.sqrt(pitch * pitch / (clear * clear) - 1)
                                 : 0.9 * pitch * drop / (2 * stairs.bend);
    var slope = Math.min(Math.max(pitch / 2, 4 * stairs.bend), steepest);
    return [at(r, z, aside, 0), at(R, z, aside, 0), at(R, Z, aside, slope)];
}

// Whether the points of a piece, in the machine, lie on the line between its ends. Such a piece is
// a segment: a curve through them would bend by rounding errors alone, and a bundle swept along it
// would follow the arbitrary turns of that bend's plane.
function straightInMachine(points) {
    var a = points[0], b = points[points.length - 1];
    var d = { x: b.x - a.x, y: b.y - a.y, z: b.z - a.z };
    var length = Math.sqrt(d.x * d.x + d.y * d.y + d.z * d.z);
    for (var k = 1; k + 1 < points.length; ++k) {
        var v = { x: points[k].x - a.x, y: points[k].y - a.y, z: points[k].z - a.z };
        var cross = { x: v.y * d.z - v.z * d.y, y: v.z * d.x - v.x * d.z, z: v.x * d.y - v.y * d.x };
        if (Math.sqrt(cross.x * cross.x + cross.y * cross.y + cross.z * cross.z) > 1e-6 * length * length)
            return false;
    }
    return true;
}

function stackedPath(end, stairs, level) {
    var a = end.begin.center, b = end.end.center;
    var sweep = sweepOf(end);
    if (Math.abs(sweep) < eps)
        return arch(end, stairs.sign * (stairs.runRadius(0) - stairs.slotRadius));
    var R = stairs.runRadius(level), Z = stairs.runHeight(level);
    var length = R * Math.abs(sweep);
    var reach = Math.max(Math.abs(R - radiusOf(a)), Math.abs(R - radiusOf(b)));
    // A lean of 0.3 of the way out, but less than half of the room that one slot pitch
    // leaves beside a coil's thickness.
    var lean = Math.min(0.3 * reach, 0.4 * Math.max(0, R * stairs.pitch - 2 * stairs.bend));
    var corners = cleaned(legCorners(stairs, radiusOf(a), a.z, R, Z, 0, 1, lean)
                              .concat(legCorners(stairs, radiusOf(b), b.z, R, Z, length, -1, lean).reverse()));
    var step = Math.max(1, Math.min(stairs.bend, 5));
    var start = angleOf(a), turn = sweep / length;
    function inMachine(p) {
        var angle = start + p.u * turn;
        return Geom.point3(p.r * Math.cos(angle), p.r * Math.sin(angle), p.z);
    }
    var pieces = roundedPieces(corners, stairs.rounding, step, stairs.bend).map(function (piece) { return piece.map(inMachine); });
    // The ends exactly at the slot centres.
    pieces[0][0] = a;
    pieces[pieces.length - 1][pieces[pieces.length - 1].length - 1] = b;
    return Geom.wire(pieces.map(function (points) {
        var last = points[points.length - 1];
        return straightInMachine(points) ? Geom.segment(points[0], last) : Geom.bspline(points);
    }));
}

function calcEndturnPaths(width, height, innerRadius, outerRadius, endturns, autoOverhang, generate) {
    // Without a measured coil a twentieth of the active length stands in for its width.
    var w = width > 0 ? width : 0.05 * (outerRadius - innerRadius);
    var h = height > 0 ? height : w;
    var outer = staircaseOf(endturns.map(function (e) { return e.outer; }), 1, w, h, 0);
    var inner = staircaseOf(endturns.map(function (e) { return e.inner; }), -1, w, h, innerRadius / 2);
    var paths = [];
    for (var i = 0; i < endturns.length; ++i) {
        var e = endturns[i];
        paths.push({
            outerPath: stackedPath(e.outer, outer, outer.levels[i]),
            innerPath: stackedPath(e.inner, inner, inner.levels[i])
        });
    }
    return endturnPathsResult(endturns, paths, width, height, w);
}
