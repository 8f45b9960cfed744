#pragma once

#include "base/types.h"
#include "platform/win32/sdk.h"

namespace quillet {

// Converts between the pixels of a display and twips, 1440 to the inch.
class TwipScale {
 public:
  // Of the display that the window is on.
  explicit TwipScale(HWND window);

  Single Wide(int pixels) const noexcept { return InTwips(pixels, m_dotsAcross); }
  Single High(int pixels) const noexcept { return InTwips(pixels, m_dotsDown); }

  struct Place {
    int left = 0, top = 0, width = 0, height = 0;
  };
  // The pixels of a place given in twips, each number rounded for itself. Run-time error 380 for a
  // negative size, and for numbers beyond the 16 bits that a window's place has.
  Place Pixels(Single left, Single top, Single width, Single height) const;

 private:
  static Single InTwips(int pixels, int dots) noexcept {
    return static_cast<Single>(pixels * 1440.0 / dots);
  }

  int m_dotsAcross = 96;
  int m_dotsDown = 96;
};

}  // namespace quillet
