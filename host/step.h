#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "control/dispatch.h"
#include "embed/control_window.h"

namespace quillet {

// What one step does. Sizes and points are pixels of the control's inside.

struct ReadProperty {
  const Member* member;
};
struct WriteProperty {
  const Member* member;
  std::string value;
};
struct CallMethod {
  const Member* member;
  std::vector<std::optional<std::string>> arguments;  // none: an omitted argument
};
struct TakeSnapshot {
  std::string file;
};
struct ResizeControl {
  int width, height;
};
struct DragThumb {
  Bar bar;
  Integer value;
};
struct ClickArrow {
  Bar bar;
  bool forward;
};
struct ClickPage {
  Bar bar;
  bool forward;
};
struct UseMouse {
  MouseAction action;
  int x, y;
  Integer button, shift;
};
struct PressKey {
  KeyAction action;
  Integer code, shift;
};
struct ReportLayout {};
struct KeepPicture {
  std::string name;  // in lower case
};
// What the user will do in the next source chooser, and in the next dialog of a source.
struct ChooseSource {
  std::string name;
};
struct PressSourceButton {
  bool scan;  // else Cancel
};
// What the user will do in the next file dialog.
struct TypeFileName {
  std::string fileName;
  bool yes;  // to the question that may follow
};
struct CancelFileDialog {};
// The host closes the window and lets go of the control.
struct CloseWindow {};

// The control's settings, from and to a property file.
struct LoadProperties {
  std::string file;
};
struct SaveProperties {
  std::string file;
};

// A click on a control of the open form.
struct ClickForm {
  const char* control;
};

struct Step {
  using Action =
      std::variant<ReadProperty, WriteProperty, CallMethod, TakeSnapshot, ResizeControl, DragThumb,
                   ClickArrow, ClickPage, UseMouse, PressKey, ReportLayout, KeepPicture,
                   ChooseSource, PressSourceButton, TypeFileName, CancelFileDialog, CloseWindow,
                   ClickForm, LoadProperties, SaveProperties>;

  std::string text;  // as it was given, for messages
  Action action;
};

// One step of the command line. UsageError for an unknown name, a property that cannot be written,
// or anything else that could not run whatever the control's state.
Step ParseStep(std::string_view text);

// A size as in 800x600, each side 0 to 32767; UsageError for anything else.
struct Size {
  int width, height;
};
Size ParseSize(std::string_view text);

// The name under which `@name`, given where a picture is expected, was kept; none for a file's
// name.
std::optional<std::string> KeptName(std::string_view picture);

// The names of kept pictures that the step asks for.
std::vector<std::string> KeptNamesIn(const Step& step);

}  // namespace quillet
