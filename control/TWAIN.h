#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "base/types.h"
#include "control/event_source.h"
#include "control/layout_nest.h"
#include "control/surface_door.h"
#include "imagefile/cDialog.h"
#include "imagefile/cGDI.h"
#include "picture/cPicture24.h"
#include "platform/contracts/platform.h"
#include "platform/contracts/property_bag.h"
#include "platform/contracts/site.h"
#include "platform/contracts/surface.h"
#include "twain/cTwain.h"

namespace quillet {

// The control: its settings, its current picture and the picture it displays, the view on a
// surface, and the methods that transform the picture. Hosts reach the members through dispatch
// (control/dispatch.h).
//
// Invariant: after a display with neither zoom nor fit the displayed picture is the current
// picture. Ownership: everything it makes lives as long as it does; the host's picture objects are
// shared. The platform must outlive it. Units: pictures and the view in pixels, places on the
// surface in twips. Errors: run-time errors leave a method; an image method that fails keeps the
// current picture. Re-entrancy: events may call every member and let go of the control; dispatch
// and the surface's door keep it alive meanwhile.
class TWAIN : public std::enable_shared_from_this<TWAIN> {
 public:
  // The site may be none: nobody is then told of changed properties.
  static std::shared_ptr<TWAIN> Create(Platform& platform, std::shared_ptr<Surface> surface,
                                       std::shared_ptr<Site> site);
  ~TWAIN();

  // The settings of a new instance, or of one that the host kept with its document: the host calls
  // one of the two, once, before it uses the control. Reading stops at a value that does not
  // convert or is refused, with its run-time error; the keys after it are not touched.
  void InitProperties();
  void ReadProperties(PropertyBag& bag);
  // Any number of times. The picture is not among the settings.
  void WriteProperties(PropertyBag& bag);

  // Sinks are called in the order in which they connected. The cookie undoes the connection.
  int Connect(std::shared_ptr<EventSink> sink) { return m_events.Connect(std::move(sink)); }
  bool Disconnect(int cookie) { return m_events.Disconnect(cookie); }

  // Properties. A write ends with the notification of its name, whether the value changed or not.
  Integer Quality() const { return m_Quality; }
  void PutQuality(Integer value);
  Integer Compression() const { return m_Compression; }
  void PutCompression(Integer value);
  IMAGE_TYPE FileType() const { return m_FileType; }
  void PutFileType(IMAGE_TYPE value);
  Integer BorderStyle() const;
  void PutBorderStyle(Integer value);
  OLE_COLOR BackColor() const;
  void PutBackColor(OLE_COLOR value);
  bool Enabled() const;
  void PutEnabled(bool value);
  Long hDC() const;
  Long hwnd() const;
  PictureRef MouseIcon() const;
  void PutRefMouseIcon(const PictureRef& value);
  Integer MousePointer() const;
  void PutMousePointer(Integer value);
  PictureRef CurrentPicture() const { return m_Picture; }
  void PutRefPicture(const PictureRef& picNew);
  Long BitmapWidth();
  Long BitmapHeight();
  bool AutoRedraw() const { return m_AutoRedraw; }
  void PutAutoRedraw(bool value);
  std::string ToolTipText() const;
  void PutToolTipText(const std::string& value);
  IMAGE_COLORTYPE ColorType() const { return m_ColorType; }
  void PutColorType(IMAGE_COLORTYPE value);
  Integer Resolution() const { return m_Resolution; }
  void PutResolution(Integer value);
  std::string filename() const { return m_FileName; }
  void Putfilename(const std::string& value);
  bool ShowProgress() const { return m_ShowProgress; }
  void PutShowProgress(bool value);
  bool ShowInterface() const { return m_ShowInterface; }
  void PutShowInterface(bool value);
  bool Scrollable() const { return m_Scrollable; }
  void PutScrollable(bool value);

  // The scanner.
  void Scan(std::string& Title);
  void SelectSource(std::string& Title);

  // Files. Save and SaveAdd answer a status, 0 for success; Load leaves no picture when it fails.
  Long Save();
  Long SaveAdd(std::string& filename);
  void Load();
  void ShowSave(std::string& sFilter, std::string& sTitle, std::string& sInitDir);
  void ShowSaveAdd(std::string& sTitle, std::string& sInitDir);
  void ShowLoad(std::string& sFilter, std::string& sTitle, std::string& sInitDir);

  // The view.
  void Refresh();
  void Fit(FIT_TYPE iType);
  void Zoom(Integer iFactory);

  // Shows the About window and returns when it is closed.
  void About();

  // The image methods.
  void Flip();
  void Reverse();
  void Rotate();
  void Resize(Long lNewWidth, Long lNewHeight);
  void Crop(Long lLeft, Long lTop, Long lWidth, Long lHeight);
  void Invert();
  void GrayScale();
  void BlackWhite();
  void Sharpen();
  void SharpenMore();
  void Blur();
  void Contrast(Integer iValue);
  void Fade(Long lValue);
  void Lighten(Long lValue);

  // Whether that picture has the same pixels as the current one. The object itself is not changed.
  bool Compare(ObjectRef& ComparePic);

 private:
  friend class SurfaceDoor;

  TWAIN(Platform& platform, std::shared_ptr<Surface> surface, std::shared_ptr<Site> site);
  void UserControl_Initialize();
  void UserControl_Terminate();
  void NotifyChanged(std::string_view name);
  void RaiseEvent(Event event, std::span<Variant> arguments = {});
  template <typename... Values>
  void RaiseByReference(Event event, Values&... values);

  // The view's procedures.
  void ResetZoom();
  void ShowPicture(const PictureRef& picture);
  void LayoutView(Long lWidth, Long lHeight);
  Single BorderAllowance() const;
  void PlaceBox(bool besideV, bool besideH);
  void SetRange(ScrollBar& bar, Long max);
  void ApplyZoom();
  bool TakeNewViewSize();

  // Drives an image method: picture into the buffer, the buffer's operation, a new picture out of
  // it.
  template <typename Operation>
  void Transform(Operation&& operation);

  // Handlers of the surface's and the buffer's events.
  void UserControl_Resize();
  void UserControl_KeyDown(Integer& KeyCode, Integer& Shift);
  void UserControl_KeyPress(Integer& KeyAscii);
  void UserControl_KeyUp(Integer& KeyCode, Integer& Shift);
  void picTwain_Click();
  void picTwain_DblClick();
  void picTwain_MouseDown(Integer& Button, Integer& Shift, Single& X, Single& Y);
  void picTwain_MouseMove(Integer& Button, Integer& Shift, Single& X, Single& Y);
  void picTwain_MouseUp(Integer& Button, Integer& Shift, Single& X, Single& Y);
  void picTwain_Paint();
  void picTwain_Resize();
  void HScroll1_Change();
  void HScroll1_Scroll();
  void VScroll1_Change();
  void VScroll1_Scroll();
  void PIC24_Progress(Integer Percent);

  Platform& m_platform;
  std::shared_ptr<Surface> m_surface;
  std::shared_ptr<Site> m_site;
  std::unique_ptr<SurfaceDoor> m_door;
  EventSource m_events;
  LayoutNest m_layouts;

  Integer m_Quality = 0;
  Integer m_Compression = 0;
  IMAGE_TYPE m_FileType = twBITMAP;
  bool m_Scrollable = false;
  bool m_AutoRedraw = false;
  bool m_ShowProgress = false;
  bool m_ShowInterface = false;
  IMAGE_COLORTYPE m_ColorType = twBlackWhite;
  Integer m_Resolution = 0;
  std::string m_FileName;
  Integer m_Zoom = 0;
  FIT_TYPE m_FitType = twFITNONE;
  PictureRef m_Picture;
  PictureRef m_DisplayPicture;
  std::unique_ptr<cTwain> m_Twain;
  std::unique_ptr<cGDI> m_GDI;
  std::unique_ptr<cDialog> m_Dialog;
  std::unique_ptr<cPicture24> PIC24;
};

}  // namespace quillet
