#pragma once

#include "base/types.h"
#include "platform/surface/surface_link.h"
#include "platform/win32/sdk.h"

namespace quillet {

// The mouse on the picture box: turns its window's messages into events, and keeps the capture
// while a button is down. The second press of a double click of the left button raises DblClick in
// place of MouseDown, and no Click follows its release.
class BoxMouse {
 public:
  explicit BoxMouse(SurfaceLink& link) noexcept : m_link(link) {}

  // True for a message that was the mouse's. A disabled control hears nothing, and a press that it
  // has not heard the end of is forgotten.
  bool Handle(HWND box, bool enabled, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void Press(HWND box, Integer button, bool second, POINT at);
  void Move(Integer buttons, POINT at);
  void Release(HWND box, Integer button, POINT at);
  void Forget() noexcept;

  SurfaceLink& m_link;
  Integer m_held = 0;  // buttons whose press came here
  bool m_clickDue = false;
};

}  // namespace quillet
