#pragma once

#include "base/types.h"

namespace quillet {

struct Rgb {
  Byte red = 0, green = 0, blue = 0;
  bool operator==(const Rgb&) const = default;
};

// The system colours that the surface itself is drawn in, as OLE colours.
inline constexpr OLE_COLOR kFace3D = 0x8000000Fu;
inline constexpr OLE_COLOR kShadow3D = 0x80000010u;
inline constexpr OLE_COLOR kHighlight3D = 0x80000014u;
inline constexpr OLE_COLOR kDarkShadow3D = 0x80000015u;
inline constexpr OLE_COLOR kLight3D = 0x80000016u;
inline constexpr OLE_COLOR kButtonText = 0x80000012u;

// What a colour looks like: the system colours of the classic scheme, or the colour's own three
// bytes. A system colour without entry is black, as the system itself answers.
Rgb ResolveColor(OLE_COLOR color) noexcept;

}  // namespace quillet
