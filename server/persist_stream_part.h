#pragma once

#include "server/part.h"

namespace quillet {

// The same settings as the property bag's, in a stream.
class PersistStreamPart final : public Part<IPersistStreamInit> {
 public:
  using Part::Part;

  STDMETHODIMP GetClassID(::CLSID* id) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP Load(IStream* stream) override;
  STDMETHODIMP Save(IStream* stream, BOOL clearDirty) override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
  STDMETHODIMP InitNew() override;
};

}  // namespace quillet
