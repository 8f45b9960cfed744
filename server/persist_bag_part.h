#pragma once

#include "server/part.h"

namespace quillet {

// The settings in a container's property bag.
class PersistBagPart final : public Part<IPersistPropertyBag> {
 public:
  using Part::Part;

  STDMETHODIMP GetClassID(::CLSID* id) override;
  STDMETHODIMP InitNew() override;
  // What the bag does not hold gets its default; what cannot be converted ends the reading.
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
  STDMETHODIMP Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;
};

}  // namespace quillet
