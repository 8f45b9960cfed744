#include "platform/win32/tool_tip.h"

#include <utility>

#include "platform/win32/text.h"
#include "platform/win32/window_classes.h"

namespace quillet {

void ToolTip::Show(HWND over, const std::string& text) {
  Remove();
  if (text.empty()) return;
  std::wstring wide = Utf16(text);
  INITCOMMONCONTROLSEX needed{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
  ::InitCommonControlsEx(&needed);
  m_tip = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, nullptr, nullptr,
                            ThisModule(), nullptr);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;  // what every version of the library takes
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = over;
  tool.uId = reinterpret_cast<UINT_PTR>(over);
  tool.lpszText = wide.data();
  if (m_tip) ::SendMessageW(m_tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ToolTip::Remove() noexcept {
  if (m_tip) ::DestroyWindow(std::exchange(m_tip, nullptr));
}

}  // namespace quillet
