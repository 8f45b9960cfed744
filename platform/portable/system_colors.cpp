#include "platform/portable/system_colors.h"

#include <array>

namespace quillet {
namespace {

constexpr Rgb kFace{0xD4, 0xD0, 0xC8};
constexpr Rgb kBlack{0x00, 0x00, 0x00};
constexpr Rgb kWhite{0xFF, 0xFF, 0xFF};
constexpr Rgb kGray{0x80, 0x80, 0x80};
constexpr Rgb kNavy{0x0A, 0x24, 0x6A};

// The classic scheme, in the order of the system's colour indices 0 to 24.
constexpr std::array<Rgb, 25> kScheme = {{
    kFace,               // scroll bar
    {0x3A, 0x6E, 0xA5},  // desktop
    kNavy,               // active title bar
    kGray,               // inactive title bar
    kFace,               // menu
    kWhite,              // window background
    kBlack,              // window frame
    kBlack,              // menu text
    kBlack,              // window text
    kWhite,              // title bar text
    kFace,               // active border
    kFace,               // inactive border
    kGray,               // application workspace
    kNavy,               // highlight
    kWhite,              // highlighted text
    kFace,               // 3D face
    kGray,               // 3D shadow
    kGray,               // greyed text
    kBlack,              // button text
    kFace,               // inactive title bar text
    kWhite,              // 3D highlight
    {0x40, 0x40, 0x40},  // 3D dark shadow
    kFace,               // 3D light
    kBlack,              // tool tip text
    {0xFF, 0xFF, 0xE1},  // tool tip background
}};

}  // namespace

Rgb ResolveColor(OLE_COLOR color) noexcept {
  if (color & 0x80000000u) {
    const OLE_COLOR index = color & 0xFFu;
    return index < kScheme.size() ? kScheme[index] : kBlack;
  }
  return {static_cast<Byte>(color & 0xFFu), static_cast<Byte>((color >> 8) & 0xFFu),
          static_cast<Byte>((color >> 16) & 0xFFu)};
}

}  // namespace quillet
