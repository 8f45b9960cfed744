#include "server/class_factory.h"

#include "server/control_object.h"

namespace quillet {

HRESULT ClassFactory::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  const bool known = iid == IID_IClassFactory || iid == IID_IUnknown;
  *object = known ? static_cast<IClassFactory*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ClassFactory::Release() {
  const ULONG left = --m_references;
  if (left == 0) delete this;
  return left;
}

HRESULT ClassFactory::CreateInstance(::IUnknown* outer, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  return ControlObject::Create(m_use.Owner(), outer, iid, object);
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  if (lock)
    m_use.Owner().AddUse();
  else
    m_use.Owner().EndUse();
  return S_OK;
}

}  // namespace quillet
