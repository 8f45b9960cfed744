#pragma once

#include <string_view>

namespace quillet {

// The place in the host where one control stands.
class Site {
 public:
  virtual ~Site() = default;

  // A property changed. An exception is the failure of the property call; the value stays stored.
  virtual void PropertyChanged(std::string_view name) = 0;
};

}  // namespace quillet
