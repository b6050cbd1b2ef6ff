#pragma once

// All of the program's life; returns the exit code.
int safeMain(int argc, char *argv[]);

// Set after the solver operations: the process must then end at once, without
// running static destructors of the plug-in's runtime.
extern volatile char terminateAtExit;
