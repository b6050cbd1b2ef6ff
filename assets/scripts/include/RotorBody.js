// What the rotor scripts share: the pole pitch, the magnets' extent and segments, and the
// result that the program expects of a rotor. Needs BodyScript.js.
//
// A magnetisation angle lies in the plane of a cylindrical section: 0 along the turn of the
// rotor, 90 along the axis towards +Z. Drawn as a lower body, the first pole's north faces the
// gap above it at 90 degrees; the program alternates the poles and turns the other bodies.

function rotorFrame(id) {
    return bodyFrame(RotorObject, id, 180 / RotorObject.numberPolePairs);
}

// The radii between which the magnets lie: the rotor's, less the insets at both ends.
function magnetRadii(rotor, frame) {
    var inner = frame.innerRadius + requireNumber(rotor, "magnetInnerInset", 0, true);
    var outer = frame.outerRadius - requireNumber(rotor, "magnetOuterInset", 0, true);
    if (outer <= inner)
        refuse("The magnet insets leave no magnet between the radii " + mm(frame.innerRadius) + " and "
               + mm(frame.outerRadius));
    return { inner: inner, outer: outer };
}

// The share of the pole pitch that a magnet covers.
function magnetSpan(rotor, frame) {
    var ratio = requireNumber(rotor, "magnetArcRatio", 0, false);
    if (ratio > 1)
        refuse("Magnet arc ratio " + ratio + " must not be above 1: a magnet can't be wider than its pole");
    return ratio * frame.pitch;
}

// How deep below the gap face the magnets reach; a body with a yoke keeps some of it.
function requireDepth(depth, frame, what) {
    var room = frame.height - frame.bottom;
    if (depth >= room)
        refuse(what + " " + mm(depth) + " leaves no yoke: it must be less than " + mm(room)
               + (frame.middle ? ", half the height of a rotor with magnets on both faces" : ", the height"));
    return depth;
}

// The radii that split a magnet into segments of equal radial length. Made by a division, each
// is a double to the engine, as the material wants it, even where it is a whole number.
function segmentRadiuses(radii, count) {
    var radiuses = [];
    for (var k = 1; k < count; ++k)
        radiuses.push(radii.inner + k * (radii.outer - radii.inner) / count);
    return radiuses;
}

// A magnet over `span` degrees about the direction `angle`, between two heights.
function magnetSector(radii, span, angle, zFrom, zTo) {
    return Geom.collar(radii.inner, radii.outer, zTo - zFrom, span).rotateZ(angle).up(zFrom);
}

// coefs3D goes to the solver as it is; these rotors ask it for no corrections of their own.
function rotorResult(pieces, segments) {
    return { pieces: pieces, coefs3D: [], Nmagnetsegments: segments };
}

// The panel rows of the magnets' radial extent and segments.
function addMagnetRadialRows(layout, host, rotor) {
    addNumberRow(layout, host, rotor, "Magnet inset, inner radius (mm):", "magnetInnerInset", 0, 1000, 2);
    addNumberRow(layout, host, rotor, "Magnet inset, outer radius (mm):", "magnetOuterInset", 0, 1000, 2);
    addNumberRow(layout, host, rotor, "Magnet segments, radial:", "magnetSegments", 1, 50, 0);
}
