#pragma once

#include <string>

#include "platform/win32/sdk.h"

namespace quillet {

// The text that appears when the mouse rests on a window. The tip's own window stands only while
// there is a text.
class ToolTip {
 public:
  ToolTip() = default;
  ToolTip(const ToolTip&) = delete;
  ToolTip& operator=(const ToolTip&) = delete;
  ~ToolTip() { Remove(); }

  // UTF-8; nothing appears for an empty text.
  void Show(HWND over, const std::string& text);
  void Remove() noexcept;

 private:
  HWND m_tip = nullptr;
};

}  // namespace quillet
