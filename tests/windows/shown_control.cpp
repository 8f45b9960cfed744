#include <cstdlib>
#include <iostream>

#include "platform/win32/sdk.h"
#include "tests/support/hosted_control.h"

// Shows a control with a picture larger than its view, and prints where it shows, its events and
// the positions of its bars, as a person uses it with the real mouse and keyboard. Ends when Escape
// is pressed.

int main() {
  using namespace quillet;
  HostedControl hosted(300, 220);
  hosted.Assign(600, 500);
  hosted.Put("ToolTipText", std::string("a tip"));
  hosted.Put("MousePointer", Integer{2});
  hosted.window->Idle();
  hosted.TakeLog();

  const auto tell = [&] {
    for (const std::string& line : hosted.TakeLog()) std::cout << line << std::endl;
  };
  bool ended = false;
  hosted.onEvent = [&](Event event, std::span<Variant> arguments) {
    tell();
    if (event == Event::KeyDown) ended = VariantToInteger(arguments[0]) == VK_ESCAPE;
  };
  std::cout << "shown on " << std::getenv("DISPLAY") << std::endl;

  Long across = 0, down = 0;
  ::MSG message;
  while (!ended && ::GetMessageW(&message, nullptr, 0, 0) > 0) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
    if (hosted.BarValue(Bar::Horizontal) == across && hosted.BarValue(Bar::Vertical) == down)
      continue;
    across = hosted.BarValue(Bar::Horizontal);
    down = hosted.BarValue(Bar::Vertical);
    std::cout << "bars " << across << ' ' << down << std::endl;
  }
}
