#pragma once

#include "server/part.h"

namespace quillet {

// The control as an object in its container's document.
class OleObjectPart final : public Part<IOleObject> {
 public:
  using Part::Part;

  STDMETHODIMP SetClientSite(IOleClientSite* site) override;
  STDMETHODIMP GetClientSite(IOleClientSite** site) override;
  STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  // Asks to be saved where there is something to save and the container wants that.
  STDMETHODIMP Close(DWORD saveOption) override;
  STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
  STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP GetClipboardData(DWORD, IDataObject** data) override;
  // To show and to activate it is all that can be done to it.
  STDMETHODIMP DoVerb(LONG verb, ::MSG* message, IOleClientSite* site, LONG index, HWND parent,
                      LPCRECT place) override;
  STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
  STDMETHODIMP Update() override { return S_OK; }
  STDMETHODIMP IsUpToDate() override { return S_OK; }
  STDMETHODIMP GetUserClassID(::CLSID* id) override;
  STDMETHODIMP GetUserType(DWORD form, LPOLESTR* name) override;
  STDMETHODIMP SetExtent(DWORD aspect, SIZEL* extent) override;
  STDMETHODIMP GetExtent(DWORD aspect, SIZEL* extent) override;
  STDMETHODIMP Advise(IAdviseSink* sink, DWORD* connection) override;
  STDMETHODIMP Unadvise(DWORD connection) override;
  STDMETHODIMP EnumAdvise(IEnumSTATDATA** connections) override;
  STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
  STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

 private:
  ComPtr<IOleAdviseHolder> m_advised;
};

}  // namespace quillet
