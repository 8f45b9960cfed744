#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "tests/server/container.h"
#include "tests/server/control_library.h"
#include "tests/server/event_recorder.h"

namespace quillet {
namespace {

using Lines = std::vector<std::string>;

HWND WindowOf(const ComPtr<::_Twain>& control) {
  HWND window = nullptr;
  As<IOleInPlaceObject>(control)->GetWindow(&window);
  return window;
}

SIZE SizeOf(HWND window) {
  RECT place{};
  ::GetWindowRect(window, &place);
  return {place.right - place.left, place.bottom - place.top};
}

HWND BoxOf(const ComPtr<::_Twain>& control) {
  LONG box = 0;
  control->get_hwnd(&box);
  return static_cast<HWND>(LongToHandle(box));
}

class Hosting : public testing::Test {
 protected:
  ~Hosting() override {
    if (control) As<IOleObject>(control)->SetClientSite(nullptr);
  }
  void Show() { container.Show(*As<IOleObject>(control).get()); }

  ControlLibrary library;
  Container container{392, 300};
  ComPtr<::_Twain> control = library.Make();
};

TEST_F(Hosting, TheControlStandsInItsPlaceWhateverItsExtentWasSaidToBe) {
  Show();
  EXPECT_EQ(container.TakeCalls(), (Lines{"OnInPlaceActivate", "ShowObject"}));
  const HWND window = WindowOf(control);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(::GetParent(window), container.Window());
  EXPECT_TRUE(::IsWindowVisible(window));
  EXPECT_EQ(SizeOf(window).cx, 392);
  EXPECT_EQ(SizeOf(window).cy, 300);
  SIZEL extent{};
  EXPECT_EQ(As<IOleObject>(control)->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
  EXPECT_EQ(extent.cx, 10372);  // 392 pixels of 1/96 inch, in 0.01 mm
}

TEST_F(Hosting, ANewPlaceResizesTheControlAndClipsIt) {
  Show();
  EventRecorder events(control);
  const RECT place{10, 20, 210, 120}, visible{0, 0, 100, 100};
  EXPECT_EQ(As<IOleInPlaceObject>(control)->SetObjectRects(&place, &visible), S_OK);
  EXPECT_EQ(SizeOf(WindowOf(control)).cx, 200);
  RECT shown{};
  EXPECT_EQ(::GetWindowRgnBox(WindowOf(control), &shown), SIMPLEREGION);
  EXPECT_EQ(shown.right, 90);
  EXPECT_EQ(shown.bottom, 80);
  const Lines log = events.TakeLog();
  EXPECT_EQ(std::count(log.begin(), log.end(), "Resize"), 1);
  EXPECT_EQ(As<IOleInPlaceObject>(control)->SetObjectRects(&place, nullptr), E_POINTER);
}

TEST_F(Hosting, AClickGivesTheControlTheKeysAndReachesTheHost) {
  Show();
  EventRecorder events(control);
  container.TakeCalls();
  const HWND box = BoxOf(control);
  ::SendMessageW(box, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(container.Window()),
                 MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
  ::SendMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 7));
  ::SendMessageW(box, WM_LBUTTONUP, 0, MAKELPARAM(5, 7));
  EXPECT_EQ(container.TakeCalls(), Lines{"OnUIActivate"});
  EXPECT_EQ(events.TakeLog(), (Lines{"MouseDown 1 0 5 7", "MouseUp 1 0 5 7", "Click"}));
  ::SendMessageW(box, WM_CHAR, 'a', 1);
  EXPECT_EQ(events.TakeLog(), Lines{"KeyPress 97"});
  EXPECT_EQ(As<IOleInPlaceObject>(control)->UIDeactivate(), S_OK);
  EXPECT_EQ(container.TakeCalls(), Lines{"OnUIDeactivate"});
}

TEST_F(Hosting, WhatASinkLeavesInAnArgumentReachesTheNextSink) {
  Show();
  EventRecorder first(control), second(control);
  first.onEvent = [](DISPID event, DISPPARAMS& arguments) {
    if (event == 6) *arguments.rgvarg[0].piVal = 66;
  };
  ::SendMessageW(BoxOf(control), WM_CHAR, 'a', 1);
  EXPECT_EQ(first.TakeLog(), Lines{"KeyPress 97"});
  EXPECT_EQ(second.TakeLog(), Lines{"KeyPress 66"});
}

TEST_F(Hosting, ProgressComesByValueOnceARow) {
  EventRecorder events(control);
  control->putref_Picture(BlackPicture(2, 4).get());
  events.TakeLog();
  control->Flip();
  Lines progress;
  for (const std::string& line : events.TakeLog())
    if (line.starts_with("Progress")) progress.push_back(line);
  ASSERT_EQ(progress.size(), 4u);
  EXPECT_EQ(progress.back(), "Progress 100");
}

TEST_F(Hosting, FrozenEventsAreNotToldAndADisconnectedSinkIsLetGo) {
  EventRecorder events(control);
  EXPECT_GT(events.References(), 1u);
  const auto oleControl = As<IOleControl>(control);
  oleControl->FreezeEvents(TRUE);
  control->putref_Picture(BlackPicture(2, 4).get());
  control->Flip();
  EXPECT_EQ(events.TakeLog(), Lines{});
  oleControl->FreezeEvents(FALSE);
  control->Flip();
  EXPECT_NE(events.TakeLog(), Lines{});
  EXPECT_EQ(events.Disconnect(), S_OK);
  EXPECT_EQ(events.References(), 1u);
  control->Flip();
  EXPECT_EQ(events.TakeLog(), Lines{});
}

TEST_F(Hosting, AContainerThatRefusesLeavesTheControlOutside) {
  container.refusesActivation = true;
  const auto object = As<IOleObject>(control);
  object->SetClientSite(&container);
  EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, &container, 0, nullptr, nullptr), E_FAIL);
  EXPECT_EQ(WindowOf(control), nullptr);
}

TEST_F(Hosting, LeavingTakesTheWindowBackAndLetsGoOfTheContainer) {
  Show();
  const HWND window = WindowOf(control);
  const auto object = As<IOleObject>(control);
  object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, nullptr, nullptr);
  control->put_Quality(1);
  container.TakeCalls();
  EXPECT_EQ(object->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_EQ(container.TakeCalls(), (Lines{"SaveObject", "OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_NE(::GetParent(window), container.Window());
  // And comes again.
  EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr), S_OK);
  EXPECT_EQ(::GetParent(window), container.Window());
  object->SetClientSite(nullptr);
  EXPECT_EQ(container.References(), 0u);
}

TEST_F(Hosting, TheControlOutlivesItsHostsWindow) {
  Show();
  control->putref_Picture(BlackPicture(20, 10).get());
  ::DestroyWindow(container.Window());
  LONG width = 0;
  EXPECT_EQ(control->get_BitmapWidth(&width), S_OK);
  EXPECT_EQ(width, 20);
  EXPECT_EQ(control->put_BorderStyle(0), static_cast<HRESULT>(0x800A017C));
}

TEST_F(Hosting, AHostMayLetGoOfEverythingInAnEvent) {
  Show();
  const HWND box = BoxOf(control);
  auto events = std::make_unique<EventRecorder>(control);
  bool heard = false;
  events->onEvent = [&](DISPID event, DISPPARAMS&) {
    if (event != 10) return;
    heard = true;
    events->Disconnect();
    const auto object = As<IOleObject>(control);
    object->Close(OLECLOSE_NOSAVE);
    object->SetClientSite(nullptr);
    control = {};
    EXPECT_EQ(library.CanUnload(), S_FALSE);  // its code is at work
  };
  ::SendMessageW(box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 7));
  EXPECT_TRUE(heard);
  events.reset();
  EXPECT_EQ(library.CanUnload(), S_OK);
}

TEST_F(Hosting, AHostMayLetGoOfTheControlThatTakesTheKeys) {
  Show();
  const HWND box = BoxOf(control);
  container.TakeCalls();
  container.onCall = [&](const std::string& call) {
    if (call != "OnUIActivate") return;
    control = {};
    EXPECT_EQ(container.TakeCalls(), Lines{"OnUIActivate"});  // it is at work, and ends after that
  };
  ::SendMessageW(box, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(container.Window()),
                 MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
  EXPECT_EQ(container.TakeCalls(), (Lines{"OnUIDeactivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(container.References(), 0u);
  EXPECT_EQ(library.CanUnload(), S_OK);
}

TEST_F(Hosting, AContainerMayUndoOrRepeatAnActivationInside) {
  const auto object = As<IOleObject>(control);
  const auto show = [&] {
    return object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr);
  };
  container.onCall = [&](const std::string& call) {
    if (call == "OnInPlaceActivate") object->SetClientSite(nullptr);
  };
  object->SetClientSite(&container);
  EXPECT_EQ(show(), E_UNEXPECTED);
  EXPECT_EQ(container.TakeCalls(), (Lines{"OnInPlaceActivate", "OnInPlaceDeactivate"}));
  EXPECT_EQ(container.References(), 0u);

  container.onCall = [&](const std::string& call) {
    if (call == "OnInPlaceActivate") show();
  };
  object->SetClientSite(&container);
  EXPECT_EQ(show(), S_OK);
  EXPECT_EQ(container.TakeCalls(), (Lines{"OnInPlaceActivate", "ShowObject"}));
}

// A container that is offered the keys which the control does not take.
class KeySite : public Container, public IOleControlSite {
 public:
  using Container::Container;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IOleControlSite) return Container::QueryInterface(iid, object);
    *object = static_cast<IOleControlSite*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Container::AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return Container::Release(); }
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(::IDispatch**) override { return E_NOTIMPL; }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(::MSG*, DWORD held) override {
    modifiers.push_back(held);
    return S_OK;
  }
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

  std::vector<DWORD> modifiers;
};

TEST_F(Hosting, AContainersKeysComeWithTheModifiersThatAreHeld) {
  KeySite site(100, 80);
  const auto object = As<IOleObject>(control);
  object->SetClientSite(&site);
  ::MSG tab{};
  tab.message = WM_KEYDOWN;
  tab.wParam = VK_TAB;
  for (const int key : {0, VK_SHIFT, VK_CONTROL, VK_MENU}) {
    BYTE held[256]{};
    held[key] = 0x80;
    ::SetKeyboardState(held);
    EXPECT_EQ(As<IOleInPlaceActiveObject>(control)->TranslateAccelerator(&tab), S_OK);
  }
  BYTE none[256]{};
  ::SetKeyboardState(none);
  EXPECT_EQ(site.modifiers, (std::vector<DWORD>{0, 1, 2, 4}));
  object->SetClientSite(nullptr);
}

class Notified : public IPropertyNotifySink {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IPropertyNotifySink;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override {
    const auto act = std::exchange(onRelease, {});
    if (act) act();
    return 1;
  }
  STDMETHODIMP OnChanged(DISPID number) override {
    numbers.push_back(number);
    return answer;
  }
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

  HRESULT answer = S_OK;
  std::function<void()> onRelease;  // once
  std::vector<DISPID> numbers;
};

TEST_F(Hosting, ChangedPropertiesAreToldByNumberAndAFailureComesBackAfterTheValueIsStored) {
  Notified sink;
  ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
  const auto points = As<IConnectionPointContainer>(control);
  ASSERT_EQ(points->FindConnectionPoint(IID_IPropertyNotifySink, point.Receive()), S_OK);
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  control->put_Quality(3);
  Put(control.get(), L"filename", Value(L"x"));
  EXPECT_EQ(sink.numbers, (std::vector<DISPID>{0x68030014, 0x68030003}));
  sink.answer = E_ACCESSDENIED;
  EXPECT_EQ(control->put_Quality(4), static_cast<HRESULT>(0x800A01B8));
  SHORT quality = 0;
  control->get_Quality(&quality);
  EXPECT_EQ(quality, 4);
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
}

TEST_F(Hosting, ASinkThatIsLetGoMayEndConnectionsItself) {
  Notified first, second, third;
  ComPtr<IConnectionPoint> point;
  As<IConnectionPointContainer>(control)->FindConnectionPoint(IID_IPropertyNotifySink,
                                                              point.Receive());
  DWORD cookies[3]{};
  point->Advise(&first, &cookies[0]);
  point->Advise(&second, &cookies[1]);
  point->Advise(&third, &cookies[2]);
  first.onRelease = [&] {
    EXPECT_EQ(point->Unadvise(cookies[0]), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point->Unadvise(cookies[1]), S_OK);
  };
  EXPECT_EQ(point->Unadvise(cookies[0]), S_OK);
  control->put_Quality(3);
  EXPECT_EQ(first.numbers.size() + second.numbers.size(), 0u);
  EXPECT_EQ(third.numbers.size(), 1u);
  // The control's end, too.
  IConnectionPoint* last = point.get();
  third.onRelease = [&] { EXPECT_EQ(last->Unadvise(cookies[2]), CONNECT_E_NOCONNECTION); };
  point = {};
  control = {};
  EXPECT_FALSE(third.onRelease);
}

TEST_F(Hosting, TheConnectionPointsAreListed) {
  const auto points = As<IConnectionPointContainer>(control);
  ComPtr<IEnumConnectionPoints> list;
  ASSERT_EQ(points->EnumConnectionPoints(list.Receive()), S_OK);
  std::vector<IID> found;
  ComPtr<IConnectionPoint> point;
  while (list->Next(1, point.Receive(), nullptr) == S_OK) {
    IID iid{};
    point->GetConnectionInterface(&iid);
    found.push_back(iid);
  }
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0], kEventInterface);
  EXPECT_EQ(found[1], IID_IPropertyNotifySink);
  EXPECT_EQ(points->FindConnectionPoint(IID_IOleObject, point.Receive()), CONNECT_E_NOCONNECTION);
}

}  // namespace
}  // namespace quillet
