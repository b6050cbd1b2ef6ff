// A rotor disc of iron with one magnet a pole sunk into the face to the air gap: iron lies between
// the magnets of neighbouring poles and, as a thin cover, over them. The cover and the iron at the
// ends of each pocket hold the magnets against the pull of the stator.

include("../include/BodyScript.js");
include("../include/RotorBody.js");

var RotorGeom = function () {};

var rotor = {
    magnetThickness: 3,
    coverThickness: 1,
    magnetArcRatio: 0.75,
    magnetInnerInset: 2,
    magnetOuterInset: 2,
    magnetSegments: 1
};

rotor.getGeometry = function (id) {
    var frame = rotorFrame(id);
    if (frame.yokeless)
        refuse("The embedded magnets lie in a yoke: set the rotor type to Yoke");
    var radii = magnetRadii(rotor, frame);
    var span = magnetSpan(rotor, frame);
    var segments = requireCount(rotor, "magnetSegments");
    var thickness = requireNumber(rotor, "magnetThickness", 0, false);
    var cover = requireNumber(rotor, "coverThickness", 0, true);
    requireDepth(cover + thickness, frame, "Depth of the magnet pocket");
    var top = frame.height - cover;
    var magnet = magnetSector(radii, span, 0, top - thickness, top);
    var iron = Geom.difference(pitchSector(frame, frame.bottom, frame.height), magnet);
    return rotorResult([Geom.piece(iron, ironMaterial()),
                        Geom.piece(magnet, MagnetParallelMaterial(90, segmentRadiuses(radii, segments)))],
                       segments);
};

function createRotorUI(widget) {
    var layout = QGridLayout(widget);
    addNumberRow(layout, widget, rotor, "Magnet thickness (mm):", "magnetThickness", 0.1, 100, 2);
    addNumberRow(layout, widget, rotor, "Iron cover over the magnet (mm):", "coverThickness", 0, 100, 2);
    addNumberRow(layout, widget, rotor, "Magnet arc / pole pitch:", "magnetArcRatio", 0.05, 1, 3);
    addMagnetRadialRows(layout, widget, rotor);
}
