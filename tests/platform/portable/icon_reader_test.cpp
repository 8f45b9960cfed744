#include "platform/portable/icon_reader.h"

#include <gtest/gtest.h>

#include "tests/support/error_of.h"
#include "tests/support/icon_file.h"

namespace quillet {
namespace {

using Color = BmpFile::Color;

IconImage Read(const std::vector<Byte>& bytes) {
  MemorySource source(bytes);
  return ReadIcon(source);
}

std::vector<int> PixelAt(const IconImage& icon, int x, int y) {
  const std::size_t at = static_cast<std::size_t>(y * icon.width + x) * 4;
  return {icon.bgra[at], icon.bgra[at + 1], icon.bgra[at + 2], icon.bgra[at + 3]};
}

bool Left(Long x, Long) {
  return x < 2;
}

TEST(IconReader, TheMaskMakesPixelsTransparentAtEveryDepth) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    const bool indexed = depth <= 8;
    const std::vector<Color> palette{{0, 0, 0}, {10, 20, 30}};
    const IconImage icon = Read(IconFile({IconImageOf(
        5, 3, depth, indexed ? palette : std::vector<Color>{},
        [&](Long x, Long y) { return x == 3 && y == 1 ? indexed ? 1u : 0x1E140Au : 0u; }, Left)}));
    ASSERT_EQ(icon.width, 5) << depth;
    ASSERT_EQ(icon.height, 3) << depth;
    EXPECT_EQ(PixelAt(icon, 3, 1), (std::vector<int>{10, 20, 30, 255})) << depth;
    EXPECT_EQ(PixelAt(icon, 3, 0), (std::vector<int>{0, 0, 0, 255})) << depth;
    EXPECT_EQ(PixelAt(icon, 1, 1)[3], 0) << depth;
  }
}

TEST(IconReader, OpacityOfItsOwnComesBeforeTheMask) {
  const IconImage icon = Read(IconFile({IconImageOf(
      4, 4, 32, {}, [](Long x, Long) { return x == 0 ? 0x80112233u : 0u; }, Left)}));
  EXPECT_EQ(PixelAt(icon, 0, 2), (std::vector<int>{0x33, 0x22, 0x11, 0x80}));
  EXPECT_EQ(PixelAt(icon, 3, 2)[3], 0);
}

TEST(IconReader, TheLargestImageIsTakenAndOfThoseTheDeepest) {
  const auto eight = IconImageOf(
      16, 16, 8, {{1, 1, 1}}, [](Long, Long) { return 0u; }, [](Long, Long) { return false; });
  const IconEntry png{0, 0, 32, {0x89, 'P', 'N', 'G', 13, 10, 26, 10}};
  const IconImage icon =
      Read(IconFile({OpaqueIcon(8, 8, {2, 2, 2}), eight, OpaqueIcon(16, 16, {3, 3, 3}), png}));
  EXPECT_EQ(icon.width, 16);
  EXPECT_EQ(PixelAt(icon, 0, 0)[0], 3);
  EXPECT_EQ(ErrorOf([&] { Read(IconFile({png})); }), ErrorNumber::InvalidPicture);
}

TEST(IconReader, AnIconCutShortAnywhereIsRefused) {
  const std::vector<Byte> whole = IconFile({OpaqueIcon(8, 4, {1, 2, 3})});
  // The last row's alignment bytes are not missed.
  for (std::size_t size = 0; size < whole.size() - 3; ++size) {
    const std::vector<Byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(ErrorOf([&] { Read(cut); }), ErrorNumber::InvalidPicture) << size;
  }
}

}  // namespace
}  // namespace quillet
