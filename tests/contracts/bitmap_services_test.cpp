#include "platform/contracts/bitmap_services.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "tests/contracts/contract_platform.h"
#include "tests/support/pictures.h"

namespace quillet {
namespace {

class BitmapServicesContract : public testing::Test {
 protected:
  ~BitmapServicesContract() override { EXPECT_EQ(m_platform->Census(), CensusCounts{}); }

  std::unique_ptr<ContractPlatform> m_platform = MakeContractPlatform();
  Platform& platform = m_platform->Contracts();
  BitmapServices& services = platform.bitmaps;
};

TEST_F(BitmapServicesContract, ABitmapTellsItsSizeAndDepth) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 5, 3, Gradient);
  BITMAP record;
  ASSERT_TRUE(services.GetObjectA(bitmap.get(), record));
  EXPECT_EQ(record.bmWidth, 5);
  EXPECT_EQ(record.bmHeight, 3);
  EXPECT_EQ(record.bmBitsPixel, 24);
  EXPECT_EQ(record.bmWidthBytes, 16);
}

TEST_F(BitmapServicesContract, WhatIsWrittenThroughBitsIsReadBackInEitherRowOrder) {
  const UniqueBitmap bitmap = MakeBitmap(platform, 5, 3, Gradient);
  EXPECT_EQ(PixelsOf(platform, bitmap.get()), RowsOf(5, 3, Gradient));

  const UniqueDC dc(services);
  PixelRows24 upwards = RowsOf(5, 3, [](Long, Long) { return Pixel{}; });
  upwards.bytes.assign(upwards.bytes.size(), 0xEE);
  ASSERT_EQ(services.GetDIBits(dc.get(), bitmap.get(), 3, upwards.bytes.data(), Header24(5, 3)), 3);
  EXPECT_EQ(upwards, RowsOf(5, 3, [](Long x, Long y) { return Gradient(x, 2 - y); }));
}

}  // namespace
}  // namespace quillet
