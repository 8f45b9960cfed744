#include "tests/contracts/platform_traits.h"

namespace quillet {

PlatformTraits TraitsOfPlatform() {
  return {};
}

}  // namespace quillet
