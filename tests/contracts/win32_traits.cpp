#include "platform/win32/sdk.h"
#include "tests/contracts/platform_traits.h"
#include "tests/windows/wine.h"

namespace quillet {

PlatformTraits TraitsOfPlatform() {
  const HDC screen = ::GetDC(nullptr);
  const int depth = ::GetDeviceCaps(screen, BITSPIXEL);
  ::ReleaseDC(nullptr, screen);
  return {.depthOfCopies = depth,
          .copyMayBeItsSource = true,
          .folderSeparator = '\\',
          .filesShowWhoMayRead = false,
          .savesAskBeforeCreating = !IsWine(),
          .depthOfLoaded = 32,
          .jpegHeedsQuality = !IsWine(),
          .gifTakesEveryDepth = !IsWine()};
}

}  // namespace quillet
