#include <gtest/gtest.h>

#include <cstdint>

// 32-bit hosts keep the stack aligned to 4 bytes only.
#ifdef __i386__

namespace quillet {
namespace {

volatile std::uintptr_t offsetOfVector;

void StoreOffsetOfVector() {
  alignas(16) char vector[16];
  char* address = vector;
  asm volatile("" : "+r"(address) : : "memory");  // hides what the compiler believes of it
  offsetOfVector = reinterpret_cast<std::uintptr_t>(address) % 16;
}

TEST(Stack, VectorsAreAlignedWhateverTheCallersStack) {
  void (*volatile call)() = StoreOffsetOfVector;
  void (*const target)() = call;
  asm volatile(
      "mov %%esp, %%esi\n\t"
      "and $-16, %%esp\n\t"
      "sub $4, %%esp\n\t"
      "call *%0\n\t"
      "mov %%esi, %%esp"
      :
      : "b"(target)
      : "esi", "eax", "ecx", "edx", "memory", "cc");
  EXPECT_EQ(offsetOfVector, 0u);
}

}  // namespace
}  // namespace quillet

#endif
