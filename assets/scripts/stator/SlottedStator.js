// A stator disc of iron with parallel-sided slots open to the air gap. A body with a yoke has its
// slots in the face on the gap, or in both faces between two gaps; a body between two gaps without
// a yoke is a ring of separate teeth with the slots through it. The coils fill the slots but for a
// clearance to the iron, in one or two layers as the winding has them.

include("../include/BodyScript.js");
include("../include/SlottedStatorBody.js");

var StatorGeom = function () {};

var stator = {
    slotWidth: 10,
    slotDepth: 12,
    coilClearance: 0.5,
    layerGap: 1
};

stator.getGeometry = function (id) {
    return slottedStatorGeometry(stator, id, false);
};

function createStatorUI(widget) {
    addSlotRows(QGridLayout(widget), widget, stator, true, false);
}
