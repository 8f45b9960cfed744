#pragma once

#include <memory>

#include "platform/contracts/surface.h"

namespace quillet {

class TWAIN;

// The way from the surface into the control. It keeps the control alive until the event is over,
// whatever the host lets go of meanwhile, and ends every error there: an event has no caller that
// could take one.
class SurfaceDoor : public SurfaceEvents {
 public:
  explicit SurfaceDoor(std::weak_ptr<TWAIN> control) : m_control(std::move(control)) {}

  void UserControl_Resize() override;
  void UserControl_KeyDown(Integer& KeyCode, Integer& Shift) override;
  void UserControl_KeyPress(Integer& KeyAscii) override;
  void UserControl_KeyUp(Integer& KeyCode, Integer& Shift) override;
  void picTwain_Click() override;
  void picTwain_DblClick() override;
  void picTwain_MouseDown(Integer& Button, Integer& Shift, Single& X, Single& Y) override;
  void picTwain_MouseMove(Integer& Button, Integer& Shift, Single& X, Single& Y) override;
  void picTwain_MouseUp(Integer& Button, Integer& Shift, Single& X, Single& Y) override;
  void picTwain_Paint() override;
  void picTwain_Resize() override;
  void HScroll1_Change() override;
  void HScroll1_Scroll() override;
  void VScroll1_Change() override;
  void VScroll1_Scroll() override;

 private:
  template <typename Handler>
  void Enter(Handler&& handler);

  std::weak_ptr<TWAIN> m_control;
};

}  // namespace quillet
