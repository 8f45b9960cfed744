#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/types.h"
#include "platform/contracts/surface.h"

namespace quillet {

// What a person sees: RGB, 3 bytes a pixel, rows top-down without padding.
struct Snapshot {
  int width = 0;
  int height = 0;
  std::vector<Byte> rgb;
};

enum class Bar { Horizontal, Vertical };
enum class MouseAction { Down, Move, Up, Click, DblClick };
enum class KeyAction { Down, Press, Up };

// The window a control stands in, as the hand and the eye of the person in front of it know it.
// Points and sizes are pixels of the control's inside (the border left out).
class AttendedWindow {
 public:
  virtual ~AttendedWindow() = default;

  // The host gives the control a new inside size.
  virtual void Resize(int width, int height) = 0;

  // A press lands on whatever is at that point.
  virtual void Mouse(MouseAction action, int x, int y, Integer button, Integer shift) = 0;
  virtual void Key(KeyAction action, Integer code, Integer shift) = 0;

  // Drags the thumb to that value and lets it go; clicks an arrow; clicks beside the thumb. Nothing
  // happens where a person could do nothing: on a hidden bar or a disabled control.
  virtual void DragThumb(Bar bar, Integer value) = 0;
  virtual void ClickArrow(Bar bar, bool forward) = 0;
  virtual void ClickPage(Bar bar, bool forward) = 0;

  // What the person will do in the next source chooser, and in the next dialog of a source; without
  // a word they cancel.
  virtual void WillChooseSource(const std::string& name) = 0;
  virtual void WillPressScan(bool scan) = 0;
  // What the person will type into the next file dialog (or into the same one when it stays open)
  // and answer to the question that it may then ask; or that they will cancel it, as they do
  // without a word.
  virtual void WillTypeFileName(const std::string& fileName, bool yes) = 0;
  virtual void WillCancelFileDialog() = 0;

  // What the person does while a form is open (the About window): called whenever nothing else is
  // to do; false for nothing more, upon which the form is closed. Does not throw.
  virtual void WhileAFormIsOpen(std::function<bool()> act) = 0;
  // Clicks a control of the open form by its name; false when no form is open. Until it is closed,
  // mouse, keys and bars of this window do nothing.
  virtual bool ClickOnForm(const std::string& control) = 0;

  // Lets the window do what waits for the host's message loop: paint what needs it.
  virtual void Idle() = 0;

  // The whole control, border included, after Idle; while a form is open, the form.
  virtual Snapshot Capture() = 0;

  // Where everything stands, for the layout report. Positions in twips of the control surface.
  struct Place {
    Single left = 0, top = 0, width = 0, height = 0;
    bool visible = true;
    Integer min = 0, max = 0, value = 0;  // bars only
  };
  virtual Place BoxPlace() const = 0;
  virtual Place BarPlace(Bar bar) const = 0;
};

// One that makes the surface for the control that is to stand there.
class ControlWindow : public AttendedWindow {
 public:
  virtual std::shared_ptr<Surface> ControlsSurface() = 0;
};

}  // namespace quillet
