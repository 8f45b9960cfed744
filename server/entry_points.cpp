// What the system calls in quillet.ocx.

#include <array>

#include "server/class_factory.h"
#include "server/module.h"
#include "server/registration.h"
#include "server/twain_interfaces.h"
#include "server/type_library.h"

namespace quillet {
namespace {

// The loaded library itself: the entry points are given nothing that could hold it.
constinit Module g_module;

// For all users where that is allowed, else for this one.
const std::array<RegistrationRoot, 2> kRoots{
    {{HKEY_LOCAL_MACHINE, L"Software\\Classes"}, {HKEY_CURRENT_USER, L"Software\\Classes"}}};

}  // namespace
}  // namespace quillet

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (classId != quillet::kControlClass) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new (std::nothrow) quillet::ClassFactory(quillet::g_module);
  if (!factory) return E_OUTOFMEMORY;
  const HRESULT result = factory->QueryInterface(iid, object);
  factory->Release();
  return result;
}

STDAPI DllCanUnloadNow() {
  return quillet::g_module.IsInUse() ? S_FALSE : S_OK;
}

STDAPI DllRegisterServer() {
  return quillet::Register(quillet::kRoots, quillet::OwnFileName());
}

STDAPI DllUnregisterServer() {
  return quillet::Unregister(quillet::kRoots);
}
