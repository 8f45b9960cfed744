#include "platform/portable/pixel_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>

#include "platform/portable/dib.h"

namespace quillet {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

TEST(PixelMemory, AFreshLargeBlockHoldsZerosToItsLastByte) {
  for (const std::size_t size : {2 * kMegabyte, 5 * kMegabyte + 12345}) {
    PixelMemory memory(size);
    ASSERT_TRUE(memory.StartsZeroed());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory.Data()) % 64, 0u);
    EXPECT_EQ(memory.Data()[0], 0);
    EXPECT_EQ(memory.Data()[size - 1], 0);
    std::memset(memory.Data(), 1, size);
  }
}

TEST(PixelMemory, WhatOnePictureLetGoOfServesTheNextThatIsNoLarger) {
  const auto reserve = std::make_shared<BlockReserve>();
  const Byte* first = nullptr;
  {
    PixelMemory memory(8 * kMegabyte, reserve);
    first = memory.Data();
    std::memset(memory.Data(), 7, memory.Size());
  }
  PixelMemory smaller(5 * kMegabyte, reserve);
  EXPECT_EQ(smaller.Data(), first);
  EXPECT_FALSE(smaller.StartsZeroed());
  EXPECT_FALSE(reserve->Take(2 * kMegabyte).has_value()) << "its rest was kept";
}

TEST(PixelMemory, TheReserveKeepsTheLargerOfTwoAndNothingBesideAFreshBlock) {
  const auto reserve = std::make_shared<BlockReserve>();
  const auto letGo = [&](std::size_t size) { PixelMemory(size, reserve); };
  {
    PixelMemory a(4 * kMegabyte, reserve);
    PixelMemory b(6 * kMegabyte, reserve);
    PixelMemory c(2 * kMegabyte, reserve);
  }
  EXPECT_TRUE(reserve->Take(6 * kMegabyte).has_value());

  letGo(4 * kMegabyte);
  PixelMemory larger(9 * kMegabyte, reserve);
  EXPECT_TRUE(larger.StartsZeroed());
  EXPECT_FALSE(reserve->Take(kMegabyte).has_value());

  letGo(4 * kMegabyte);
  reserve->GiveBack();
  EXPECT_FALSE(reserve->Take(kMegabyte).has_value());
}

TEST(PixelMemory, ABitmapInReusedMemoryHasClearAlignmentBytes) {
  const auto reserve = std::make_shared<BlockReserve>();
  const Dib::Format format{.width = 1001, .height = 1000, .depth = 24};
  {
    Dib before(format, reserve);
    std::memset(before.WritableBits(), 0xFF, static_cast<std::size_t>(before.Stride()) * 1000);
  }
  const Dib dib(format, reserve);
  ASSERT_EQ(dib.Row(0)[0], 0xFF) << "not reused: the test shows nothing";
  for (Long y = 0; y < 1000; ++y) ASSERT_EQ(dib.Row(y)[3003], 0) << y;
}

}  // namespace
}  // namespace quillet
