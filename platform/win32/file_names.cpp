#include "platform/win32/file_names.h"

#include "platform/win32/sdk.h"
#include "platform/win32/text.h"

namespace quillet {
namespace {

// A folder's name must leave room for a short file name behind it.
constexpr std::size_t kLongest = MAX_PATH - 12;

}  // namespace

std::wstring SystemFileName(const std::string& name) {
  if (name.find('\0') != std::string::npos) return {};
  std::wstring system = Utf16(name);
  if (system.size() < kLongest || system.starts_with(LR"(\\?\)")) return system;
  std::wstring full(::GetFullPathNameW(system.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(
      ::GetFullPathNameW(system.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + full.substr(1) : LR"(\\?\)" + full;
}

bool IsFolder(const std::wstring& name) noexcept {
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace quillet
