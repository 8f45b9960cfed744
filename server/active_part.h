#pragma once

#include "server/part.h"

namespace quillet {

// The control as the one that has the user's keys.
class ActivePart final : public Part<IOleInPlaceActiveObject> {
 public:
  using Part::Part;

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return S_OK; }
  // Keys of the control's own (arrows move the bars) are not taken as the container's accelerators.
  STDMETHODIMP TranslateAccelerator(::MSG* message) override;
  STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
  STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
};

}  // namespace quillet
