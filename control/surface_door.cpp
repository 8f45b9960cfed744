#include "control/surface_door.h"

#include "control/TWAIN.h"
#include "control/attempt.h"

namespace quillet {

template <typename Handler>
void SurfaceDoor::Enter(Handler&& handler) {
  // Letting go of the control may destroy this door too, as the last thing that happens here.
  const std::shared_ptr<TWAIN> control = m_control.lock();
  if (control) Attempt([&] { handler(*control); });
}

void SurfaceDoor::UserControl_Resize() {
  Enter([](TWAIN& control) { control.UserControl_Resize(); });
}
void SurfaceDoor::UserControl_KeyDown(Integer& KeyCode, Integer& Shift) {
  Enter([&](TWAIN& control) { control.UserControl_KeyDown(KeyCode, Shift); });
}
void SurfaceDoor::UserControl_KeyPress(Integer& KeyAscii) {
  Enter([&](TWAIN& control) { control.UserControl_KeyPress(KeyAscii); });
}
void SurfaceDoor::UserControl_KeyUp(Integer& KeyCode, Integer& Shift) {
  Enter([&](TWAIN& control) { control.UserControl_KeyUp(KeyCode, Shift); });
}
void SurfaceDoor::picTwain_Click() {
  Enter([](TWAIN& control) { control.picTwain_Click(); });
}
void SurfaceDoor::picTwain_DblClick() {
  Enter([](TWAIN& control) { control.picTwain_DblClick(); });
}
void SurfaceDoor::picTwain_MouseDown(Integer& Button, Integer& Shift, Single& X, Single& Y) {
  Enter([&](TWAIN& control) { control.picTwain_MouseDown(Button, Shift, X, Y); });
}
void SurfaceDoor::picTwain_MouseMove(Integer& Button, Integer& Shift, Single& X, Single& Y) {
  Enter([&](TWAIN& control) { control.picTwain_MouseMove(Button, Shift, X, Y); });
}
void SurfaceDoor::picTwain_MouseUp(Integer& Button, Integer& Shift, Single& X, Single& Y) {
  Enter([&](TWAIN& control) { control.picTwain_MouseUp(Button, Shift, X, Y); });
}
void SurfaceDoor::picTwain_Paint() {
  Enter([](TWAIN& control) { control.picTwain_Paint(); });
}
void SurfaceDoor::picTwain_Resize() {
  Enter([](TWAIN& control) { control.picTwain_Resize(); });
}
void SurfaceDoor::HScroll1_Change() {
  Enter([](TWAIN& control) { control.HScroll1_Change(); });
}
void SurfaceDoor::HScroll1_Scroll() {
  Enter([](TWAIN& control) { control.HScroll1_Scroll(); });
}
void SurfaceDoor::VScroll1_Change() {
  Enter([](TWAIN& control) { control.VScroll1_Change(); });
}
void SurfaceDoor::VScroll1_Scroll() {
  Enter([](TWAIN& control) { control.VScroll1_Scroll(); });
}

}  // namespace quillet
