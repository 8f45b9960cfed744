// Hands the surface's and the buffer's events on to the host's sinks.

#include <array>

#include "control/TWAIN.h"

namespace quillet {

void TWAIN::RaiseEvent(Event event, std::span<Variant> arguments) {
  m_events.Raise(event, arguments);
}

template <typename... Values>
void TWAIN::RaiseByReference(Event event, Values&... values) {
  if (!m_events.HasSinks()) return;
  std::array<Variant, sizeof...(Values)> arguments{Variant(values)...};
  RaiseEvent(event, arguments);
  std::size_t index = 0;
  ((values = std::get<Values>(arguments[index++])), ...);
}

void TWAIN::UserControl_KeyDown(Integer& KeyCode, Integer& Shift) {
  RaiseByReference(Event::KeyDown, KeyCode, Shift);
}

void TWAIN::UserControl_KeyPress(Integer& KeyAscii) {
  RaiseByReference(Event::KeyPress, KeyAscii);
}

void TWAIN::UserControl_KeyUp(Integer& KeyCode, Integer& Shift) {
  RaiseByReference(Event::KeyUp, KeyCode, Shift);
}

void TWAIN::picTwain_Click() {
  RaiseEvent(Event::Click);
}

void TWAIN::picTwain_DblClick() {
  RaiseEvent(Event::DblClick);
}

void TWAIN::picTwain_MouseDown(Integer& Button, Integer& Shift, Single& X, Single& Y) {
  RaiseByReference(Event::MouseDown, Button, Shift, X, Y);
}

void TWAIN::picTwain_MouseMove(Integer& Button, Integer& Shift, Single& X, Single& Y) {
  RaiseByReference(Event::MouseMove, Button, Shift, X, Y);
}

void TWAIN::picTwain_MouseUp(Integer& Button, Integer& Shift, Single& X, Single& Y) {
  RaiseByReference(Event::MouseUp, Button, Shift, X, Y);
}

void TWAIN::picTwain_Paint() {
  RaiseEvent(Event::Paint);
}

void TWAIN::PIC24_Progress(Integer Percent) {
  if (!m_events.HasSinks()) return;
  std::array<Variant, 1> arguments{Percent};
  RaiseEvent(Event::Progress, arguments);
}

}  // namespace quillet
