// The top-level variables of a design, shared by all its elements. The program mirrors
// each key of `config` into the document and back, and calls `config.update()` when the
// machine type changes, so that what depends on the sequence of bodies follows it.
//
// A first design: a single-sided machine of 12 slots and 10 poles with a concentrated
// double-layer winding, 200 mm across.
//
// Lengths are mm, angles degrees. Air gaps are counted from the bottom of the machine;
// a key that ends in 2, 3 or 4 belongs to that gap or to the body on it.

var config = (function () {
    // For each machine type: the direction in which the rotor face on each air gap looks
    // (+1 up, -1 down), the gaps on either side of the middle stators and rotors, and the
    // count of winding layouts with coils through the stator and with slotted faces.
    var machines = {};
    machines[Motor.SR] = { facing: [-1], middleStators: [], middleRotors: [], layouts: [1, 1] };
    machines[Motor.SRS] = { facing: [-1, 1], middleStators: [], middleRotors: [[0, 1]], layouts: [2, 2] };
    machines[Motor.SRSRS] = { facing: [-1, 1, -1, 1], middleStators: [[1, 2]], middleRotors: [[0, 1], [2, 3]],
                              layouts: [3, 4] };
    machines[Motor.RSR] = { facing: [1, -1], middleStators: [[0, 1]], middleRotors: [], layouts: [1, 2] };
    machines[Motor.RSRSR] = { facing: [1, -1, 1, -1], middleStators: [[0, 1], [2, 3]], middleRotors: [[1, 2]],
                              layouts: [2, 4] };

    // The pole seen from each air gap at the same angle, by arrangement; the first
    // arrangement of a count is the one that suits every machine of that count.
    var arrangements = {};
    arrangements[PoleArrangement.NS] = "NS";
    arrangements[PoleArrangement.NN] = "NN";
    arrangements[PoleArrangement.NSNS] = "NSNS";
    arrangements[PoleArrangement.NSSN] = "NSSN";
    arrangements[PoleArrangement.NNSS] = "NNSS";
    arrangements[PoleArrangement.NNNN] = "NNNN";
    var arrangementsByGaps = {
        2: [PoleArrangement.NS, PoleArrangement.NN],
        4: [PoleArrangement.NSNS, PoleArrangement.NSSN, PoleArrangement.NNSS, PoleArrangement.NNNN]
    };

    // How the layouts of the stator faces may be joined, by the count of layouts; the
    // first is the one taken when the present one doesn't fit.
    var connectionsByLayouts = {
        2: [Winding.Connection_1s2, Winding.Connection_1p2],
        3: [Winding.Connection_1s2s3, Winding.Connection_1p2p3],
        4: [Winding.Connection_1s2s3s4, Winding.Connection_1p2p3p4, Winding.Connection_1s2_p_3s4,
            Winding.Connection_1s3_p_2s4, Winding.Connection_1s4_p_2s3]
    };

    // A body without a yoke passes the flux through: the gaps on its two sides must
    // show opposite poles at the same angle.
    function passesThroughBodies(poles, pairs) {
        return pairs.every(function (pair) { return poles[pair[0]] !== poles[pair[1]]; });
    }

    function fitsArrangement(cfg, machine, arrangement) {
        var poles = arrangements[arrangement];
        if (poles === undefined || poles.length !== machine.facing.length)
            return false;
        return (cfg.statorType !== Stator.Yokeless || passesThroughBodies(poles, machine.middleStators))
            && (cfg.rotorType !== Rotor.Yokeless || passesThroughBodies(poles, machine.middleRotors));
    }

    function fittingArrangement(cfg, machine) {
        var candidates = arrangementsByGaps[machine.facing.length];
        if (candidates === undefined)
            return PoleArrangement.Unknown;
        if (fitsArrangement(cfg, machine, cfg.poleArrangement))
            return cfg.poleArrangement;
        var fitting = candidates.filter(function (arrangement) { return fitsArrangement(cfg, machine, arrangement); });
        return fitting.length > 0 ? fitting[0] : candidates[0];
    }

    function fittingConnection(cfg, machine) {
        var throughStator = cfg.statorType === Stator.Yokeless || cfg.windingType === Winding.Toroidal;
        var connections = connectionsByLayouts[machine.layouts[throughStator ? 0 : 1]];
        if (connections === undefined || connections.indexOf(cfg.statorConnection) >= 0)
            return cfg.statorConnection;
        return connections[0];
    }

    return {
        statorOuterDiameter: 200,
        statorInnerDiameter: 120,
        statorNumberSlots: 12,
        statorType: Stator.Yoke,
        statorHeight1: 30,
        statorHeight2: 30,
        statorHeight3: 30,
        statorAngularDisplacement1: 0,
        statorAngularDisplacement2: 0,
        statorAngularDisplacement3: 0,
        statorAngularDisplacement4: 0,

        rotorOuterDiameter: 200,
        rotorInnerDiameter: 120,
        rotorNumberPolePairs: 5,
        rotorType: Rotor.Yoke,
        rotorHeight1: 10,
        rotorHeight2: 10,
        rotorHeight3: 10,
        rotorAngularDisplacement1: 0,
        rotorAngularDisplacement2: 0,
        rotorAngularDisplacement3: 0,
        rotorAngularDisplacement4: 0,

        // Magnet layers are drawn as seen from their own gap; these turn the layers of
        // gaps 2 to 4 against the first one.
        poleArrangement: PoleArrangement.Unknown,
        poleMirrorUD2: false,
        poleMirrorUD3: false,
        poleMirrorUD4: false,
        poleRotatePolePitch2: false,
        poleRotatePolePitch3: false,
        poleRotatePolePitch4: false,

        windingType: Winding.Planar,
        windingLayers: Winding.DoubleLayer,
        windingLayersOrientation: Winding.LeftRight,
        statorConnection: Winding.Connection_1s2,
        // The layouts on gaps 2 to 4 run the other way round where their flux does.
        layoutReverse2: false,
        layoutReverse3: false,
        layoutReverse4: false,
        layoutNew2: false,
        layoutNew3: false,
        layoutNew4: false,
        layoutNewLayer2: false,
        layoutNewLayer3: false,
        layoutNewLayer4: false,

        meshHorizontalSymmetry: false,

        update: function () {
            var machine = machines[motor.machineType];
            if (machine === undefined) {
                console.warn("config.update: unknown machine type " + motor.machineType);
                return;
            }
            // Only a body between two gaps can do without a yoke.
            if (machine.middleStators.length === 0)
                this.statorType = Stator.Yoke;
            if (machine.middleRotors.length === 0)
                this.rotorType = Rotor.Yoke;
            this.poleArrangement = fittingArrangement(this, machine);
            this.statorConnection = fittingConnection(this, machine);

            // The sense of the field in each gap decides how its magnets and coils turn.
            var facing = machine.facing;
            var poles = arrangements[this.poleArrangement] || "N";
            var flux = facing.map(function (direction, gap) { return poles[gap] === "N" ? direction : -direction; });
            for (var gap = 1; gap < 4; ++gap) {
                var used = gap < facing.length;
                this["poleMirrorUD" + (gap + 1)] = used && facing[gap] !== facing[0];
                this["poleRotatePolePitch" + (gap + 1)] = used && poles[gap] !== poles[0];
                this["layoutReverse" + (gap + 1)] = used && flux[gap] !== flux[0];
            }

            // A single-sided machine has no mirror plane across its axis.
            if (motor.machineType === Motor.SR)
                this.meshHorizontalSymmetry = false;
        }
    };
})();
