#include <algorithm>
#include <cstdint>
#include <limits>

#include "base/rounding.h"
#include "control/TWAIN.h"
#include "control/attempt.h"

namespace quillet {
namespace {

// Twips: the thickness of a shown scroll bar, the allowance for the fixed single border, and what
// each bar's length falls short of the control's.
constexpr Single kBarThickness = 255;
constexpr Single kBorderAllowance = 60;
constexpr Single kBarShortening = 30;

constexpr Integer kSmallChange = 10;   // pixels
constexpr Integer kLargeChange = 100;  // pixels

// The number of pixels by which a picture is longer than the box.
Long Excess(Long pictureLength, Single boxLength) {
  return ToLong(static_cast<double>(pictureLength) - static_cast<double>(boxLength));
}

// The part of the box's length that a picture scrolled to `position` covers; below 1 where it
// covers none.
Long Covered(Long boxLength, Long pictureLength, Long position) {
  return static_cast<Long>(
      std::min<std::int64_t>(boxLength, std::int64_t{pictureLength} - position));
}

// The bars count in 16 bits.
Integer ClampToInteger(Long value) {
  return static_cast<Integer>(std::clamp<Long>(value, std::numeric_limits<Integer>::min(),
                                               std::numeric_limits<Integer>::max()));
}

// Puts a member's value back, whatever happens.
template <typename Value>
class RestoreGuard {
 public:
  RestoreGuard(Value& member, Value meanwhile) : m_member(member), m_before(member) {
    m_member = meanwhile;
  }
  RestoreGuard(const RestoreGuard&) = delete;
  RestoreGuard& operator=(const RestoreGuard&) = delete;
  ~RestoreGuard() { m_member = m_before; }

 private:
  Value& m_member;
  const Value m_before;
};

}  // namespace

void TWAIN::ResetZoom() {
  m_Zoom = 100;
  m_FitType = twFITNONE;
}

void TWAIN::ShowPicture(const PictureRef& picture) {
  m_DisplayPicture = picture;
  if (!m_DisplayPicture) return;
  m_GDI->PuthBitmap(m_DisplayPicture->Handle());
  const Long width = m_GDI->Width();
  const Long height = m_GDI->Height();
  LayoutView(width, height);
  if (m_AutoRedraw && !m_surface->VScroll1().Visible() && !m_surface->HScroll1().Visible())
    m_surface->picTwain().PutPicture(m_DisplayPicture);
}

Single TWAIN::BorderAllowance() const {
  Single allowance = 0;
  Attempt([&] {
    if (m_surface->UserControl().BorderStyle() == 1) allowance = kBorderAllowance;
  });
  return allowance;
}

// Gives the picture box what the border and the bars that it stands beside leave.
void TWAIN::PlaceBox(bool besideV, bool besideH) {
  const ControlSurface& surface = m_surface->UserControl();
  const Single width = surface.Width() - (besideV ? kBarThickness : 0) - BorderAllowance();
  const Single height = surface.Height() - (besideH ? kBarThickness : 0) - BorderAllowance();
  m_surface->picTwain().Move(0, 0, width, height);
}

// Every step is an attempt of its own: a surface that refuses one must not stop the others. Moving
// the box may run further layouts before the move returns (picTwain_Resize).
void TWAIN::LayoutView(Long lWidth, Long lHeight) {
  ControlSurface& surface = m_surface->UserControl();
  PictureBox& box = m_surface->picTwain();
  ScrollBar& horizontal = m_surface->HScroll1();
  ScrollBar& vertical = m_surface->VScroll1();

  LayoutNest::Layout layout(m_layouts);
  Attempt([&] {
    if (m_AutoRedraw)
      layout.StartFrom({box.ScaleWidth(), box.ScaleHeight(), surface.Width(), surface.Height(),
                        lWidth, lHeight, m_Scrollable});
  });
  if (m_layouts.IsSettled()) Attempt([&] { PlaceBox(false, false); });

  bool needV = false;
  bool needH = false;
  Attempt([&] {
    needV = static_cast<double>(box.ScaleHeight()) < lHeight && m_Scrollable && m_AutoRedraw;
  });
  Attempt([&] {
    needH = static_cast<double>(box.ScaleWidth()) < lWidth && m_Scrollable && m_AutoRedraw;
  });
  const Single barWidth = needV ? kBarThickness : 0;
  const Single barHeight = needH ? kBarThickness : 0;
  if (m_layouts.IsSettled()) Attempt([&] { PlaceBox(needV, needH); });

  Long maxH = 0;
  Long maxV = 0;
  Attempt([&] { maxH = Excess(lWidth, box.ScaleWidth()); });
  Attempt([&] { maxV = Excess(lHeight, box.ScaleHeight()); });

  SetRange(horizontal, maxH);
  Attempt([&] {
    horizontal.Move(0, surface.Height() - barHeight - BorderAllowance(),
                    surface.Width() - barWidth - kBarShortening);
  });
  Attempt([&] { horizontal.PutVisible(needH); });

  SetRange(vertical, maxV);
  Attempt([&] {
    vertical.Move(surface.Width() - barWidth - BorderAllowance(), 0, barWidth,
                  surface.Height() - barHeight - kBarShortening);
  });
  Attempt([&] { vertical.PutVisible(needV); });

  Attempt([&] { PlaceBox(needV, needH); });
  if (m_AutoRedraw && (needH || needV)) Attempt([&] { HScroll1_Change(); });
}

// The value goes before the range, so one that the zoom carries beyond the old range is refused and
// stays; writing either may repaint (HScroll1_Change).
void TWAIN::SetRange(ScrollBar& bar, Long max) {
  Attempt([&] { bar.PutVisible(false); });
  Attempt([&] { bar.PutMin(0); });
  Attempt([&] { bar.PutValue(ToInteger(static_cast<double>(bar.Value()) * m_Zoom / 100)); });
  Attempt([&] { bar.PutMax(ClampToInteger(max)); });
  Attempt([&] { bar.PutSmallChange(kSmallChange); });
  Attempt([&] { bar.PutLargeChange(kLargeChange); });
}

// Repaints the visible part, whatever AutoRedraw says. Only what the picture covers is cut out: the
// box's background shows beside it.
void TWAIN::HScroll1_Change() {
  PictureBox& box = m_surface->picTwain();
  PIC24->CopyFromPicture(m_DisplayPicture);
  const Long x = m_surface->HScroll1().Value();
  const Long y = m_surface->VScroll1().Value();
  const Long w = ToLong(static_cast<double>(box.ScaleWidth()));
  const Long h = ToLong(static_cast<double>(box.ScaleHeight()));
  const Long coveredWidth = Covered(w, PIC24->Width(), x);
  const Long coveredHeight = Covered(h, PIC24->Height(), y);
  const bool scrolledPast = w > 0 && h > 0 && (coveredWidth < 1 || coveredHeight < 1);
  if (scrolledPast)
    PIC24->CopyFromPicture(nullptr);
  else
    PIC24->Crop(x, y, coveredWidth, coveredHeight);
  box.PutPicture(PIC24->CopyToPicture());
  PIC24->CopyFromPicture(nullptr);
}

void TWAIN::Refresh() {
  {
    const RestoreGuard<bool> autoRedraw(m_AutoRedraw, true);
    ShowPicture(m_DisplayPicture);
  }
  m_surface->picTwain().Refresh();
}

// Gives the box the control's new size, beside the bars that it has, without showing the outgrown
// picture in it. Tells whether that changed its size.
bool TWAIN::TakeNewViewSize() {
  const PictureBox& box = m_surface->picTwain();
  const Single width = box.ScaleWidth();
  const Single height = box.ScaleHeight();
  const LayoutNest::Pause pause(m_layouts);
  PlaceBox(m_surface->VScroll1().Visible(), m_surface->HScroll1().Visible());
  return box.ScaleWidth() != width || box.ScaleHeight() != height;
}

// A fit that follows the view needs the new view first. A box of another size is refreshed then, as
// after every change of its size.
void TWAIN::UserControl_Resize() {
  bool hasNewSize = false;
  if (m_FitType == twFITWIDTH || m_FitType == twFITSTRECH) {
    if (BitmapWidth() > 0) Attempt([&] { hasNewSize = TakeNewViewSize(); });
    Attempt([&] { Fit(m_FitType); });
  }
  Attempt([&] {
    if (hasNewSize)
      Refresh();
    else
      ShowPicture(m_DisplayPicture);
  });
  RaiseEvent(Event::Resize);
}

void TWAIN::picTwain_Resize() {
  if (!m_layouts.IsSettled()) Refresh();
}

void TWAIN::HScroll1_Scroll() {
  Attempt([&] { HScroll1_Change(); });
  RaiseEvent(Event::Scroll);
}

void TWAIN::VScroll1_Change() {
  HScroll1_Change();
}

void TWAIN::VScroll1_Scroll() {
  HScroll1_Scroll();
}

}  // namespace quillet
