#include "picture/kernels/x86.h"

#ifdef QUILLET_X86

#include "platform/portable/channel_swap.h"
#include "platform/portable/channel_swap_loop.h"

namespace quillet::avx2 {

void SwapRedAndBlue(const Byte* source, Byte* target, std::size_t count) noexcept {
  SwapLoop(source, target, count);
}

}  // namespace quillet::avx2

#endif
