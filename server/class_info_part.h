#pragma once

#include "server/part.h"

namespace quillet {

// The control's class in the type library, and its event interface.
class ClassInfoPart final : public Part<IProvideClassInfo2> {
 public:
  using Part::Part;

  STDMETHODIMP GetClassInfo(ITypeInfo** typeInfo) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* id) override;
};

}  // namespace quillet
