#include "platform/portable/channel_swap.h"

#include "picture/kernels/kernels.h"
#include "picture/kernels/x86.h"
#include "platform/portable/channel_swap_loop.h"

namespace quillet {

void SwapRedAndBlue(const Byte* source, Byte* target, std::size_t count) noexcept {
#ifdef QUILLET_X86
  if (BestKernels().set == InstructionSet::Avx2) {
    avx2::SwapRedAndBlue(source, target, count);
    return;
  }
#endif
  SwapLoop(source, target, count);
}

}  // namespace quillet
