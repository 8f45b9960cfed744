#pragma once

#include "server/part.h"

namespace quillet {

// How the control looks, for a container that shows it while it is not active, prints it or keeps a
// picture of it.
class ViewPart final : public Part<IViewObject2> {
 public:
  using Part::Part;

  // The whole control, scaled to the bounds, into any device context, metafiles too.
  STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectData, DVTARGETDEVICE* target,
                    HDC targetDevice, HDC dc, LPCRECTL bounds, LPCRECTL windowBounds,
                    BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR), ULONG_PTR goOnWith) override;
  STDMETHODIMP GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** palette) override;
  STDMETHODIMP Freeze(DWORD, LONG, void*, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP Unfreeze(DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
  STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* target, SIZEL* extent) override;
};

}  // namespace quillet
