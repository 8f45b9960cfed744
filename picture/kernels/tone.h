#pragma once

#include <cstddef>

#include "base/types.h"
#include "picture/kernels/kernels.h"
#include "picture/kernels/x86.h"

// The tone kernels and filters, one namespace to an instruction set; kernels.h says what they do.
namespace quillet::scalar {

void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes);
void Contrast(Byte* row, std::ptrdiff_t count, Integer factor);
void Fade(Byte* row, std::ptrdiff_t count, Byte level);
void SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
void SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
void Blur(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count);
void GrayScale(Byte* row, Long width);
void BlackWhite(Byte* row, Long width);
void Lighten(Byte* row, Long width, const LightenTable& table);

}  // namespace quillet::scalar

#ifdef QUILLET_X86
namespace quillet::sse2 {

void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes);
void Contrast(Byte* row, std::ptrdiff_t count, Integer factor);
void Fade(Byte* row, std::ptrdiff_t count, Byte level);
void SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
void SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
void Blur(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count);
void GrayScale(Byte* row, Long width);
void BlackWhite(Byte* row, Long width);

}  // namespace quillet::sse2

namespace quillet::avx2 {

void Invert(Byte* row, std::ptrdiff_t count, const PixelPattern& changes);
void Contrast(Byte* row, std::ptrdiff_t count, Integer factor);
void Fade(Byte* row, std::ptrdiff_t count, Byte level);
void SharpenByHalf(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
void SharpenByFourFifths(Byte* row, const Byte* diagonal, std::ptrdiff_t count);
void Blur(const Byte* upperLeft, Byte* row, const Byte* below, std::ptrdiff_t count);
void GrayScale(Byte* row, Long width);
void BlackWhite(Byte* row, Long width);
void Lighten(Byte* row, Long width, const LightenTable& table);

}  // namespace quillet::avx2
#endif
