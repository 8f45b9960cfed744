#include "platform/win32/twip_scale.h"

#include <cmath>
#include <limits>

#include "base/rounding.h"
#include "base/runtime_error.h"

namespace quillet {
namespace {

int InPixels(Single twips, int dots) {
  const double pixels = static_cast<double>(twips) * dots / 1440;
  if (!(std::abs(pixels) <= std::numeric_limits<Integer>::max()))
    throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return ToLong(pixels);
}

}  // namespace

TwipScale::TwipScale(HWND window) {
  const HDC dc = ::GetDC(window);
  if (!dc) return;
  m_dotsAcross = ::GetDeviceCaps(dc, LOGPIXELSX);
  m_dotsDown = ::GetDeviceCaps(dc, LOGPIXELSY);
  ::ReleaseDC(window, dc);
}

TwipScale::Place TwipScale::Pixels(Single left, Single top, Single width, Single height) const {
  if (width < 0 || height < 0) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return {InPixels(left, m_dotsAcross), InPixels(top, m_dotsDown), InPixels(width, m_dotsAcross),
          InPixels(height, m_dotsDown)};
}

}  // namespace quillet
