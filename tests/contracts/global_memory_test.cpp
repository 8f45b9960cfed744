#include "platform/contracts/global_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "embed/stage.h"
#include "tests/support/print_census.h"

namespace quillet {
namespace {

class GlobalMemoryContract : public testing::Test {
 protected:
  ~GlobalMemoryContract() override { EXPECT_EQ(m_platform->Census(), CensusCounts{}); }

  std::unique_ptr<Stage> m_platform = MakeStage();
  GlobalMemory& memory = m_platform->Contracts().memory;
};

TEST_F(GlobalMemoryContract, ABlockIsZeroKeepsItsBytesAndGoes) {
  for (const std::size_t size : {std::size_t{6}, std::size_t{5} << 20}) {
    const GlobalHandle block = memory.GlobalAlloc(size);
    ASSERT_NE(block, GlobalHandle::None);
    EXPECT_GE(memory.GlobalSize(block), size);
    {
      const GlobalLockGuard lock(memory, block);
      auto* const bytes = static_cast<unsigned char*>(lock.get());
      ASSERT_TRUE(bytes);
      EXPECT_EQ(bytes[0] | bytes[size / 2] | bytes[size - 1], 0);
      std::memset(bytes, 7, size);
      const GlobalLockGuard again(memory, block);
      EXPECT_EQ(static_cast<unsigned char*>(again.get())[size - 1], 7);
    }
    EXPECT_EQ(m_platform->Census().globalBlocks, 1);
    EXPECT_TRUE(memory.GlobalFree(block));
    EXPECT_FALSE(memory.GlobalFree(block));
    EXPECT_EQ(memory.GlobalLock(block), nullptr);
    EXPECT_EQ(memory.GlobalSize(block), 0u);
    memory.GlobalUnlock(block);
  }
}

TEST_F(GlobalMemoryContract, WhatIsNoBlockIsRefused) {
  for (const GlobalHandle handle : {GlobalHandle::None, GlobalHandle{1}, GlobalHandle{0x7FFF0}}) {
    EXPECT_EQ(memory.GlobalLock(handle), nullptr);
    EXPECT_EQ(memory.GlobalSize(handle), 0u);
    EXPECT_FALSE(memory.GlobalFree(handle));
  }
  EXPECT_EQ(memory.GlobalAlloc(SIZE_MAX), GlobalHandle::None);
  EXPECT_EQ(memory.GlobalAlloc(SIZE_MAX / 2), GlobalHandle::None);
}

}  // namespace
}  // namespace quillet
