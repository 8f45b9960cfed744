#include "tests/server/container.h"

#include <utility>

namespace quillet {

Container::Container(int width, int height)
    : place{0, 0, width, height},
      m_window(::CreateWindowExW(0, m_class.Name(), L"", WS_POPUP | WS_CLIPCHILDREN, 0, 0, width,
                                 height, nullptr, nullptr, ThisModule(), nullptr)) {
  ::ShowWindow(m_window, SW_SHOWNOACTIVATE);
}

Container::~Container() {
  ::DestroyWindow(m_window);
}

std::vector<std::string> Container::TakeCalls() {
  return std::exchange(m_calls, {});
}

void Container::Show(IOleObject& control) {
  control.SetClientSite(this);
  control.SetHostNames(L"test", nullptr);
  SIZEL wrong{10795, 8255};
  control.SetExtent(DVASPECT_CONTENT, &wrong);
  control.DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, m_window, &place);
  ComPtr<IOleInPlaceObject> inPlace;
  control.QueryInterface(IID_IOleInPlaceObject, inPlace.ReceiveVoid());
  inPlace->SetObjectRects(&place, &place);
  PumpMessages();
}

void Container::FitToWindow(IOleObject& control) {
  RECT inside{};
  ::GetClientRect(m_window, &inside);
  if (::EqualRect(&inside, &place)) return;
  place = inside;
  ComPtr<IOleInPlaceObject> inPlace;
  control.QueryInterface(IID_IOleInPlaceObject, inPlace.ReceiveVoid());
  inPlace->SetObjectRects(&place, &place);
}

void Container::PumpMessages() {
  ::MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
}

HRESULT Container::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (iid == IID_IUnknown || iid == IID_IOleClientSite)
    *object = static_cast<IOleClientSite*>(this);
  else if (iid == IID_IOleWindow || iid == IID_IOleInPlaceSite)
    *object = static_cast<IOleInPlaceSite*>(this);
  if (!*object) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT Container::Record(const char* call) {
  m_calls.push_back(call);
  const auto act = onCall;
  if (act) act(call);
  return S_OK;
}

HRESULT Container::SaveObject() {
  return Record("SaveObject");
}

HRESULT Container::GetContainer(IOleContainer** container) {
  *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT Container::ShowObject() {
  return Record("ShowObject");
}

HRESULT Container::GetWindow(HWND* window) {
  *window = m_window;
  return S_OK;
}

HRESULT Container::OnInPlaceActivate() {
  return Record("OnInPlaceActivate");
}

HRESULT Container::OnUIActivate() {
  return Record("OnUIActivate");
}

HRESULT Container::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                    LPRECT placeOut, LPRECT visible,
                                    OLEINPLACEFRAMEINFO* information) {
  *frame = nullptr;
  *document = nullptr;
  *placeOut = *visible = place;
  information->hwndFrame = m_window;
  return S_OK;
}

HRESULT Container::OnUIDeactivate(BOOL) {
  return Record("OnUIDeactivate");
}

HRESULT Container::OnInPlaceDeactivate() {
  return Record("OnInPlaceDeactivate");
}

}  // namespace quillet
