#include <cstdint>

#include "control/TWAIN.h"

namespace quillet {
namespace {

// Hosts know handles as 32-bit integers.
template <typename Handle>
Long NarrowHandle(Handle handle) {
  return static_cast<Long>(static_cast<std::uint32_t>(static_cast<std::uintptr_t>(handle)));
}

}  // namespace

// Settings that the control stores itself.

void TWAIN::PutQuality(Integer value) {
  m_Quality = value;
  NotifyChanged("Quality");
}

void TWAIN::PutCompression(Integer value) {
  m_Compression = value;
  NotifyChanged("Compression");
}

void TWAIN::PutFileType(IMAGE_TYPE value) {
  m_FileType = value;
  NotifyChanged("FileType");
}

void TWAIN::PutAutoRedraw(bool value) {
  m_AutoRedraw = value;
  NotifyChanged("AutoRedraw");
}

void TWAIN::PutColorType(IMAGE_COLORTYPE value) {
  m_ColorType = value;
  NotifyChanged("ColorType");
}

void TWAIN::PutResolution(Integer value) {
  m_Resolution = value;
  NotifyChanged("Resolution");
}

void TWAIN::Putfilename(const std::string& value) {
  m_FileName = value;
  NotifyChanged("Filename");
}

void TWAIN::PutShowProgress(bool value) {
  m_ShowProgress = value;
  NotifyChanged("ShowProgress");
}

void TWAIN::PutShowInterface(bool value) {
  m_ShowInterface = value;
  NotifyChanged("ShowInterface");
}

void TWAIN::PutScrollable(bool value) {
  m_Scrollable = value;
  NotifyChanged("Scrollable");
}

// Settings that the surface holds. A refused value reaches the host as the write's error,
// unnotified.

Integer TWAIN::BorderStyle() const {
  return m_surface->UserControl().BorderStyle();
}

void TWAIN::PutBorderStyle(Integer value) {
  m_surface->UserControl().PutBorderStyle(value);
  NotifyChanged("BorderStyle");
}

OLE_COLOR TWAIN::BackColor() const {
  return m_surface->picTwain().BackColor();
}

void TWAIN::PutBackColor(OLE_COLOR value) {
  m_surface->picTwain().PutBackColor(value);
  NotifyChanged("BackColor");
}

bool TWAIN::Enabled() const {
  return m_surface->UserControl().Enabled();
}

void TWAIN::PutEnabled(bool value) {
  m_surface->UserControl().PutEnabled(value);
  NotifyChanged("Enabled");
}

PictureRef TWAIN::MouseIcon() const {
  return m_surface->picTwain().MouseIcon();
}

void TWAIN::PutRefMouseIcon(const PictureRef& value) {
  m_surface->picTwain().PutMouseIcon(value);
  NotifyChanged("MouseIcon");
}

Integer TWAIN::MousePointer() const {
  return m_surface->picTwain().MousePointer();
}

void TWAIN::PutMousePointer(Integer value) {
  m_surface->picTwain().PutMousePointer(value);
  NotifyChanged("MousePointer");
}

std::string TWAIN::ToolTipText() const {
  return m_surface->picTwain().ToolTipText();
}

void TWAIN::PutToolTipText(const std::string& value) {
  m_surface->picTwain().PutToolTipText(value);
  NotifyChanged("ToolTipText");
}

Long TWAIN::hDC() const {
  return NarrowHandle(m_surface->picTwain().hDC());
}
Long TWAIN::hwnd() const {
  return NarrowHandle(m_surface->picTwain().hWnd());
}

// The picture.

void TWAIN::PutRefPicture(const PictureRef& picNew) {
  ResetZoom();
  m_Picture = picNew;
  ShowPicture(m_Picture);
  NotifyChanged("Picture");
}

Long TWAIN::BitmapWidth() {
  m_GDI->PutBitmapPicture(m_Picture);
  return m_GDI->Width();
}

Long TWAIN::BitmapHeight() {
  m_GDI->PutBitmapPicture(m_Picture);
  return m_GDI->Height();
}

}  // namespace quillet
