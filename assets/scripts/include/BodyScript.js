// What the stator and rotor scripts share: the checks of the user's values, the frame of the
// body that is drawn, and the rows of an editor panel.
//
// Lengths are mm, angles degrees. A body is drawn as a lower body, its air gap above z = height,
// over one pitch centred on +X. A middle body is drawn as its upper half only: the program
// adds the mirror of the drawing for the face on the lower gap.

// Ends the drawing with a message that tells the user what to change.
function refuse(text) {
    throw new Error(text);
}

function mm(value) {
    return String(Math.round(value * 1000) / 1000) + " mm";
}

// A value set from outside the panel may be anything; the geometry needs a finite number.
function requireNumber(owner, name, minimum, allowMinimum) {
    var value = owner[name];
    if (typeof value !== "number" || !isFinite(value))
        refuse("Parameter '" + name + "' must be a number, not " + value);
    if (value < minimum || (value === minimum && !allowMinimum))
        refuse("Parameter '" + name + "' = " + value + " must be " + (allowMinimum ? "at least " : "greater than ")
               + minimum);
    return value;
}

function requireCount(owner, name) {
    var value = requireNumber(owner, name, 1, true);
    if (value !== Math.round(value))
        refuse("Parameter '" + name + "' = " + value + " must be a whole number");
    return value;
}

// The body with that id of a stator or rotor element, and the part of it that a script draws.
function bodyFrame(element, id, pitch) {
    var item = element.item(id);
    var height = item.height;
    var middle = item.isMiddle();
    if (!(element.outerRadius > element.innerRadius))
        refuse("The outer diameter " + mm(element.outerDiameter) + " must be greater than the inner diameter "
               + mm(element.innerDiameter));
    return {
        pitch: pitch,
        innerRadius: element.innerRadius,
        outerRadius: element.outerRadius,
        height: height,
        middle: middle,
        // Only a body between two gaps may go without a yoke; stator and rotor share the enumeration.
        yokeless: middle && element.typeMiddleItem === Stator.Yokeless,
        bottom: middle ? height / 2 : 0
    };
}

// Iron without fill coefficients, which the program then gives one a slice. Said outright,
// as IronMaterial() would hand the engine undefined values to convert.
function ironMaterial() {
    return IronMaterial([], 0);
}

// The annular sector of the pitch between two heights.
function pitchSector(frame, zFrom, zTo) {
    return Geom.collar(frame.innerRadius, frame.outerRadius, zTo - zFrom, frame.pitch).up(zFrom);
}

// A row of the panel: a label and the number field that edits the variable `name` of `owner`.
function addNumberRow(layout, host, owner, text, name, minimum, maximum, decimals) {
    var edit = NumberEdit(host);
    edit.objectName = name;
    edit.setRange(minimum, maximum, decimals);
    edit.value = owner[name];
    layout.addWidgets(QLabel(text, host), edit);
    return edit;
}
