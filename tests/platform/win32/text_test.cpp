#include "platform/win32/text.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

TEST(Text, GoesThroughTheSystemsEncodingUnharmed) {
  const struct {
    std::string utf8;
    std::wstring utf16;
  } cases[] = {{"", L""},
               {"page 1.bmp", L"page 1.bmp"},
               {"\xC3\x84rger \xE2\x82\xAC.png", L"\u00C4rger \u20AC.png"},
               {"\xF0\x9F\x96\xA8", L"\U0001F5A8"},
               {std::string("a\0b", 3), std::wstring(L"a\0b", 3)}};
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(Utf16(utf8), utf16) << utf8;
    EXPECT_EQ(Utf8(utf16), utf8) << utf8;
  }
}

TEST(Text, WhatIsNoTextIsReplaced) {
  EXPECT_EQ(Utf16("a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(Utf8(std::wstring{L'a', wchar_t{0xD800}, L'z'}), "a\xEF\xBF\xBDz");
}

}  // namespace
}  // namespace quillet
