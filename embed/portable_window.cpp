#include "embed/portable_window.h"

#include <utility>

#include "base/rounding.h"
#include "base/runtime_error.h"
#include "platform/portable/portable_forms.h"
#include "platform/portable/portable_messages.h"
#include "platform/portable/portable_platform.h"
#include "platform/portable/simulated_user.h"

namespace quillet {
namespace {

ControlWindow::Place PlaceInTwips(const PixelRect& place) {
  return {.left = TwipsFromPixels(place.left),
          .top = TwipsFromPixels(place.top),
          .width = TwipsFromPixels(place.width),
          .height = TwipsFromPixels(place.height)};
}

}  // namespace

PortableWindow::PortableWindow(PortablePlatform& platform, int width, int height)
    : m_platform(platform),
      m_surface(platform.CreateSurface(width, height)),
      m_paintTask(platform.Queue().AddIdleTask([surface = m_surface] { surface->Idle(); })) {}

PortableWindow::~PortableWindow() {
  m_platform.Forms().Attend({});
  m_platform.Queue().RemoveIdleTask(m_paintTask);
  m_surface->Close();
}

void PortableWindow::Resize(int width, int height) {
  m_surface->UserControl().Resize(width, height);
}

std::shared_ptr<SurfaceInput> PortableWindow::Input() {
  const std::shared_ptr<SurfaceInput> input(m_surface, &m_surface->Input());
  const PortableForms& forms = m_platform.Forms();
  const bool isOpen = forms.IsOpen();
  const bool wasOpen = std::exchange(m_formsSeen, forms.Count()) != forms.Count();
  if (wasOpen) input->CancelMode();  // whose handlers may close this window
  return isOpen ? nullptr : input;
}

void PortableWindow::Mouse(MouseAction action, int x, int y, Integer button, Integer shift) {
  const bool known = action == MouseAction::Move ? button >= 0 && button <= 7
                                                 : button == 1 || button == 2 || button == 4;
  if (!known) throw RunTimeError(ErrorNumber::InvalidProcedureCall, "not a mouse button");
  const Integer column = ToInteger(x);
  const Integer row = ToInteger(y);
  // A handler may close this window; the surface hears the rest and drops it.
  const auto reached = Input();
  if (!reached) return;
  SurfaceInput& input = *reached;
  switch (action) {
    case MouseAction::Down:
      return input.MouseDown(column, row, button, shift);
    case MouseAction::Move:
      return input.MouseMove(column, row, button, shift);
    case MouseAction::Up:
      return input.MouseUp(column, row, button, shift);
    case MouseAction::Click:
      input.MouseDown(column, row, button, shift);
      return input.MouseUp(column, row, button, shift);
    case MouseAction::DblClick:
      input.MouseDown(column, row, button, shift);
      input.MouseUp(column, row, button, shift);
      input.MouseDoubleDown(column, row, button, shift);
      return input.MouseUp(column, row, button, shift);
  }
}

void PortableWindow::Key(KeyAction action, Integer code, Integer shift) {
  const auto input = Input();
  if (!input) return;
  switch (action) {
    case KeyAction::Down:
      return input->KeyDown(code, shift);
    case KeyAction::Press:
      return input->KeyPress(code);
    case KeyAction::Up:
      return input->KeyUp(code, shift);
  }
}

void PortableWindow::DragThumb(Bar bar, Integer value) {
  PortableScrollBar& pressed = ScrollBarOf(bar);
  if (const auto input = Input()) input->DragThumb(pressed, value);
}

void PortableWindow::ClickArrow(Bar bar, bool forward) {
  PortableScrollBar& pressed = ScrollBarOf(bar);
  if (const auto input = Input()) input->ClickArrow(pressed, forward);
}

void PortableWindow::ClickPage(Bar bar, bool forward) {
  PortableScrollBar& pressed = ScrollBarOf(bar);
  if (const auto input = Input()) input->ClickPage(pressed, forward);
}

void PortableWindow::WillChooseSource(const std::string& name) {
  m_platform.User().WillChoose(name);
}

void PortableWindow::WillPressScan(bool scan) {
  m_platform.User().WillPressScan(scan);
}

void PortableWindow::WillTypeFileName(const std::string& fileName, bool yes) {
  m_platform.User().WillType({fileName, yes});
}

void PortableWindow::WillCancelFileDialog() {
  m_platform.User().WillCancelFileDialog();
}

void PortableWindow::WhileAFormIsOpen(std::function<bool()> act) {
  m_platform.Forms().Attend(std::move(act));
}

bool PortableWindow::ClickOnForm(const std::string& control) {
  return m_platform.Forms().Click(control);
}

void PortableWindow::Idle() {
  m_surface->Idle();
}

Snapshot PortableWindow::Capture() {
  const auto surface = m_surface;
  PortableForms* const form = m_platform.Forms().IsOpen() ? &m_platform.Forms() : nullptr;
  surface->Idle();  // without a form, a handler may end this window and the platform
  Raster raster = form ? form->Render() : surface->Render();
  Snapshot snapshot{raster.Width(), raster.Height(), {}};
  snapshot.rgb = std::move(raster).TakePixels();
  return snapshot;
}

ControlWindow::Place PortableWindow::BoxPlace() const {
  return PlaceInTwips(m_surface->picTwain().Place());
}

ControlWindow::Place PortableWindow::BarPlace(Bar bar) const {
  const PortableScrollBar& scrollBar = ScrollBarOf(bar);
  Place place = PlaceInTwips(scrollBar.Place());
  place.visible = scrollBar.Visible();
  place.min = scrollBar.Min();
  place.max = scrollBar.Max();
  place.value = scrollBar.Value();
  return place;
}

PortableScrollBar& PortableWindow::ScrollBarOf(Bar bar) const {
  return bar == Bar::Horizontal ? m_surface->HScroll1() : m_surface->VScroll1();
}

}  // namespace quillet
