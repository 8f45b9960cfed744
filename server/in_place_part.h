#pragma once

#include "server/part.h"

namespace quillet {

class InPlacePart final : public Part<IOleInPlaceObject> {
 public:
  using Part::Part;

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return S_OK; }
  STDMETHODIMP InPlaceDeactivate() override;
  STDMETHODIMP UIDeactivate() override;
  STDMETHODIMP SetObjectRects(LPCRECT place, LPCRECT visible) override;
  STDMETHODIMP ReactivateAndUndo() override { return INPLACE_E_NOTUNDOABLE; }
};

}  // namespace quillet
