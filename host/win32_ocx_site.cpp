#include "host/win32_ocx_site.h"

namespace quillet {

HRESULT OcxSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
  if (moniker) *moniker = nullptr;
  return E_NOTIMPL;
}

HRESULT OcxSite::GetContainer(IOleContainer** container) {
  if (!container) return E_POINTER;
  *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT OcxSite::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = m_window;
  return S_OK;
}

HRESULT OcxSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                  LPRECT place, LPRECT visible, LPOLEINPLACEFRAMEINFO information) {
  if (!frame || !document || !place || !visible || !information) return E_POINTER;
  *frame = nullptr;
  *document = nullptr;
  *place = *visible = m_place;
  information->fMDIApp = FALSE;
  information->hwndFrame = m_window;
  information->haccel = nullptr;
  information->cAccelEntries = 0;
  return S_OK;
}

}  // namespace quillet
