#pragma once

#include <string>

#include "base/types.h"
#include "platform/contracts/handles.h"
#include "platform/contracts/picture_services.h"

namespace quillet {

// What happens to a surface, told to the control that lives on it, in the control's own handler
// names. Arguments by reference: what the handler leaves in them is what the surface goes on with
// (a key code of 0 means that the key was eaten). Handlers do not throw.
class SurfaceEvents {
 public:
  virtual ~SurfaceEvents() = default;

  virtual void UserControl_Resize() = 0;
  virtual void UserControl_KeyDown(Integer& KeyCode, Integer& Shift) = 0;
  virtual void UserControl_KeyPress(Integer& KeyAscii) = 0;
  virtual void UserControl_KeyUp(Integer& KeyCode, Integer& Shift) = 0;

  virtual void picTwain_Click() = 0;
  virtual void picTwain_DblClick() = 0;
  // X and Y in pixels of the picture box's inside; Button 1 left, 2 right, 4 middle (MouseMove:
  // their sum); Shift 1 shift, 2 control, 4 alt, summed.
  virtual void picTwain_MouseDown(Integer& Button, Integer& Shift, Single& X, Single& Y) = 0;
  virtual void picTwain_MouseMove(Integer& Button, Integer& Shift, Single& X, Single& Y) = 0;
  virtual void picTwain_MouseUp(Integer& Button, Integer& Shift, Single& X, Single& Y) = 0;
  virtual void picTwain_Paint() = 0;
  virtual void picTwain_Resize() = 0;

  virtual void HScroll1_Change() = 0;
  virtual void HScroll1_Scroll() = 0;
  virtual void VScroll1_Change() = 0;
  virtual void VScroll1_Scroll() = 0;
};

// The control's own window inside its host. Sizes in twips, 1440 to the inch.
//
// A surface works before it stands in a host's window: what is written then holds when it does.
// After that window is gone reads give the last values, writes are refused (run-time error 380) and
// no events come. Every write refused for its value is run-time error 380 too and changes nothing.
class ControlSurface {
 public:
  virtual ~ControlSurface() = default;

  // Outer size, border included.
  virtual Single Width() const = 0;
  virtual Single Height() const = 0;
  // 0 none, 1 fixed single: the frame takes 60 twips of each dimension. Starts as 1.
  virtual Integer BorderStyle() const = 0;
  virtual void PutBorderStyle(Integer style) = 0;
  // Input reaches the control and its children only when True. Starts as True.
  virtual bool Enabled() const = 0;
  virtual void PutEnabled(bool enabled) = 0;
  virtual WindowHandle hWnd() const = 0;
};

// The box that shows the picture. It has no border of its own; its inside is measured in pixels.
class PictureBox {
 public:
  virtual ~PictureBox() = default;

  // Shows the picture's bitmap unscaled at the top-left corner and holds a reference to the
  // picture; no picture, or one without bitmap, shows the background. The box is repainted when the
  // host next gets to paint, or at once by Refresh.
  virtual void PutPicture(const PictureRef& picture) = 0;
  virtual Single ScaleWidth() const = 0;
  virtual Single ScaleHeight() const = 0;
  // In twips of the control surface. A change of size in pixels raises Resize before the call
  // returns. Negative sizes are refused.
  virtual void Move(Single left, Single top, Single width, Single height) = 0;
  virtual void Refresh() = 0;

  virtual OLE_COLOR BackColor() const = 0;
  virtual void PutBackColor(OLE_COLOR color) = 0;
  // 0 to 15, or 99 for MouseIcon; other values are refused.
  virtual Integer MousePointer() const = 0;
  virtual void PutMousePointer(Integer pointer) = 0;
  virtual PictureRef MouseIcon() const = 0;
  virtual void PutMouseIcon(const PictureRef& icon) = 0;
  virtual std::string ToolTipText() const = 0;
  virtual void PutToolTipText(const std::string& text) = 0;
  // Stable for the life of the surface.
  virtual DCHandle hDC() const = 0;
  virtual WindowHandle hWnd() const = 0;
};

// A scroll bar. The range is the interval between Min and Max in either order. A Value outside a
// new range goes to its nearest end; a Value written outside the range is refused. Change comes
// after every change of Value, by the user or by a write; while the thumb is dragged each new Value
// raises Scroll, and Change comes once, when it is let go. A new bar is visible with Min 0, Max
// 32767, Value 0, SmallChange 1 and LargeChange 1.
class ScrollBar {
 public:
  virtual ~ScrollBar() = default;

  virtual bool Visible() const = 0;
  virtual void PutVisible(bool visible) = 0;
  virtual void PutMin(Integer min) = 0;
  virtual void PutMax(Integer max) = 0;
  virtual Integer Value() const = 0;
  virtual void PutValue(Integer value) = 0;
  // Steps of a click on an arrow and beside the thumb; below 1 refused.
  virtual void PutSmallChange(Integer step) = 0;
  virtual void PutLargeChange(Integer step) = 0;
  // In twips of the control surface. The first form keeps the height (255 at the start).
  virtual void Move(Single left, Single top, Single width) = 0;
  virtual void Move(Single left, Single top, Single width, Single height) = 0;
};

// The visual surface of one control.
class Surface {
 public:
  virtual ~Surface() = default;

  virtual ControlSurface& UserControl() = 0;
  virtual PictureBox& picTwain() = 0;
  virtual ScrollBar& HScroll1() = 0;
  virtual ScrollBar& VScroll1() = 0;

  // Events go to this receiver from now on; none for null. A receiver disconnects itself before it
  // dies, and may do so, and let go of the surface, from inside an event.
  virtual void Connect(SurfaceEvents* events) = 0;
};

}  // namespace quillet
