// A complete host of the control: puts it in a window, listens to it, scans a page, lets the person
// scroll, fits the page into the view, saves it, and keeps a picture of the window.

#include <quillet/quillet.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace {

using quillet::Event;
using quillet::Variant;

// Hears the control's events. Arguments by reference may be changed: a key code of 0 is a key
// eaten.
class Listener : public quillet::EventSink {
 public:
  void Invoke(Event event, std::span<Variant> arguments) override {
    switch (event) {
      case Event::Paint:  // the time to put what the window captures on the display
      case Event::MouseMove:
        return;
      case Event::Progress: {  // one for each row
        const bool isNews = std::exchange(m_progress, arguments[0]) != arguments[0];
        if (!isNews || quillet::VariantToLong(arguments[0]) % 50 != 0) return;
        break;
      }
      case Event::KeyDown:
        if (arguments[0] == Variant(kEscape)) arguments[0] = quillet::Integer{0};
        break;
      default:
        break;
    }
    std::cout << "event " << quillet::Describe(event).name;
    for (const Variant& argument : arguments)
      std::cout << ' ' << quillet::VariantToString(argument);
    std::cout << '\n';
  }

 private:
  static constexpr quillet::Integer kEscape = 27;
  Variant m_progress;
};

// The property sheet of a form's designer would mark the form as changed.
class Form : public quillet::Site {
 public:
  void PropertyChanged(std::string_view name) override { std::cout << "changed " << name << '\n'; }
};

// A real host hands these pixels to its own toolkit.
void WriteImage(const std::string& fileName, const quillet::Snapshot& seen) {
  std::ofstream file(fileName, std::ios::binary);
  file << "P6\n" << seen.width << ' ' << seen.height << "\n255\n";
  file.write(reinterpret_cast<const char*>(seen.rgb.data()),
             static_cast<std::streamsize>(seen.rgb.size()));
}

void ScanAndSave() {
  using enum quillet::MouseAction;

  // The platform first: what stands on it is let go of before it.
  const auto stage = quillet::MakeStage();
  const auto window = stage->OpenWindow(400, 300);
  quillet::Control control(stage->Contracts(), window->ControlsSurface(), std::make_shared<Form>());
  control.Connect(std::make_shared<Listener>());

  control.Put("BackColor", 0x808080);
  control.Put("Resolution", 150);
  control.Put("ColorType", quillet::twRGB);
  control.Call("Scan");
  std::cout << "scanned " << quillet::VariantToLong(control.Get("BitmapWidth")) << " x "
            << quillet::VariantToLong(control.Get("BitmapHeight")) << '\n';

  // What the person does goes to the window, which finds out what it lands on.
  window->Mouse(Click, 20, 30, 1, 0);
  window->DragThumb(quillet::Bar::Vertical, 700);
  window->Key(quillet::KeyAction::Down, 27, 0);

  control.Call("Contrast", 2);
  control.Call("Fit", quillet::twFITINTO);
  window->Idle();  // from the host's message loop, when it has nothing else to do
  WriteImage("window.ppm", window->Capture());

  control.Put("FileType", quillet::twPNG);
  control.Put("filename", "page.png");
  const auto status = quillet::VariantToLong(control.Call("Save"));
  if (status != 0) throw std::runtime_error("not saved: status " + std::to_string(status));
  std::cout << "saved page.png\n";

  try {
    control.Put("Quality", 70000);
  } catch (const quillet::RunTimeError& error) {
    std::cout << "run-time error " << static_cast<int>(error.Number()) << ": " << error.what()
              << '\n';
  }
}

}  // namespace

int main() try {
  ScanAndSave();
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "scan_and_save: " << error.what() << '\n';
  return EXIT_FAILURE;
}
