#pragma once

#include <cstdint>

namespace quillet {

// The integer and floating kinds of the control's interface, under the names its hosts know.
using Byte = std::uint8_t;
using Integer = std::int16_t;
using Long = std::int32_t;
using Single = float;

// A colour: 0x00BBGGRR, or 0x800000nn for the system colour with index nn.
using OLE_COLOR = std::uint32_t;
inline constexpr OLE_COLOR kWindowBackground = 0x80000005u;

// The enumerations of the type library. A variable may hold any 32-bit value: nothing checks it.
enum IMAGE_COLORTYPE : Long { twBlackWhite = 0, twGrayScale = 1, twRGB = 2 };
enum IMAGE_TYPE : Long { twBITMAP = 0, twJPEG = 1, twGIF = 2, twTIFF = 3, twPNG = 4 };
enum FIT_TYPE : Long { twFITNONE = 0, twFITINTO = 1, twFITWIDTH = 2, twFITSTRECH = 3 };

}  // namespace quillet
