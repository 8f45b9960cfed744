#include "server/type_library.h"

#include "platform/win32/com_ptr.h"
#include "platform/win32/window_classes.h"

namespace quillet {

std::wstring OwnFileName() {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        ::GetModuleFileNameW(ThisModule(), name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    name.resize(name.size() * 2);
  }
}

HRESULT LoadOwnTypeLibrary(ITypeLib** library) {
  return ::LoadTypeLibEx(OwnFileName().c_str(), REGKIND_NONE, library);
}

HRESULT LoadTypeInfo(REFGUID id, ITypeInfo** typeInfo) {
  ComPtr<ITypeLib> library;
  const HRESULT result = LoadOwnTypeLibrary(library.Receive());
  return FAILED(result) ? result : library->GetTypeInfoOfGuid(id, typeInfo);
}

}  // namespace quillet
