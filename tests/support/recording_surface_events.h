#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/contracts/surface.h"

namespace quillet {

// Writes every surface event down as text, "MouseDown 1 0 5 7", and then runs `during` with it.
// Bars are "H" and "V".
class RecordingSurfaceEvents : public SurfaceEvents {
 public:
  std::function<void(const std::string&)> during;
  // Leaves 0 in the key of KeyDown and KeyPress.
  bool eatKeys = false;

  std::vector<std::string> Take() { return std::exchange(m_log, {}); }

  void UserControl_Resize() override { Record("Resize"); }
  void UserControl_KeyDown(Integer& KeyCode, Integer& Shift) override {
    Record("KeyDown", KeyCode, Shift);
    if (eatKeys) KeyCode = 0;
  }
  void UserControl_KeyPress(Integer& KeyAscii) override {
    Record("KeyPress", KeyAscii);
    if (eatKeys) KeyAscii = 0;
  }
  void UserControl_KeyUp(Integer& KeyCode, Integer& Shift) override {
    Record("KeyUp", KeyCode, Shift);
  }
  void picTwain_Click() override { Record("Click"); }
  void picTwain_DblClick() override { Record("DblClick"); }
  void picTwain_MouseDown(Integer& Button, Integer& Shift, Single& X, Single& Y) override {
    Record("MouseDown", Button, Shift, X, Y);
  }
  void picTwain_MouseMove(Integer& Button, Integer& Shift, Single& X, Single& Y) override {
    Record("MouseMove", Button, Shift, X, Y);
  }
  void picTwain_MouseUp(Integer& Button, Integer& Shift, Single& X, Single& Y) override {
    Record("MouseUp", Button, Shift, X, Y);
  }
  void picTwain_Paint() override { Record("Paint"); }
  void picTwain_Resize() override { Record("BoxResize"); }
  void HScroll1_Change() override { Record("H Change"); }
  void HScroll1_Scroll() override { Record("H Scroll"); }
  void VScroll1_Change() override { Record("V Change"); }
  void VScroll1_Scroll() override { Record("V Scroll"); }

 private:
  template <typename... Arguments>
  void Record(const char* name, Arguments... arguments) {
    std::ostringstream text;
    text << name;
    ((text << ' ' << arguments), ...);
    m_log.push_back(text.str());
    if (during) during(text.str());
  }

  std::vector<std::string> m_log;
};

}  // namespace quillet
