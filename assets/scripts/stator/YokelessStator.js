// A stator between two rotors without a yoke: a ring of separate teeth, each with tips on both
// faces, and the coils in the slots between them through the whole body. Wound around a tooth,
// a coil puts its two sides into the two slots beside it.

include("../include/BodyScript.js");
include("../include/SlottedStatorBody.js");

var StatorGeom = function () {};

var stator = {
    slotWidth: 10,
    slotOpening: 5,
    tipHeight: 2,
    coilClearance: 0.5,
    layerGap: 1
};

stator.getGeometry = function (id) {
    if (!StatorObject.item(id).isMiddle())
        refuse("A yokeless stator must lie between two rotors: choose a machine type with the stator in the middle");
    if (StatorObject.typeMiddleItem !== Stator.Yokeless)
        refuse("This stator has no yoke: set the stator type to Yokeless");
    return slottedStatorGeometry(stator, id, true);
};

function createStatorUI(widget) {
    addSlotRows(QGridLayout(widget), widget, stator, false, true);
}
