#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "base/types.h"
#include "platform/contracts/handles.h"

namespace quillet {

// A mouse pointer of 32 x 32 pixels in two colours and what lies behind. Rows top-down, the highest
// bit leftmost: a pixel keeps the screen's bit where `screen` has one, and is then inverted where
// `image` has one (so neither is black, image alone is white).
struct FormPointer {
  std::array<std::uint32_t, 32> screen{};
  std::array<std::uint32_t, 32> image{};
  int hotSpotX = 0;
  int hotSpotY = 0;
};

// One control of a form. Places are twips of the form's client area. A line goes from (left, top)
// over `width` and `height`; a label breaks its text at its width.
struct FormControl {
  enum class Kind { Label, Button, Line };

  Kind kind = Kind::Label;
  std::string name{};
  Single left = 0, top = 0, width = 0, height = 0;
  std::string caption{};
  OLE_COLOR color = 0x80000012u;  // of a label's text or a line; button text if not said
  const FormPointer* pointer = nullptr;
};

// A dialog window of fixed size, centred on the screen.
struct Form {
  std::string caption{};
  Single scaleWidth = 0, scaleHeight = 0;  // of the client area, in twips
  std::vector<FormControl> controls{};
};

// A form that is shown, for the handler that it calls.
class ShownForm {
 public:
  virtual ~ShownForm() = default;

  virtual WindowHandle hWnd() const = 0;
  // Closes the form once the handler has returned.
  virtual void Unload() = 0;
};

// A form's handlers. Clicks do not throw.
class FormEvents {
 public:
  virtual ~FormEvents() = default;

  // The form as it is to be shown now.
  virtual Form Form_Load() = 0;
  // A label or button, by its name.
  virtual void Click(ShownForm& form, const std::string& control) = 0;
};

// Shows forms.
class ModalForms {
 public:
  virtual ~ModalForms() = default;

  // Loads the form and shows it modally, without an owner: the thread's messages go on, its other
  // windows take no input. Returns when the form is unloaded, by its handler or because the user
  // closed its window. Each name stands for one form: while it is shown, this returns at once.
  // Run-time error 7 when the window cannot be made.
  void Show(const std::string& name, FormEvents& events) {
    if (!m_shown.insert(name).second) return;
    const struct Mark {
      std::set<std::string>& shown;
      const std::string& name;
      ~Mark() { shown.erase(name); }
    } mark{m_shown, name};
    Run(events.Form_Load(), events);
  }

 private:
  virtual void Run(const Form& form, FormEvents& events) = 0;

  std::set<std::string> m_shown;
};

}  // namespace quillet
