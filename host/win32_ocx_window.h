#pragma once

#include <memory>

#include "embed/control_window.h"
#include "embed/win32_dialog_user.h"
#include "embed/win32_hand.h"
#include "host/win32_ocx_site.h"
#include "platform/win32/window_classes.h"

namespace quillet {

// A container's window that a control fills, known from outside: by its handle, and those of the
// windows in it.
class OcxWindow : public AttendedWindow {
 public:
  // The inside size in pixels. Run-time errors 380, 7.
  OcxWindow(int width, int height);
  OcxWindow(const OcxWindow&) = delete;
  OcxWindow& operator=(const OcxWindow&) = delete;
  ~OcxWindow() override;

  // Activates the control in place, which has this site already. RequireCall's errors;
  // std::runtime_error for a control without the windows that are expected in it.
  void Show(IOleObject& control);
  OcxSite& ControlsSite() { return *m_site.get(); }
  // In front of the dialogs that the control opens.
  std::shared_ptr<Win32DialogUser> DialogUser() { return m_user; }

  void Resize(int width, int height) override;
  void Mouse(MouseAction action, int x, int y, Integer button, Integer shift) override;
  void Key(KeyAction action, Integer code, Integer shift) override;
  void DragThumb(Bar bar, Integer value) override;
  void ClickArrow(Bar bar, bool forward) override;
  void ClickPage(Bar bar, bool forward) override;
  void WillChooseSource(const std::string& name) override;
  void WillPressScan(bool scan) override;
  void WillTypeFileName(const std::string& fileName, bool yes) override;
  void WillCancelFileDialog() override;
  // A control in a file shows its forms by itself: nobody acts in them, and none is clicked on.
  void WhileAFormIsOpen(std::function<bool()>) override {}
  bool ClickOnForm(const std::string&) override { return false; }
  void Idle() override;
  Snapshot Capture() override;
  Place BoxPlace() const override;
  Place BarPlace(Bar bar) const override;

 private:
  HWND WindowOf(Bar bar) const {
    return bar == Bar::Horizontal ? m_windows.horizontal : m_windows.vertical;
  }

  WindowClass m_class;
  HWND m_window;
  ComPtr<OcxSite> m_site;
  std::shared_ptr<Win32DialogUser> m_user = std::make_shared<Win32DialogUser>();
  ComPtr<IOleInPlaceObject> m_inPlace;
  ControlHandles m_windows{};
  std::shared_ptr<Win32Hand> m_hand;
};

}  // namespace quillet
