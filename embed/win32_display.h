#pragma once

#include "embed/control_window.h"
#include "platform/win32/sdk.h"
#include "platform/win32/twip_scale.h"

namespace quillet {

// What a host's window on the display does beside the control in it.

// The style of a window without anything around the control.
constexpr DWORD kHostStyle = WS_POPUP | WS_CLIPCHILDREN;

// The outside of a control of that inside size, at the window's origin; `frame` is what its border
// takes. Run-time error 380 for a size that is no 16-bit one.
RECT OutsideFor(SIZE frame, int width, int height);

// Runs what waits in the thread's queue, but no input of the person at the machine, so that what
// happens does not depend on where the pointer happens to lie; then what is to be painted.
void RunWaitingMessages(HWND window);

// What the display shows of the whole window, its frame included; without pixels for a window that
// is gone. Run-time error 7.
Snapshot SnapshotOf(HWND window);

// Where a window stands in its parent.
AttendedWindow::Place PlaceOf(HWND window, const TwipScale& scale);

}  // namespace quillet
