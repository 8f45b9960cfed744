#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/contracts/property_bag.h"
#include "platform/win32/sdk.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// Settings in memory, and as the content of a stream: a mark, the number of settings, then each
// one's key, kind and value. Numbers are little-endian, texts UTF-8 behind their length; a picture
// is what the system's picture object saves of itself.
class StreamBag : public PropertyBag {
 public:
  explicit StreamBag(Win32Pictures& pictures) noexcept : m_pictures(pictures) {}

  // Run-time error 440 for a stream that fails or holds something else.
  void ReadFrom(IStream& stream);
  void WriteTo(IStream& stream) const;

  Variant ReadProperty(const std::string& key, const Variant& defaultValue) override;
  void WriteProperty(const std::string& key, const Variant& value,
                     const Variant& defaultValue) override;

 private:
  Win32Pictures& m_pictures;
  std::vector<std::pair<std::string, Variant>> m_settings;
};

}  // namespace quillet
