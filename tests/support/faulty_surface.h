#pragma once

#include <memory>
#include <utility>

#include "base/runtime_error.h"
#include "platform/contracts/surface.h"

namespace quillet {

// A surface whose N-th operation from a moment on fails with run-time error 380, before it has done
// anything; every read and every write counts as one. All others go through to the real surface.
class FaultySurface : public Surface {
 public:
  explicit FaultySurface(std::shared_ptr<Surface> surface)
      : m_surface(std::move(surface)),
        m_control(m_surface->UserControl(), m_fault),
        m_box(m_surface->picTwain(), m_fault),
        m_horizontal(m_surface->HScroll1(), m_fault),
        m_vertical(m_surface->VScroll1(), m_fault) {}

  // Starts to count anew; 0 for no failure.
  void FailAt(int operation) { m_fault = {.failAt = operation}; }
  // Counted since then.
  int Operations() const { return m_fault.operations; }

  ControlSurface& UserControl() override { return m_control; }
  PictureBox& picTwain() override { return m_box; }
  ScrollBar& HScroll1() override { return m_horizontal; }
  ScrollBar& VScroll1() override { return m_vertical; }
  void Connect(SurfaceEvents* events) override { m_surface->Connect(events); }

 private:
  struct Fault {
    int failAt = 0;
    int operations = 0;
    void Count() {
      if (++operations == failAt) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
    }
  };

  template <typename Part>
  struct Counted {
    Part& part;
    Fault& fault;
    Counted(Part& p, Fault& f) : part(p), fault(f) {}
    Part& Real() const {
      fault.Count();
      return part;
    }
  };

  struct Control : ControlSurface, Counted<ControlSurface> {
    using Counted::Counted;
    Single Width() const override { return Real().Width(); }
    Single Height() const override { return Real().Height(); }
    Integer BorderStyle() const override { return Real().BorderStyle(); }
    void PutBorderStyle(Integer style) override { Real().PutBorderStyle(style); }
    bool Enabled() const override { return Real().Enabled(); }
    void PutEnabled(bool enabled) override { Real().PutEnabled(enabled); }
    WindowHandle hWnd() const override { return Real().hWnd(); }
  };

  struct Box : PictureBox, Counted<PictureBox> {
    using Counted::Counted;
    void PutPicture(const PictureRef& picture) override { Real().PutPicture(picture); }
    Single ScaleWidth() const override { return Real().ScaleWidth(); }
    Single ScaleHeight() const override { return Real().ScaleHeight(); }
    void Move(Single left, Single top, Single width, Single height) override {
      Real().Move(left, top, width, height);
    }
    void Refresh() override { Real().Refresh(); }
    OLE_COLOR BackColor() const override { return Real().BackColor(); }
    void PutBackColor(OLE_COLOR color) override { Real().PutBackColor(color); }
    Integer MousePointer() const override { return Real().MousePointer(); }
    void PutMousePointer(Integer pointer) override { Real().PutMousePointer(pointer); }
    PictureRef MouseIcon() const override { return Real().MouseIcon(); }
    void PutMouseIcon(const PictureRef& icon) override { Real().PutMouseIcon(icon); }
    std::string ToolTipText() const override { return Real().ToolTipText(); }
    void PutToolTipText(const std::string& text) override { Real().PutToolTipText(text); }
    DCHandle hDC() const override { return Real().hDC(); }
    WindowHandle hWnd() const override { return Real().hWnd(); }
  };

  struct Bar : ScrollBar, Counted<ScrollBar> {
    using Counted::Counted;
    bool Visible() const override { return Real().Visible(); }
    void PutVisible(bool visible) override { Real().PutVisible(visible); }
    void PutMin(Integer min) override { Real().PutMin(min); }
    void PutMax(Integer max) override { Real().PutMax(max); }
    Integer Value() const override { return Real().Value(); }
    void PutValue(Integer value) override { Real().PutValue(value); }
    void PutSmallChange(Integer step) override { Real().PutSmallChange(step); }
    void PutLargeChange(Integer step) override { Real().PutLargeChange(step); }
    void Move(Single left, Single top, Single width) override { Real().Move(left, top, width); }
    void Move(Single left, Single top, Single width, Single height) override {
      Real().Move(left, top, width, height);
    }
  };

  std::shared_ptr<Surface> m_surface;
  Fault m_fault;
  Control m_control;
  Box m_box;
  Bar m_horizontal;
  Bar m_vertical;
};

}  // namespace quillet
