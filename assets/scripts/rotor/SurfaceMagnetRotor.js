// A rotor disc of iron with one magnet a pole on the face to the air gap, magnetised along the
// axis. A rotor between two gaps has magnets on both faces; without a yoke its magnets run through
// the body, held by a carrier that is no iron.

include("../include/BodyScript.js");
include("../include/RotorBody.js");

var RotorGeom = function () {};

var rotor = {
    magnetThickness: 3,
    magnetArcRatio: 0.8,
    magnetInnerInset: 0,
    magnetOuterInset: 0,
    magnetSegments: 1
};

function magnetOnYoke(frame, radii, span, material) {
    var thickness = requireDepth(requireNumber(rotor, "magnetThickness", 0, false), frame, "Magnet thickness");
    var face = frame.height - thickness;
    return [Geom.piece(pitchSector(frame, frame.bottom, face), ironMaterial()),
            Geom.piece(magnetSector(radii, span, 0, face, frame.height), material)];
}

function magnetThroughBody(frame, radii, span, material) {
    var magnet = magnetSector(radii, span, 0, frame.bottom, frame.height);
    var carrier = Geom.difference(pitchSector(frame, frame.bottom, frame.height), magnet);
    var pieces = [Geom.piece(magnet, material)];
    // Magnets as wide as the pole and the rotor leave nothing to carry them.
    if (!carrier.isEmpty())
        pieces.unshift(Geom.piece(carrier, GeneralMaterial()));
    return pieces;
}

rotor.getGeometry = function (id) {
    var frame = rotorFrame(id);
    var radii = magnetRadii(rotor, frame);
    var span = magnetSpan(rotor, frame);
    var segments = requireCount(rotor, "magnetSegments");
    var material = MagnetParallelMaterial(90, segmentRadiuses(radii, segments));
    var pieces = frame.yokeless ? magnetThroughBody(frame, radii, span, material)
                                : magnetOnYoke(frame, radii, span, material);
    return rotorResult(pieces, segments);
};

function createRotorUI(widget) {
    var layout = QGridLayout(widget);
    addNumberRow(layout, widget, rotor, "Magnet thickness (mm):", "magnetThickness", 0.1, 100, 2);
    addNumberRow(layout, widget, rotor, "Magnet arc / pole pitch:", "magnetArcRatio", 0.05, 1, 3);
    addMagnetRadialRows(layout, widget, rotor);
}
