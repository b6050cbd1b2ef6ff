// The slotted stator disc with tooth tips: each slot narrows to an opening at the air gap, which
// evens out the field in the gap and holds the coil in the slot. The coil lies below the tips.

include("../include/BodyScript.js");
include("../include/SlottedStatorBody.js");

var StatorGeom = function () {};

var stator = {
    slotWidth: 10,
    slotDepth: 12,
    slotOpening: 5,
    tipHeight: 2,
    coilClearance: 0.5,
    layerGap: 1
};

stator.getGeometry = function (id) {
    return slottedStatorGeometry(stator, id, true);
};

function createStatorUI(widget) {
    addSlotRows(QGridLayout(widget), widget, stator, true, true);
}
