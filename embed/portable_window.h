#pragma once

#include "embed/control_window.h"
#include "platform/portable/portable_surface.h"

namespace quillet {

class PortablePlatform;

// A window in memory with one surface in it. The window goes with this object; the surface may
// outlive it, as a control does whose form was closed. It paints whenever a message loop of the
// thread has nothing else to do. The platform outlives it.
class PortableWindow : public ControlWindow {
 public:
  // The inside size in pixels, border left out.
  PortableWindow(PortablePlatform& platform, int width, int height);
  PortableWindow(const PortableWindow&) = delete;
  PortableWindow& operator=(const PortableWindow&) = delete;
  ~PortableWindow() override;

  std::shared_ptr<Surface> ControlsSurface() override { return m_surface; }
  void Resize(int width, int height) override;
  // Run-time errors: 5 for a press or release that is not of one button (1, 2 or 4) and for a move
  // with others than these, 6 for a point beyond 16 bits.
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
  Snapshot Capture() override;
  Place BoxPlace() const override;
  Place BarPlace(Bar bar) const override;

 private:
  PortableScrollBar& ScrollBarOf(Bar bar) const;
  // Where mouse and keyboard go; null while a form keeps them. What was held down when a form came
  // is not any more.
  std::shared_ptr<SurfaceInput> Input();

  PortablePlatform& m_platform;
  std::shared_ptr<PortableSurface> m_surface;
  int m_paintTask;
  int m_formsSeen = 0;
};

}  // namespace quillet
