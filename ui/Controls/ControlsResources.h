#pragma once

// The icons of the common controls live in the static library, whose resources are
// only linked in when asked for. Safe to call more than once.
void initControlsResources();
