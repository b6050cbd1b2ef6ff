// A rotor of magnets alone, a Halbach array: each pole is a row of segments whose magnetisation
// turns from one pole border to the next, so that the field gathers on the face to the air gap
// and nearly cancels on the other. The magnets sit on a carrier that is no iron. Such a rotor
// faces one gap only.

include("../include/BodyScript.js");
include("../include/RotorBody.js");

var RotorGeom = function () {};

var rotor = {
    magnetThickness: 5,
    segmentsPerPole: 4,
    magnetInnerInset: 0,
    magnetOuterInset: 0,
    magnetSegments: 1
};

// Segment j of a pole, of `count`: at the middle of the pole it points to the gap (90 degrees),
// and the direction turns with the position by half a turn over a pole pitch.
function arraySegment(frame, radii, count, j, zFrom, radiuses) {
    var width = frame.pitch / count;
    var angle = -frame.pitch / 2 + (j + 0.5) * width;
    var shape = magnetSector(radii, width, angle, zFrom, frame.height);
    return Geom.piece(shape, MagnetParallelMaterial(90 + 180 * angle / frame.pitch, radiuses));
}

function magnetThickness(frame) {
    var thickness = requireNumber(rotor, "magnetThickness", 0, false);
    if (thickness > frame.height)
        refuse("Magnet thickness " + mm(thickness) + " must not exceed the height " + mm(frame.height));
    return thickness;
}

rotor.getGeometry = function (id) {
    var frame = rotorFrame(id);
    if (frame.middle)
        refuse("A Halbach array faces one gap only: choose a machine type with the rotor at an end");
    var radii = magnetRadii(rotor, frame);
    var segments = requireCount(rotor, "magnetSegments");
    var count = requireCount(rotor, "segmentsPerPole");
    var face = frame.height - magnetThickness(frame);
    var pieces = [];
    // A magnet as high as the body leaves no carrier.
    if (face > 1e-7)
        pieces.push(Geom.piece(pitchSector(frame, 0, face), GeneralMaterial()));
    for (var j = 0; j < count; ++j)
        pieces.push(arraySegment(frame, radii, count, j, face, segmentRadiuses(radii, segments)));
    return rotorResult(pieces, segments);
};

function createRotorUI(widget) {
    var layout = QGridLayout(widget);
    addNumberRow(layout, widget, rotor, "Magnet thickness (mm):", "magnetThickness", 0.1, 100, 2);
    addNumberRow(layout, widget, rotor, "Segments a pole:", "segmentsPerPole", 1, 36, 0);
    addMagnetRadialRows(layout, widget, rotor);
}
