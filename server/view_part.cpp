#include "server/view_part.h"

#include "server/surface_image.h"

namespace quillet {

HRESULT ViewPart::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds,
                       LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR), ULONG_PTR) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (!dc) return E_INVALIDARG;
  if (!bounds) return E_POINTER;
  return Enter([&] {
    m_core.Control();
    const SurfaceImage image(m_core.Surface());
    image.Draw(dc, {bounds->left, bounds->top, bounds->right, bounds->bottom});
    return S_OK;
  });
}

HRESULT ViewPart::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** palette) {
  if (!palette) return E_POINTER;
  *palette = nullptr;
  return S_FALSE;
}

HRESULT ViewPart::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  if (sink && !(aspects & DVASPECT_CONTENT)) return DV_E_DVASPECT;
  return Enter([&] {
    m_core.Watcher().Set(aspects, flags, sink);
    return S_OK;
  });
}

HRESULT ViewPart::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (sink) *sink = nullptr;
  return Enter([&] {
    const ViewWatcher& watcher = m_core.Watcher();
    if (aspects) *aspects = watcher.Aspects();
    if (flags) *flags = watcher.Flags();
    if (sink) *sink = ComPtr<IAdviseSink>(watcher.Sink()).release();
    return S_OK;
  });
}

HRESULT ViewPart::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, SIZEL* extent) {
  if (!extent) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  return Enter([&] {
    *extent = m_core.Container().Extent();
    return S_OK;
  });
}

}  // namespace quillet
