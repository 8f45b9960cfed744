#include "server/active_part.h"

namespace quillet {
namespace {

bool IsOwnKey(const ::MSG& message) {
  if (message.message != WM_KEYDOWN && message.message != WM_KEYUP) return false;
  switch (message.wParam) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_HOME:
    case VK_END:
      return true;
    default:
      return false;
  }
}

// The modifier keys that are held, as a container's site takes them (KEYMODIFIERS).
DWORD HeldModifiers() {
  constexpr DWORD kShift = 1, kControl = 2, kAlt = 4;
  return (::GetKeyState(VK_SHIFT) < 0 ? kShift : 0) |
         (::GetKeyState(VK_CONTROL) < 0 ? kControl : 0) | (::GetKeyState(VK_MENU) < 0 ? kAlt : 0);
}

}  // namespace

HRESULT ActivePart::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = nullptr;
  return Enter([&] {
    if (!m_core.Container().IsActive()) return E_FAIL;
    *window = m_core.Surface().UserControl().Window();
    return S_OK;
  });
}

HRESULT ActivePart::TranslateAccelerator(::MSG* message) {
  if (!message) return E_POINTER;
  return Enter([&]() -> HRESULT {
    if (IsOwnKey(*message) && ::IsChild(m_core.Surface().UserControl().Window(), message->hwnd)) {
      ::TranslateMessage(message);
      ::DispatchMessageW(message);
      return S_OK;
    }
    const ComPtr<IOleClientSite> site = m_core.Container().ClientSite();
    ComPtr<IOleControlSite> controls;
    if (!site || FAILED(site->QueryInterface(IID_IOleControlSite, controls.ReceiveVoid())))
      return S_FALSE;
    return controls->TranslateAccelerator(message, HeldModifiers());
  });
}

}  // namespace quillet
