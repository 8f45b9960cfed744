#include "server/class_info_part.h"

#include "server/twain_interfaces.h"
#include "server/type_library.h"

namespace quillet {

HRESULT ClassInfoPart::GetClassInfo(ITypeInfo** typeInfo) {
  if (!typeInfo) return E_POINTER;
  *typeInfo = nullptr;
  return Enter([&] { return LoadTypeInfo(kControlClass, typeInfo); });
}

HRESULT ClassInfoPart::GetGUID(DWORD kind, GUID* id) {
  if (!id) return E_POINTER;
  const bool known = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID;
  *id = known ? kEventInterface : GUID_NULL;
  return known ? S_OK : E_INVALIDARG;
}

}  // namespace quillet
