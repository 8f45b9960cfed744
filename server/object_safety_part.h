#pragma once

#include "server/part.h"

namespace quillet {

// The control reads and writes files that its caller names: it is not for callers that are not
// trusted, and says so.
class ObjectSafetyPart final : public Part<IObjectSafety> {
 public:
  using Part::Part;

  STDMETHODIMP GetInterfaceSafetyOptions(REFIID iid, DWORD* supported, DWORD* enabled) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) override;
};

}  // namespace quillet
