#include <cstdlib>
#include <iostream>
#include <optional>

#include "control/events.h"
#include "tests/server/container.h"
#include "tests/server/control_library.h"
#include "tests/server/event_recorder.h"

// As shown_control, with quillet.ocx in a container: the system's (atl, atl100) or one of ours
// (own). The container's size is its user's too.

namespace {

using quillet::ComPtr;

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

// Gives a window edges that can be dragged, around the same inside.
void MakeResizable(HWND window) {
  RECT outside{0, 0, 300, 220};
  constexpr DWORD kStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_THICKFRAME;
  ::AdjustWindowRect(&outside, kStyle, FALSE);
  ::SetWindowLongPtrW(window, GWL_STYLE, static_cast<LONG>(kStyle));
  ::SetWindowPos(window, nullptr, outside.left, outside.top, outside.right - outside.left,
                 outside.bottom - outside.top, SWP_NOZORDER | SWP_FRAMECHANGED);
}

// A library of the system's with a window class that hosts a control.
class SystemsContainer {
 public:
  explicit SystemsContainer(const std::wstring& library)
      : m_library(::LoadLibraryW((library + L".dll").c_str())) {
    Entry<BOOL(WINAPI*)()>("AtlAxWinInit")();
    const std::wstring name = library == L"atl" ? L"AtlAxWin" : L"AtlAxWin100";
    m_window = ::CreateWindowExW(0, name.c_str(), L"", WS_POPUP | WS_VISIBLE, 0, 0, 300, 220,
                                 nullptr, nullptr, nullptr, nullptr);
  }
  SystemsContainer(const SystemsContainer&) = delete;
  SystemsContainer& operator=(const SystemsContainer&) = delete;
  ~SystemsContainer() { ::DestroyWindow(m_window); }

  HWND Window() const { return m_window; }
  void Show(::IUnknown& control) const {
    ComPtr<::IUnknown> container;
    Entry<HRESULT(WINAPI*)(::IUnknown*, HWND, ::IUnknown**)>("AtlAxAttachControl")(
        &control, m_window, container.Receive());
  }

 private:
  template <typename Function>
  Function Entry(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_library, name)));
  }

  HMODULE m_library;
  HWND m_window;
};

}  // namespace

int main(int argc, char** argv) {
  using namespace quillet;
  const std::string kind = argc > 1 ? argv[1] : "atl";
  const ControlLibrary library;
  {
    std::optional<SystemsContainer> systems;
    std::optional<Container> own;
    if (kind == "own")
      own.emplace(300, 220);
    else
      systems.emplace(std::wstring(kind.begin(), kind.end()));
    const HWND window = own ? own->Window() : systems->Window();
    MakeResizable(window);
    const auto control = library.Make();
    const auto object = As<IOleObject>(control);
    if (own)
      own->Show(*object.get());
    else
      systems->Show(*control.get());
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
      if (own) own->FitToWindow(*object.get());
      if (BarValue(window, false) == across && BarValue(window, true) == down) continue;
      across = BarValue(window, false);
      down = BarValue(window, true);
      std::cout << "bars " << across << ' ' << down << std::endl;
    }
    events.Disconnect();
    if (own) {
      object->Close(OLECLOSE_NOSAVE);
      object->SetClientSite(nullptr);
    }
  }
  return library.CanUnload() == S_OK ? 0 : 1;
}
