#pragma once

#include "embed/control_window.h"
#include "embed/win32_hand.h"
#include "platform/win32/win32_forms.h"
#include "platform/win32/win32_surface.h"
#include "platform/win32/window_classes.h"

namespace quillet {

class Win32DialogUser;
class Win32Platform;

// A top-level window on the display that the control fills. The window goes with this object; the
// surface may outlive it, as a control does whose form was closed.
//
// The mouse and the keyboard are those of the methods here: the real ones are not listened to, so
// that what happens does not depend on where the pointer happens to lie.
class Win32Window : public ControlWindow {
 public:
  // The inside size in pixels, border left out.
  Win32Window(Win32Platform& platform, Win32DialogUser& user, int width, int height);
  Win32Window(const Win32Window&) = delete;
  Win32Window& operator=(const Win32Window&) = delete;
  ~Win32Window() override;

  std::shared_ptr<Surface> ControlsSurface() override { return m_surface; }
  void Resize(int width, int height) override;
  // As of Win32Hand.
  void Mouse(MouseAction action, int x, int y, Integer button, Integer shift) override;
  void Key(KeyAction action, Integer code, Integer shift) override;
  void DragThumb(Bar bar, Integer value) override;
  void ClickArrow(Bar bar, bool forward) override;
  void ClickPage(Bar bar, bool forward) override;
  void WillChooseSource(const std::string& name) override;
  void WillPressScan(bool scan) override;
  void WillTypeFileName(const std::string& fileName, bool yes) override;
  void WillCancelFileDialog() override;
  void WhileAFormIsOpen(std::function<bool()> act) override;
  bool ClickOnForm(const std::string& control) override;
  void Idle() override;
  // Read from the display; without pixels once the window is gone.
  Snapshot Capture() override;
  Place BoxPlace() const override;
  Place BarPlace(Bar bar) const override;

 private:
  const Win32ScrollBar& ScrollBarOf(Bar bar) const {
    return bar == Bar::Horizontal ? m_surface->HScroll1() : m_surface->VScroll1();
  }

  Win32Forms& m_forms;
  Win32DialogUser& m_user;
  WindowClass m_class;
  std::shared_ptr<Win32Surface> m_surface;
  std::shared_ptr<Win32Hand> m_hand;
  HWND m_window;
};

}  // namespace quillet
