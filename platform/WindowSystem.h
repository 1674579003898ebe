#pragma once

// True when a program can open windows here: a Qt platform was chosen (QT_QPA_PLATFORM, for
// example offscreen), or, where windows need an X11 or Wayland server, DISPLAY or
// WAYLAND_DISPLAY names one. Qt itself aborts when it finds no server; the programs ask
// first and say what they need instead.
bool HasWindowSystem();
