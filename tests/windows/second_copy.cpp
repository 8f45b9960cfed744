// A second copy of the control's windows in the process, in a library that comes and goes.

#include <memory>

#include "platform/win32/win32_platform.h"

namespace {

struct Copy {
  quillet::Win32Platform platform;
  std::shared_ptr<quillet::Win32Surface> surface = platform.CreateSurface(100, 80);
};

std::unique_ptr<Copy>& TheCopy() {
  static std::unique_ptr<Copy> copy;
  return copy;
}

}  // namespace

extern "C" {

// The control's window, shown in the host's, with a tool tip or without.
__declspec(dllexport) HWND WINAPI ShowControl(HWND host, const char* tip) {
  TheCopy() = std::make_unique<Copy>();
  quillet::Win32Surface& surface = *TheCopy()->surface;
  surface.picTwain().PutToolTipText(tip);
  surface.Site(host, {0, 0, 104, 84});
  return surface.UserControl().Window();
}

// As the start of a thread, too.
__declspec(dllexport) DWORD WINAPI LetGoOfSurface(void*) {
  TheCopy()->surface.reset();
  return 0;
}

__declspec(dllexport) void WINAPI LetGoOfPlatform() {
  TheCopy().reset();
}
}
