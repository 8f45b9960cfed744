#include "server/embedding.h"

#include <utility>

#include "base/rounding.h"
#include "server/control_core.h"

namespace quillet {
namespace {

constexpr double kHimetricInTwips = 2540.0 / 1440.0;

LONG Himetric(Single twips) {
  return ToLong(static_cast<double>(twips) * kHimetricInTwips);
}

Single Twips(LONG himetric) {
  return static_cast<Single>(himetric / kHimetricInTwips);
}

// The window shows in that part of its place; whole when that is all of it.
void Clip(HWND window, const RECT& place, const RECT& visible) {
  RECT shown{};
  ::IntersectRect(&shown, &place, &visible);
  if (::EqualRect(&shown, &place)) {
    ::SetWindowRgn(window, nullptr, TRUE);
    return;
  }
  ::OffsetRect(&shown, -place.left, -place.top);
  const HRGN region = ::CreateRectRgnIndirect(&shown);
  if (::SetWindowRgn(window, region, TRUE) == 0) ::DeleteObject(region);
}

}  // namespace

void Embedding::SetClientSite(IOleClientSite* site) {
  if (site != m_clientSite.get()) Deactivate();
  m_clientSite = ComPtr<IOleClientSite>(site);
}

HRESULT Embedding::Activate(bool withKeys) {
  if (!m_clientSite) return E_FAIL;
  if (!IsActive()) {
    ComPtr<IOleInPlaceSite> site;
    const ComPtr<IOleClientSite> clientSite = m_clientSite;
    if (FAILED(clientSite->QueryInterface(IID_IOleInPlaceSite, site.ReceiveVoid())) || !site)
      return E_FAIL;
    if (site->CanInPlaceActivate() != S_OK) return E_FAIL;
    // The container may have taken its site back, or have activated the control by itself.
    if (clientSite.get() != m_clientSite.get()) return E_UNEXPECTED;
    if (IsActive()) return withKeys ? TakeKeys() : S_OK;
    m_inPlaceSite = site;
    HRESULT result = site->OnInPlaceActivate();
    if (FAILED(result)) {
      m_inPlaceSite = {};
      return result;
    }
    if (!IsActive()) return E_UNEXPECTED;
    result = StandIn(*site.get());
    if (FAILED(result)) {
      Deactivate();
      return result;
    }
    clientSite->ShowObject();
  }
  return withKeys ? TakeKeys() : S_OK;
}

HRESULT Embedding::StandIn(IOleInPlaceSite& site) {
  HWND window = nullptr;
  HRESULT result = site.GetWindow(&window);
  if (FAILED(result)) return result;
  ComPtr<IOleInPlaceFrame> frame;
  ComPtr<IOleInPlaceUIWindow> document;
  RECT place{}, visible{};
  OLEINPLACEFRAMEINFO information{};
  information.cb = sizeof information;
  result =
      site.GetWindowContext(frame.Receive(), document.Receive(), &place, &visible, &information);
  if (FAILED(result)) return result;
  if (!IsActive()) return E_UNEXPECTED;
  m_frame = std::move(frame);
  m_document = std::move(document);
  m_core.Surface().Site(window, place);
  Clip(m_core.Surface().UserControl().Window(), place, visible);
  return S_OK;
}

HRESULT Embedding::TakeKeys() {
  if (m_hasKeys || !IsActive()) return S_OK;
  const ComPtr<IOleInPlaceSite> site = m_inPlaceSite;
  const HRESULT result = site->OnUIActivate();
  if (FAILED(result)) return result;
  if (!IsActive()) return E_UNEXPECTED;
  m_hasKeys = true;
  const HWND window = m_core.Surface().UserControl().Window();
  if (!::IsChild(window, ::GetFocus())) ::SetFocus(window);
  // Gone again meanwhile: a container must not keep it as the active object.
  if (!m_hasKeys) return E_UNEXPECTED;

  ComPtr<IOleInPlaceActiveObject> active;
  m_core.Identity().QueryInterface(IID_IOleInPlaceActiveObject, active.ReceiveVoid());
  const ComPtr<IOleInPlaceFrame> frame = m_frame;
  const ComPtr<IOleInPlaceUIWindow> document = m_document;
  if (frame) frame->SetActiveObject(active.get(), L"Quillet");
  if (document) document->SetActiveObject(active.get(), L"Quillet");
  // No tools of its own around the document.
  if (frame) frame->SetBorderSpace(nullptr);
  if (document) document->SetBorderSpace(nullptr);
  return S_OK;
}

void Embedding::DeactivateKeys() {
  if (!std::exchange(m_hasKeys, false)) return;
  const ComPtr<IOleInPlaceSite> site = m_inPlaceSite;
  const ComPtr<IOleInPlaceFrame> frame = m_frame;
  const ComPtr<IOleInPlaceUIWindow> document = m_document;
  if (frame) frame->SetActiveObject(nullptr, nullptr);
  if (document) document->SetActiveObject(nullptr, nullptr);
  if (site) site->OnUIDeactivate(FALSE);
}

void Embedding::Deactivate() {
  DeactivateKeys();
  const ComPtr<IOleInPlaceSite> site = std::exchange(m_inPlaceSite, {});
  if (!site) return;
  m_frame = {};
  m_document = {};
  m_core.Surface().Unsite();
  site->OnInPlaceDeactivate();
}

void Embedding::Entered() {
  TakeKeys();
}

HRESULT Embedding::SetRectangles(const RECT& place, const RECT& visible) {
  if (!IsActive()) return E_UNEXPECTED;
  HWND window = nullptr;
  const ComPtr<IOleInPlaceSite> site = m_inPlaceSite;
  const HRESULT result = site->GetWindow(&window);
  if (FAILED(result)) return result;
  if (!IsActive()) return E_UNEXPECTED;
  m_core.Surface().Site(window, place);
  Clip(m_core.Surface().UserControl().Window(), place, visible);
  return S_OK;
}

SIZEL Embedding::Extent() const {
  const auto& control = m_core.Surface().UserControl();
  return {Himetric(control.Width()), Himetric(control.Height())};
}

HRESULT Embedding::SetExtent(const SIZEL& extent) {
  if (extent.cx < 0 || extent.cy < 0) return E_INVALIDARG;
  // An active control's container says its size by its place, and its extents are often wrong.
  if (IsActive()) return S_OK;
  const auto size =
      m_core.Surface().UserControl().Scale().Pixels(0, 0, Twips(extent.cx), Twips(extent.cy));
  m_core.Surface().Site(HWND_MESSAGE, {0, 0, size.width, size.height});
  return S_OK;
}

}  // namespace quillet
