#include "server/object_safety_part.h"

namespace quillet {

HRESULT ObjectSafetyPart::GetInterfaceSafetyOptions(REFIID iid, DWORD* supported, DWORD* enabled) {
  if (!supported || !enabled) return E_POINTER;
  *supported = *enabled = 0;
  ComPtr<::IUnknown> found;
  return QueryInterface(iid, found.ReceiveVoid());
}

HRESULT ObjectSafetyPart::SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) {
  ComPtr<::IUnknown> found;
  const HRESULT result = QueryInterface(iid, found.ReceiveVoid());
  if (FAILED(result)) return result;
  return (mask & enabled) == 0 ? S_OK : E_FAIL;
}

}  // namespace quillet
