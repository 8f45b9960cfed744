#include "server/in_place_part.h"

namespace quillet {

HRESULT InPlacePart::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = nullptr;
  return Enter([&] {
    if (!m_core.Container().IsActive()) return E_FAIL;
    *window = m_core.Surface().UserControl().Window();
    return S_OK;
  });
}

HRESULT InPlacePart::InPlaceDeactivate() {
  return Enter([&] {
    m_core.Container().Deactivate();
    return S_OK;
  });
}

HRESULT InPlacePart::UIDeactivate() {
  return Enter([&] {
    m_core.Container().DeactivateKeys();
    return S_OK;
  });
}

HRESULT InPlacePart::SetObjectRects(LPCRECT place, LPCRECT visible) {
  if (!place || !visible) return E_POINTER;
  return Enter([&] { return m_core.Container().SetRectangles(*place, *visible); });
}

}  // namespace quillet
