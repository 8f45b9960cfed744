#pragma once

#include "host/win32_counted.h"

namespace quillet {

// Where a control stands in its container: a place in a window, with nothing around it.
class OcxSite final : public Counted<IOleClientSite, IOleInPlaceSite> {
 public:
  explicit OcxSite(HWND window) noexcept : m_window(window) {}

  const RECT& Place() const noexcept { return m_place; }
  void SetPlace(const RECT& place) noexcept { m_place = place; }

  STDMETHODIMP SaveObject() override { return S_OK; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return S_OK; }
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                LPRECT place, LPRECT visible,
                                LPOLEINPLACEFRAMEINFO information) override;
  STDMETHODIMP Scroll(SIZE) override { return S_FALSE; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return S_OK; }
  STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
  STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }

 private:
  HWND m_window;
  RECT m_place{};
};

}  // namespace quillet
