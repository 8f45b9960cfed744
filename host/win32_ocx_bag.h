#pragma once

#include <exception>

#include "host/win32_counted.h"
#include "platform/contracts/property_bag.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// A host's bag as a container offers it to a control, for one call: the bag is let go of with it,
// and whatever the control keeps of this finds it closed.
class OcxBag final : public Counted<IPropertyBag> {
 public:
  OcxBag(PropertyBag& bag, Win32Pictures& pictures) : m_bag(&bag), m_pictures(pictures) {}

  // The call is over. Throws what the bag threw in it.
  void Close();

  STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override;
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override;

 private:
  PropertyBag* m_bag;
  Win32Pictures& m_pictures;
  std::exception_ptr m_failure;
};

}  // namespace quillet
