#include "picture/kernels/kernels.h"

#include "picture/kernels/geometry.h"
#include "picture/kernels/tone.h"

namespace quillet {
namespace {

// A set without a faster form of a kernel takes the simpler set's.
constexpr Kernels kScalar{.set = InstructionSet::Scalar,
                          .SwapRows = scalar::SwapRows,
                          .ReverseRow = scalar::ReverseRow,
                          .RotateStrip = scalar::RotateStrip,
                          .Invert = scalar::Invert,
                          .Contrast = scalar::Contrast,
                          .Fade = scalar::Fade,
                          .SharpenByHalf = scalar::SharpenByHalf,
                          .SharpenByFourFifths = scalar::SharpenByFourFifths,
                          .Blur = scalar::Blur,
                          .GrayScale = scalar::GrayScale,
                          .BlackWhite = scalar::BlackWhite,
                          .Lighten = scalar::Lighten};
#ifdef QUILLET_X86
constexpr Kernels kSse2{.set = InstructionSet::Sse2,
                        .SwapRows = scalar::SwapRows,
                        .ReverseRow = scalar::ReverseRow,
                        .RotateStrip = sse2::RotateStrip,
                        .Invert = sse2::Invert,
                        .Contrast = sse2::Contrast,
                        .Fade = sse2::Fade,
                        .SharpenByHalf = sse2::SharpenByHalf,
                        .SharpenByFourFifths = sse2::SharpenByFourFifths,
                        .Blur = sse2::Blur,
                        .GrayScale = sse2::GrayScale,
                        .BlackWhite = sse2::BlackWhite,
                        .Lighten = scalar::Lighten};
constexpr Kernels kAvx2{.set = InstructionSet::Avx2,
                        .SwapRows = avx2::SwapRows,
                        .ReverseRow = avx2::ReverseRow,
                        .RotateStrip = avx2::RotateStrip,
                        .Invert = avx2::Invert,
                        .Contrast = avx2::Contrast,
                        .Fade = avx2::Fade,
                        .SharpenByHalf = avx2::SharpenByHalf,
                        .SharpenByFourFifths = avx2::SharpenByFourFifths,
                        .Blur = avx2::Blur,
                        .GrayScale = avx2::GrayScale,
                        .BlackWhite = avx2::BlackWhite,
                        .Lighten = avx2::Lighten};
#endif

}  // namespace

const Kernels* KernelsFor(InstructionSet set) noexcept {
  switch (set) {
    case InstructionSet::Scalar:
      return &kScalar;
#ifdef QUILLET_X86
    case InstructionSet::Sse2:
      return &kSse2;
    case InstructionSet::Avx2:
      return __builtin_cpu_supports("avx2") ? &kAvx2 : nullptr;
#else
    case InstructionSet::Sse2:
    case InstructionSet::Avx2:
      return nullptr;
#endif
  }
  return nullptr;
}

const Kernels& BestKernels() noexcept {
  if (const Kernels* kernels = KernelsFor(InstructionSet::Avx2)) return *kernels;
  if (const Kernels* kernels = KernelsFor(InstructionSet::Sse2)) return *kernels;
  return kScalar;
}

}  // namespace quillet
