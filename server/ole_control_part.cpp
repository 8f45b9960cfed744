#include "server/ole_control_part.h"

namespace quillet {

HRESULT OleControlPart::GetControlInfo(CONTROLINFO* information) {
  if (!information) return E_POINTER;
  information->hAccel = nullptr;
  information->cAccel = 0;
  information->dwFlags = 0;
  return S_OK;
}

HRESULT OleControlPart::FreezeEvents(BOOL freeze) {
  return Enter([&] {
    int& frozen = *m_core.FrozenEvents();
    if (freeze)
      ++frozen;
    else if (frozen > 0)
      --frozen;
    return S_OK;
  });
}

}  // namespace quillet
