#include "picture/kernels/kernels.h"

#include "picture/kernels/geometry.h"

namespace quillet {
namespace {

// A set without a faster form of a kernel takes the simpler set's.
constexpr Kernels kScalar{InstructionSet::Scalar, scalar::SwapRows, scalar::ReverseRow,
                          scalar::RotateStrip};
#ifdef QUILLET_X86
constexpr Kernels kSse2{InstructionSet::Sse2, scalar::SwapRows, scalar::ReverseRow,
                        sse2::RotateStrip};
constexpr Kernels kAvx2{InstructionSet::Avx2, avx2::SwapRows, avx2::ReverseRow, avx2::RotateStrip};
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
