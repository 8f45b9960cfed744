#include <gtest/gtest.h>

#include <cstdint>

#include "tests/support/hosted_control.h"

// 32-bit hosts call with a stack that is aligned to 4 bytes only, and with the floating-point unit
// set as they or their libraries like it.
#ifdef __i386__

namespace quillet {
namespace {

// Calls with a stack pointer that is so many bytes below a multiple of 16.
void CallWithStackAt(std::uint32_t distance, void (*target)(void*), void* argument) {
  asm volatile(
      "mov %%esp, %%esi\n\t"
      "and $-16, %%esp\n\t"
      "sub %%eax, %%esp\n\t"
      "push %%edi\n\t"
      "call *%%ebx\n\t"
      "mov %%esi, %%esp"
      : "+a"(distance)
      : "b"(target), "D"(argument)
      : "esi", "ecx", "edx", "st", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7",
        "memory", "cc");
}

std::uint16_t ControlWord() {
  std::uint16_t word = 0;
  asm volatile("fnstcw %0" : "=m"(word));
  return word;
}
void SetControlWord(std::uint16_t word) {
  asm volatile("fldcw %0" : : "m"(word));
}

// What a page comes to through all arithmetic of the control, and the layout of its view.
struct Work {
  PixelRows24 pixels;
  Long zoomedWidth = 0;
  std::string layout;

  bool operator==(const Work&) const = default;
};

void DoWork(void* result) {
  HostedControl hosted(83, 71);
  hosted.Assign(165, 97);
  for (const char* const effect : {"Sharpen", "Blur", "SharpenMore", "Invert", "Flip", "Rotate"})
    hosted.Call(effect);
  hosted.Call("Contrast", Integer{2});
  hosted.Call("Fade", Integer{77});
  hosted.Call("Lighten", Long{13});
  auto& work = *static_cast<Work*>(result);
  work.pixels = PixelsOf(hosted.contracts, hosted.Picture());
  hosted.Call("Zoom", Integer{110});
  work.zoomedWidth = hosted.BarMax(Bar::Horizontal);
  hosted.Call("GrayScale");
  hosted.Call("BlackWhite");
  work.layout = hosted.Layout();
}

Work Expected() {
  Work work;
  DoWork(&work);
  return work;
}

void StoreOffsetOfVector(void* offset) {
  alignas(16) char vector[16];
  char* address = vector;
  asm volatile("" : "+r"(address) : : "memory");  // hides what the compiler believes of it
  *static_cast<std::uintptr_t*>(offset) = reinterpret_cast<std::uintptr_t>(address) % 16;
}

TEST(CallersState, VectorsAreAlignedOnAnyStackAndTheControlWorksThere) {
  const Work expected = Expected();
  for (const std::uint32_t distance : {0u, 4u, 8u, 12u}) {
    SCOPED_TRACE(distance);
    std::uintptr_t offset = 99;
    CallWithStackAt(distance, StoreOffsetOfVector, &offset);
    EXPECT_EQ(offset, 0u);
    Work work;
    CallWithStackAt(distance, DoWork, &work);
    EXPECT_EQ(work.pixels, expected.pixels);
    EXPECT_EQ(work, expected);
  }
}

TEST(CallersState, ThePrecisionOfTheFloatingPointUnitChangesNoResult) {
  const Work expected = Expected();
  const std::uint16_t before = ControlWord();
  constexpr std::uint16_t kPrecision = 0x300;
  // Of 24, 53 and 64 bits.
  for (const std::uint16_t precision : {std::uint16_t{0}, std::uint16_t{0x200}, kPrecision}) {
    SCOPED_TRACE(precision);
    SetControlWord(static_cast<std::uint16_t>((before & ~kPrecision) | precision));
    Work work;
    DoWork(&work);
    const std::uint16_t after = ControlWord();
    SetControlWord(before);
    EXPECT_EQ(after & kPrecision, precision) << "the host's setting stays";
    EXPECT_EQ(work.pixels, expected.pixels);
    EXPECT_EQ(work, expected);
  }
}

}  // namespace
}  // namespace quillet

#endif
