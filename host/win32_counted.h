#pragma once

#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"

namespace quillet {

// An object of these interfaces, on one thread, that ends with its last reference.
template <typename... Interfaces>
class Counted : public Interfaces... {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown) *object = First<Interfaces...>(this);
    ((iid == __uuidof(Interfaces) && (*object = static_cast<Interfaces*>(this))), ...);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --m_references;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  template <typename Interface, typename... Others>
  static Interface* First(Interface* object) {
    return object;
  }

  ULONG m_references = 1;
};

template <typename Object, typename... Arguments>
ComPtr<Object> MakeCounted(Arguments&&... arguments) {
  ComPtr<Object> object;
  *object.Receive() = new Object(std::forward<Arguments>(arguments)...);
  return object;
}

}  // namespace quillet
