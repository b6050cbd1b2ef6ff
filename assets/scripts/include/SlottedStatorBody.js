// One slot pitch of a stator disc with parallel-sided slots open to the air gap, narrowed at the
// gap by tooth tips where the script asks for them. The pitch has a tooth centred on +X and half
// a slot at each of its edges: the program joins the halves of each winding piece again when it
// turns the pitch over all slots, and it measures the coil in the slot at the edge of the pitch.
//
// Needs BodyScript.js. The variables read from the script's `stator` object:
// slotWidth, slotDepth (not for a body without yoke), coilClearance, layerGap and, with tips,
// slotOpening and tipHeight.

// The slot's measures, checked against each other and against the body.
function slotOf(stator, frame, withTips) {
    var slot = {
        width: requireNumber(stator, "slotWidth", 0, false),
        // Without a yoke the slot runs through the body.
        depth: frame.yokeless ? frame.height : requireNumber(stator, "slotDepth", 0, false),
        clearance: requireNumber(stator, "coilClearance", 0, true),
        layerGap: requireNumber(stator, "layerGap", 0, true),
        opening: withTips ? requireNumber(stator, "slotOpening", 0, false) : 0,
        tipHeight: withTips ? requireNumber(stator, "tipHeight", 0, true) : 0
    };
    var widest = 2 * frame.innerRadius * Math.sin(Math.rad(frame.pitch / 2));
    if (slot.width >= widest)
        refuse("Slot width " + mm(slot.width) + " leaves no tooth at the inner radius " + mm(frame.innerRadius)
               + ": it must be less than " + mm(widest));
    if (!frame.yokeless && frame.middle && slot.depth >= frame.height / 2)
        refuse("Slot depth " + mm(slot.depth) + " of a stator with slots on both faces must be less than half"
               + " its height, " + mm(frame.height / 2));
    if (!frame.yokeless && slot.depth >= frame.height)
        refuse("Slot depth " + mm(slot.depth) + " leaves no yoke: it must be less than the height "
               + mm(frame.height));
    if (withTips && slot.opening > slot.width)
        refuse("Slot opening " + mm(slot.opening) + " must not be wider than the slot, " + mm(slot.width));
    return slot;
}

// Heights of the coil in the slot, from the bottom of the body. A slot through a body without
// yoke holds the coil between the tips of both faces.
function coilRange(frame, slot) {
    var top = frame.height - slot.tipHeight - slot.clearance;
    var bottom = frame.yokeless ? slot.tipHeight + slot.clearance : frame.height - slot.depth + slot.clearance;
    if (top <= bottom)
        refuse("Tooth tips and coil clearance leave no room for the coil in a slot " + mm(slot.depth) + " deep");
    return { from: bottom, to: top };
}

// The layers that the script draws, as the winding has them. Left and right layers are the two
// halves of a slot, which the pitch draws apart anyway. A body without yoke is drawn by its
// upper half: the mirror of its upper layer is the lower one.
function drawnLayers(frame, slot) {
    var range = coilRange(frame, slot);
    var winding = motor.winding;
    var sides = winding.numberLayers === 2 && winding.layersOrientation === Winding.LeftRight;
    if (slot.width / 2 - slot.clearance <= (sides ? slot.layerGap / 2 : 0))
        refuse("Coil clearance " + mm(slot.clearance) + " and the gap between layers leave no room for the coil"
               + " in a slot " + mm(slot.width) + " wide");
    if (winding.numberLayers !== 2 || sides)
        return [{ from: range.from, to: range.to, sides: sides }];
    var middle = (range.from + range.to) / 2;
    if (range.to - range.from <= slot.layerGap)
        refuse("Gap between layers " + mm(slot.layerGap) + " leaves no room for the coil");
    var upper = { from: middle + slot.layerGap / 2, to: range.to, sides: false };
    if (frame.yokeless)
        return [upper];
    return [{ from: range.from, to: middle - slot.layerGap / 2, sides: false }, upper];
}

// A box in the frame of the slot at the edge `side` (1 or -1) of the pitch: x along the slot
// from the axis outwards, y across it from y0 to y1. It reaches beyond the outer radius.
function slotBox(frame, side, y0, y1, z0, z1) {
    return Geom.box(frame.outerRadius + 1, y1 - y0, z1 - z0).translate(0, y0, z0).rotateZ(side * frame.pitch / 2);
}

// What the slot at one edge takes out of the iron; it opens through the gap face.
function slotCut(frame, slot, side) {
    var face = frame.height + 1;
    var bottom = frame.yokeless ? frame.bottom - 1 : frame.height - slot.depth;
    var half = slot.width / 2;
    if (slot.tipHeight === 0)
        return slotBox(frame, side, -half, half, bottom, face);
    var tips = frame.height - slot.tipHeight;
    return Geom.unite([slotBox(frame, side, -half, half, bottom, tips),
                       slotBox(frame, side, -slot.opening / 2, slot.opening / 2, tips, face)]);
}

// The part of a layer that lies in the half slot at one edge. A box across the whole slot is
// cut by the pitch itself; a side of a left/right layer keeps the gap between layers from the
// middle of the slot, on the side of the pitch's own tooth.
function coilPiece(frame, slot, layer, side) {
    var outer = slot.width / 2 - slot.clearance;
    var inner = layer.sides && slot.layerGap > 0 ? slot.layerGap / 2 : -outer;
    var y0 = side > 0 ? -outer : inner;
    var y1 = side > 0 ? -inner : outer;
    var box = slotBox(frame, side, y0, y1, layer.from, layer.to);
    return Geom.piece(Geom.intersect(box, pitchSector(frame, 0, frame.height)), WindingMaterial());
}

function slottedStatorGeometry(stator, id, withTips) {
    var frame = bodyFrame(StatorObject, id, 360 / StatorObject.numberSlots);
    var slot = slotOf(stator, frame, withTips);
    var layers = drawnLayers(frame, slot);
    var iron = Geom.difference([pitchSector(frame, frame.bottom, frame.height), slotCut(frame, slot, 1),
                                slotCut(frame, slot, -1)]);
    var pieces = [Geom.piece(iron, ironMaterial())];
    layers.forEach(function (layer) {
        pieces.push(coilPiece(frame, slot, layer, 1), coilPiece(frame, slot, layer, -1));
    });
    return {
        pieces: pieces,
        simDomain: { inner: frame.innerRadius, outer: frame.outerRadius },
        // Room beyond the disc for the end turns in the radial model.
        simRadialOuterDomain: 1.3 * frame.outerRadius
    };
}

// The panel rows of the slot's variables.
function addSlotRows(layout, host, stator, withDepth, withTips) {
    addNumberRow(layout, host, stator, "Slot width (mm):", "slotWidth", 0.1, 1000, 2);
    if (withDepth)
        addNumberRow(layout, host, stator, "Slot depth (mm):", "slotDepth", 0.1, 1000, 2);
    if (withTips) {
        addNumberRow(layout, host, stator, "Slot opening (mm):", "slotOpening", 0.1, 1000, 2);
        addNumberRow(layout, host, stator, "Tooth tip height (mm):", "tipHeight", 0, 100, 2);
    }
    addNumberRow(layout, host, stator, "Coil clearance (mm):", "coilClearance", 0, 100, 2);
    addNumberRow(layout, host, stator, "Gap between layers (mm):", "layerGap", 0, 100, 2);
}
