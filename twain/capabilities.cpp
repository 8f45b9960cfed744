// Negotiation with the open source before it is enabled.

#include <cstring>

#include "base/rounding.h"
#include "twain/cTwain.h"

namespace quillet {
namespace {

constexpr TW_UINT32 kTrue = 1;

TW_FIX32 AsFix32(TW_UINT32 item) {
  TW_FIX32 value;
  static_assert(sizeof value == sizeof item);
  std::memcpy(&value, &item, sizeof value);
  return value;
}

bool IsPositive(TW_FIX32 value) {
  return value.Whole > 0 || (value.Whole == 0 && value.Frac > 0);
}

}  // namespace

// A failure ends the scan, except where the source may do without: indicators, bit depth, and
// everything when it does not say that its interface can be controlled.
Long cTwain::Negotiate(Integer iResolution, Long lColorType, bool bShowProgress) {
  if (!bShowProgress) DisableIndicators();
  if (CheckUIControllable() != 0) return 0;
  if (SetFullLayout() != 0) return 1;
  if (SetResolution(iResolution) != 0) return 1;
  if (SetPixelType() != 0) return 1;
  if (lColorType == twRGB) SetBitDepth();
  return SetTransferCount();
}

Long cTwain::DisableIndicators() {
  return SetOneValue(CAP_INDICATORS, TWTY_BOOL, 0);
}

Long cTwain::CheckUIControllable() {
  TW_UINT32 item = 0;
  return ReadOneValue(CAP_UICONTROLLABLE, item) && (item & 0xFFFF) == kTrue ? 0 : 1;
}

// The whole physical area, as far as the source knows one.
Long cTwain::SetFullLayout() {
  TW_UINT32 width = 0;
  TW_UINT32 height = 0;
  if (!ReadOneValue(ICAP_PHYSICALWIDTH, width)) return 1;
  if (!ReadOneValue(ICAP_PHYSICALHEIGHT, height)) return 1;
  TW_IMAGELAYOUT layout{};
  layout.Frame.Right = AsFix32(width);
  layout.Frame.Bottom = AsFix32(height);
  if (!IsPositive(layout.Frame.Right) || !IsPositive(layout.Frame.Bottom)) return 0;
  const TW_UINT16 answer = CallSource(DG_IMAGE, DAT_IMAGELAYOUT, MSG_SET, &layout);
  return answer == TWRC_SUCCESS || answer == TWRC_CHECKSTATUS ? 0 : 1;
}

Long cTwain::SetResolution(Integer iResolution) {
  const TW_UINT32 item = static_cast<TW_UINT16>(iResolution);  // a TW_FIX32, its fraction 0
  if (SetOneValue(ICAP_XRESOLUTION, TWTY_FIX32, item) != 0) return 1;
  return SetOneValue(ICAP_YRESOLUTION, TWTY_FIX32, item);
}

Long cTwain::SetPixelType() {
  return SetOneValue(ICAP_PIXELTYPE, TWTY_UINT16, static_cast<TW_UINT16>(LowWord(m_PixelType)));
}

Long cTwain::SetBitDepth() {
  return SetOneValue(ICAP_BITDEPTH, TWTY_UINT16, 24);
}

Long cTwain::SetTransferCount() {
  return SetOneValue(CAP_XFERCOUNT, TWTY_INT16, 1);
}

Long cTwain::SetOneValue(TW_UINT16 Cap, TW_UINT16 ItemType, TW_UINT32 Item) {
  const TW_ONEVALUE value{ItemType, Item};
  const UniqueGlobal container(m_platform.memory, m_platform.memory.GlobalAlloc(sizeof value));
  {
    const GlobalLockGuard lock(m_platform.memory, container.get());
    if (!lock.get()) return 1;
    std::memcpy(lock.get(), &value, sizeof value);
  }
  TW_CAPABILITY capability{Cap, TWON_ONEVALUE, container.get()};
  return CallSource(DG_CONTROL, DAT_CAPABILITY, MSG_SET, &capability) == TWRC_SUCCESS ? 0 : 1;
}

// The container that the source answers with is ours to free. It is read as one value whatever it
// says it is, as far as the block reaches.
bool cTwain::ReadOneValue(TW_UINT16 Cap, TW_UINT32& Item) {
  TW_CAPABILITY capability{Cap, TWON_ONEVALUE, GlobalHandle::None};
  const TW_UINT16 answer = CallSource(DG_CONTROL, DAT_CAPABILITY, MSG_GET, &capability);
  if (answer != TWRC_SUCCESS) return false;
  TW_ONEVALUE value{};
  const UniqueGlobal container(m_platform.memory, capability.hContainer);
  if (m_platform.memory.GlobalSize(container.get()) < sizeof value) return false;
  const GlobalLockGuard lock(m_platform.memory, container.get());
  if (!lock.get()) return false;
  std::memcpy(&value, lock.get(), sizeof value);
  Item = value.Item;
  return true;
}

}  // namespace quillet
