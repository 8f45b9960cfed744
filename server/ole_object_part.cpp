#include "server/ole_object_part.h"

#include <cwchar>

#include "server/twain_interfaces.h"

namespace quillet {

HRESULT OleObjectPart::SetClientSite(IOleClientSite* site) {
  return Enter([&] {
    m_core.Container().SetClientSite(site);
    return S_OK;
  });
}

HRESULT OleObjectPart::GetClientSite(IOleClientSite** site) {
  if (!site) return E_POINTER;
  *site = nullptr;
  return Enter([&] {
    *site = ComPtr<IOleClientSite>(m_core.Container().ClientSite()).release();
    return S_OK;
  });
}

HRESULT OleObjectPart::Close(DWORD saveOption) {
  return Enter([&] {
    const ComPtr<IOleClientSite> site = m_core.Container().ClientSite();
    if (saveOption != OLECLOSE_NOSAVE && m_core.Notifier().IsDirty() && site) site->SaveObject();
    m_core.Container().Deactivate();
    const ComPtr<IOleAdviseHolder> advised = m_advised;
    if (advised) advised->SendOnClose();
    return S_OK;
  });
}

HRESULT OleObjectPart::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
  if (!moniker) return E_POINTER;
  *moniker = nullptr;
  return E_NOTIMPL;
}

HRESULT OleObjectPart::GetClipboardData(DWORD, IDataObject** data) {
  if (!data) return E_POINTER;
  *data = nullptr;
  return E_NOTIMPL;
}

HRESULT OleObjectPart::DoVerb(LONG verb, ::MSG*, IOleClientSite*, LONG, HWND, LPCRECT) {
  return Enter([&]() -> HRESULT {
    Embedding& container = m_core.Container();
    switch (verb) {
      case OLEIVERB_PRIMARY:
      case OLEIVERB_SHOW:
      case OLEIVERB_UIACTIVATE:
        return container.Activate(true);
      case OLEIVERB_INPLACEACTIVATE:
        return container.Activate(false);
      case OLEIVERB_HIDE:
        container.Deactivate();
        return S_OK;
      case OLEIVERB_DISCARDUNDOSTATE:
        return S_OK;
      default:
        if (verb < 0) return E_NOTIMPL;
        const HRESULT result = container.Activate(true);
        return FAILED(result) ? result : OLEOBJ_S_INVALIDVERB;
    }
  });
}

HRESULT OleObjectPart::EnumVerbs(IEnumOLEVERB** verbs) {
  if (!verbs) return E_POINTER;
  *verbs = nullptr;
  return OLEOBJ_E_NOVERBS;
}

HRESULT OleObjectPart::GetUserClassID(::CLSID* id) {
  if (!id) return E_POINTER;
  *id = kControlClass;
  return S_OK;
}

HRESULT OleObjectPart::GetUserType(DWORD, LPOLESTR* name) {
  if (!name) return E_POINTER;
  constexpr wchar_t kName[] = L"Quillet.Twain";
  *name = static_cast<LPOLESTR>(::CoTaskMemAlloc(sizeof kName));
  if (!*name) return E_OUTOFMEMORY;
  std::wmemcpy(*name, kName, std::size(kName));
  return S_OK;
}

HRESULT OleObjectPart::SetExtent(DWORD aspect, SIZEL* extent) {
  if (!extent) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  return Enter([&] { return m_core.Container().SetExtent(*extent); });
}

HRESULT OleObjectPart::GetExtent(DWORD aspect, SIZEL* extent) {
  if (!extent) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  return Enter([&] {
    *extent = m_core.Container().Extent();
    return S_OK;
  });
}

HRESULT OleObjectPart::Advise(IAdviseSink* sink, DWORD* connection) {
  if (!sink || !connection) return E_POINTER;
  *connection = 0;
  return Enter([&] {
    if (!m_advised) {
      const HRESULT result = ::CreateOleAdviseHolder(m_advised.Receive());
      if (FAILED(result)) return result;
    }
    return m_advised->Advise(sink, connection);
  });
}

HRESULT OleObjectPart::Unadvise(DWORD connection) {
  return Enter([&] { return m_advised ? m_advised->Unadvise(connection) : OLE_E_NOCONNECTION; });
}

HRESULT OleObjectPart::EnumAdvise(IEnumSTATDATA** connections) {
  if (!connections) return E_POINTER;
  *connections = nullptr;
  return Enter([&] { return m_advised ? m_advised->EnumAdvise(connections) : S_OK; });
}

HRESULT OleObjectPart::GetMiscStatus(DWORD aspect, DWORD* status) {
  if (!status) return E_POINTER;
  *status = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
  return aspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
}

}  // namespace quillet
