#include <cstdlib>
#include <iostream>

#include "control/events.h"
#include "tests/server/control_library.h"
#include "tests/server/event_recorder.h"

// As shown_control, with quillet.ocx in the system's own container.

namespace {

struct BarSearch {
  bool isVertical;
  LONG value;
};

BOOL CALLBACK Look(HWND window, LPARAM search) {
  auto& found = *reinterpret_cast<BarSearch*>(search);
  wchar_t name[16] = L"";
  ::GetClassNameW(window, name, 16);
  const bool isVertical = (::GetWindowLongW(window, GWL_STYLE) & SBS_VERT) != 0;
  if (::lstrcmpiW(name, L"ScrollBar") == 0 && isVertical == found.isVertical)
    found.value = ::GetScrollPos(window, SB_CTL);
  return TRUE;
}

LONG BarValue(HWND container, bool isVertical) {
  BarSearch search{isVertical, 0};
  ::EnumChildWindows(container, Look, reinterpret_cast<LPARAM>(&search));
  return search.value;
}

}  // namespace

int main() {
  using namespace quillet;
  const ControlLibrary library;
  const HMODULE atl = ::LoadLibraryW(L"atl.dll");
  const auto entry = [&](const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(atl, name));
  };
  reinterpret_cast<BOOL(WINAPI*)()>(entry("AtlAxWinInit"))();
  const HWND window = ::CreateWindowExW(0, L"AtlAxWin", L"", WS_POPUP | WS_VISIBLE, 0, 0, 300, 220,
                                        nullptr, nullptr, nullptr, nullptr);
  {
    const auto control = library.Make();
    ComPtr<::IUnknown> container;
    if (FAILED(reinterpret_cast<HRESULT(WINAPI*)(::IUnknown*, HWND, ::IUnknown**)>(
            entry("AtlAxAttachControl"))(control.get(), window, container.Receive())))
      return 1;
    control->putref_Picture(BlackPicture(600, 500).get());
    control->put_MousePointer(2);
    EventRecorder events(control);
    const auto tell = [&] {
      for (const std::string& line : events.TakeLog()) std::cout << line << std::endl;
    };
    bool ended = false;
    events.onEvent = [&](DISPID event, DISPPARAMS& arguments) {
      tell();
      if (event == static_cast<DISPID>(Event::KeyDown))
        ended = *arguments.rgvarg[1].piVal == VK_ESCAPE;
    };
    std::cout << "shown on " << std::getenv("DISPLAY") << std::endl;

    LONG across = BarValue(window, false), down = BarValue(window, true);
    ::MSG message;
    while (!ended && ::GetMessageW(&message, nullptr, 0, 0) > 0) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
      if (BarValue(window, false) == across && BarValue(window, true) == down) continue;
      across = BarValue(window, false);
      down = BarValue(window, true);
      std::cout << "bars " << across << ' ' << down << std::endl;
    }
  }
  ::DestroyWindow(window);
  return library.CanUnload() == S_OK ? 0 : 1;
}
