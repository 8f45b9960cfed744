#pragma once

#include <concepts>

#include "platform/contracts/platform.h"

namespace quillet {

// The platform with a service of the test's own in place of its own service of that kind.
template <typename Own>
Platform PlatformWith(Own& own, const Platform& rest) {
  const auto either = [&own]<typename Service>(Service& usual) -> Service& {
    if constexpr (std::derived_from<Own, Service>)
      return own;
    else
      return usual;
  };
  return {either(rest.bitmaps), either(rest.pictures), either(rest.memory), either(rest.messages),
          either(rest.sources), either(rest.files),    either(rest.codecs), either(rest.dialogs),
          either(rest.forms),   either(rest.system)};
}

}  // namespace quillet
