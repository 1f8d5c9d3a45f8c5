// The window-system calls the SDK makes to place host dialogs on screen: the main screen's frame,
// a window's frame, and moving a window by its top-left corner.
//
// On macOS these are AppKit's NSScreen and NSWindow. Elsewhere the host process provides them as
// exported C functions (PlatformMainScreenFrame, PlatformWindowFrame,
// PlatformWindowSetFrameTopLeftPoint), looked up by name on every call; a host that lacks one
// gets the answer a headless system would give: no main screen, a frame of all zeros, a window
// that does not move.
//
// Coordinates are points with the origin at the bottom-left of the main screen and y growing
// upward, as in AppKit. Thread: host's main thread. None of these functions fails loudly.
#pragma once

#include <cstddef>

// A rectangle in screen coordinates; the same layout as the host's PlatformRect.
struct ScriboRect {
  double x;      // points; left edge
  double y;      // points; bottom edge, counted upward from the bottom of the main screen
  double width;  // points
  double height; // points
};
static_assert(sizeof(ScriboRect) == 32);
static_assert(offsetof(ScriboRect, x) == 0);
static_assert(offsetof(ScriboRect, y) == 8);
static_assert(offsetof(ScriboRect, width) == 16);
static_assert(offsetof(ScriboRect, height) == 24);

// [NSScreen mainScreen].frame. Returns false and fills *frame with zeros when there is no main
// screen (or the host does not say). `frame` must not be null.
bool ScriboMainScreenFrame(ScriboRect* frame);

// window.frame. All zeros for a null window or when the host does not say.
ScriboRect ScriboWindowFrame(void* window);

// [window setFrameTopLeftPoint:(x, y)]: moves the window so that its top-left corner is at (x, y).
// Does nothing for a null window or when the host does not provide the call.
void ScriboWindowSetFrameTopLeftPoint(void* window, double x, double y);
