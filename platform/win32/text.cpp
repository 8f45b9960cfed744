#include "platform/win32/text.h"

#include <limits>

#include "base/runtime_error.h"
#include "platform/win32/sdk.h"

namespace quillet {
namespace {

int CheckedLength(std::size_t length) {
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw RunTimeError(ErrorNumber::OutOfMemory);
  return static_cast<int>(length);
}

}  // namespace

std::wstring Utf16(std::string_view utf8) {
  const int length = CheckedLength(utf8.size());
  const int units = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
  std::wstring utf16(static_cast<std::size_t>(units), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, utf16.data(), units);
  return utf16;
}

std::string Utf8(std::wstring_view utf16) {
  const int length = CheckedLength(utf16.size());
  const int bytes =
      ::WideCharToMultiByte(CP_UTF8, 0, utf16.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, utf16.data(), length, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

}  // namespace quillet
