#pragma once

#include "server/part.h"

namespace quillet {

class OleControlPart final : public Part<IOleControl> {
 public:
  using Part::Part;

  // It has no accelerators.
  STDMETHODIMP GetControlInfo(CONTROLINFO* information) override;
  STDMETHODIMP OnMnemonic(::MSG*) override { return S_OK; }
  // It takes nothing from its container's appearance.
  STDMETHODIMP OnAmbientPropertyChange(DISPID) override { return S_OK; }
  // Events that come while they are frozen are lost.
  STDMETHODIMP FreezeEvents(BOOL freeze) override;
};

}  // namespace quillet
