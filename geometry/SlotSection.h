#pragma once

#include "geometry/Piece.h"

// The cut across one slot at the coil's mean radius, which gives the cross-sections of
// the coil and of the slot that the wire sizing works with. It is measured on a plate
// 0.1 thick, so that areas are its volumes times 10.
struct SlotSection
{
    servoce::shape coil;
    servoce::shape slot;
    double coilArea = 0.0;
    double slotArea = 0.0;

    // The winding pieces of one slot pitch, the whole body they belong to, the pitch and
    // the body's turn in radians, a radius beyond all bodies, and the body's height.
    static SlotSection across(const PieceList &pitchWindings, const PieceList &body, double pitch,
                              double displacement, double radius, double height);
};
