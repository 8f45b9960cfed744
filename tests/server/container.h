#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"
#include "platform/win32/window_classes.h"

namespace quillet {

// A minimal container of one control: a window, a client site and an in-place site. It records the
// calls that the control makes. On the stack of its test, which lets go of the control before it.
class Container : public IOleClientSite, public IOleInPlaceSite {
 public:
  Container(int width, int height);
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;
  virtual ~Container();

  HWND Window() const { return m_window; }
  // What the control may answer for its place.
  RECT place{};
  bool refusesActivation = false;
  // What the container does inside a call that it records.
  std::function<void(const std::string& call)> onCall;

  std::vector<std::string> TakeCalls();
  // References that the control holds.
  ULONG References() const { return m_references; }

  // Site, extent, verb and rectangles in the order in which the system's own containers give them.
  void Show(IOleObject& control);
  void PumpMessages();
  // Gives the control all of the window when its user has changed the size.
  void FitToWindow(IOleObject& control);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override { return --m_references; }

  STDMETHODIMP SaveObject() override;
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override;
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return S_OK; }
  STDMETHODIMP CanInPlaceActivate() override { return refusesActivation ? S_FALSE : S_OK; }
  STDMETHODIMP OnInPlaceActivate() override;
  STDMETHODIMP OnUIActivate() override;
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                LPRECT placeOut, LPRECT visible,
                                OLEINPLACEFRAMEINFO* information) override;
  STDMETHODIMP Scroll(SIZE) override { return S_OK; }
  STDMETHODIMP OnUIDeactivate(BOOL) override;
  STDMETHODIMP OnInPlaceDeactivate() override;
  STDMETHODIMP DiscardUndoState() override { return S_OK; }
  STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
  STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }

 private:
  HRESULT Record(const char* call);

  WindowClass m_class{L"Quillet.TestContainer", 0, nullptr};
  HWND m_window;
  ULONG m_references = 0;
  std::vector<std::string> m_calls;
};

}  // namespace quillet
