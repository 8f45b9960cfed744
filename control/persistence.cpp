#include "control/TWAIN.h"
#include "control/accessor.h"

// The settings that a host keeps with its document. Keys, order and defaults are those of the
// documents that exist.

namespace quillet {
namespace {

template <typename Value>
Value Read(PropertyBag& bag, const char* key, const Value& defaultValue) {
  using Pass = Passage<Value>;
  return Pass::From(bag.ReadProperty(key, Pass::To(defaultValue)));
}

template <typename Value>
void Write(PropertyBag& bag, const char* key, const Value& value, const Value& defaultValue) {
  using Pass = Passage<Value>;
  bag.WriteProperty(key, Pass::To(value), Pass::To(defaultValue));
}

// Unlike its value, the file type's default is 16 bits wide.
constexpr Integer kFileTypeDefault = twBITMAP;

}  // namespace

void TWAIN::InitProperties() {
  m_ColorType = twRGB;
  m_Resolution = 75;
  m_FileName.clear();
  m_ShowProgress = true;
  m_ShowInterface = false;
  m_AutoRedraw = true;
  m_Scrollable = true;
  m_Quality = 70;
  m_FileType = twBITMAP;
}

void TWAIN::ReadProperties(PropertyBag& bag) {
  const auto alive = shared_from_this();  // the bag and the site are the host's
  ControlSurface& surface = m_surface->UserControl();
  PictureBox& box = m_surface->picTwain();
  box.PutBackColor(Read<OLE_COLOR>(bag, "BackColor", kWindowBackground));
  surface.PutEnabled(Read(bag, "Enabled", true));
  PutRefMouseIcon(Read<PictureRef>(bag, "MouseIcon", nullptr));
  box.PutMousePointer(Read<Integer>(bag, "MousePointer", 0));
  box.PutToolTipText(Read<std::string>(bag, "ToolTipText", ""));
  m_ColorType = Read(bag, "ColorType", twRGB);
  m_Resolution = Read<Integer>(bag, "Resolution", 75);
  m_FileName = Read<std::string>(bag, "Filename", "");
  m_ShowProgress = Read(bag, "ShowProgress", true);
  m_ShowInterface = Read(bag, "ShowInterface", false);
  m_AutoRedraw = Read(bag, "AutoRedraw", true);
  surface.PutBorderStyle(Read<Integer>(bag, "BorderStyle", 1));
  m_Scrollable = Read(bag, "Scrollable", true);
  m_Quality = Read<Integer>(bag, "Quality", 70);
  m_Compression = Read<Integer>(bag, "Compression", 0);
  m_FileType = Passage<IMAGE_TYPE>::From(bag.ReadProperty("FileType", kFileTypeDefault));
}

void TWAIN::WriteProperties(PropertyBag& bag) {
  const auto alive = shared_from_this();
  const ControlSurface& surface = m_surface->UserControl();
  const PictureBox& box = m_surface->picTwain();
  Write<OLE_COLOR>(bag, "BackColor", box.BackColor(), kWindowBackground);
  Write(bag, "Enabled", surface.Enabled(), true);
  Write<PictureRef>(bag, "MouseIcon", MouseIcon(), nullptr);
  Write<Integer>(bag, "MousePointer", box.MousePointer(), 0);
  Write<std::string>(bag, "ToolTipText", box.ToolTipText(), "");
  Write(bag, "ColorType", m_ColorType, twRGB);
  Write<Integer>(bag, "Resolution", m_Resolution, 75);
  Write<std::string>(bag, "Filename", m_FileName, "");
  Write(bag, "ShowProgress", m_ShowProgress, true);
  Write(bag, "ShowInterface", m_ShowInterface, false);
  Write(bag, "AutoRedraw", m_AutoRedraw, true);
  Write<Integer>(bag, "BorderStyle", surface.BorderStyle(), 1);
  Write(bag, "Scrollable", m_Scrollable, true);
  Write<Integer>(bag, "Quality", m_Quality, 70);
  Write<Integer>(bag, "Compression", m_Compression, 0);
  bag.WriteProperty("FileType", Passage<IMAGE_TYPE>::To(m_FileType), kFileTypeDefault);
}

}  // namespace quillet
