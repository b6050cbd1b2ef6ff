#pragma once

#include "geometry/Piece.h"

class WindingObject;

// The end turns of every layout of the winding as stator pieces of their phase and
// layout: bundles swept along the paths, or the paths themselves. The end turns are made
// first where they are missing, which runs the end-turn script: call on the GUI thread.
PieceList endturnPieces(WindingObject *winding, bool filamentsOnly);
