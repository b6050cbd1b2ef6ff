#pragma once

#include "QmlScripting/ScriptObject.h"

class Magnetization;

// The mirror of the configuration script's `config` object, one for each document:
// the top-level design variables that all elements share.
class ConfigObject : public ScriptObject
{
    Q_OBJECT
public:
    explicit ConfigObject(QObject *parent = nullptr);

    // Whether winding layout 1, 2 or 3 (counted from 0) is reversed; false for any other index.
    bool layoutReverse(int index) const;

    // Turns the magnetization of magnet layer 1, 2 or 3 (counted from 0) as the script's
    // flags poleMirrorUD and poleRotatePolePitch of the next number say: a mirror
    // turns the field's axial sense, a pole pitch swaps north and south.
    void applyPoleTransform(int item, Magnetization &magnetization) const;

    // After values came from an exchange file, the script's differing values are
    // announced again, so that the elements follow the script.
    void correctProperties();
};
