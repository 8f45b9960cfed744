#include <gtest/gtest.h>

#include "tests/server/container.h"
#include "tests/server/control_library.h"
#include "tests/server/event_recorder.h"
#include "tests/windows/wine.h"

// Needs the system headers before it.
#include <psapi.h>

namespace quillet {
namespace {

TEST(Lifetime, TheLibraryIsInUseAsLongAsAnythingOfItIsHeld) {
  ControlLibrary library;
  EXPECT_EQ(library.CanUnload(), S_OK);
  auto factory = library.Factory();
  EXPECT_EQ(library.CanUnload(), S_FALSE);
  factory->LockServer(TRUE);
  auto control = library.Make();
  factory = {};
  EXPECT_EQ(library.CanUnload(), S_FALSE);
  auto point = As<IConnectionPointContainer>(control);
  control = {};
  EXPECT_EQ(library.CanUnload(), S_FALSE);
  point = {};
  EXPECT_EQ(library.CanUnload(), S_FALSE);  // locked
  library.Factory()->LockServer(FALSE);
  EXPECT_EQ(library.CanUnload(), S_OK);
}

TEST(Lifetime, TheLibraryLoadsAgainAfterItWasUnloaded) {
  for (int round = 0; round < 3; ++round) {
    ControlLibrary library;
    Container container(100, 80);
    auto control = library.Make();
    container.Show(*As<IOleObject>(control).get());
    As<IOleObject>(control)->SetClientSite(nullptr);
  }
}

TEST(Lifetime, OnlyItsOwnClassIsMade) {
  const ControlLibrary library;
  void* object = &object;
  EXPECT_EQ(library.GetClassObject(kLibraryId, IID_IClassFactory, &object),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(library.GetClassObject(kControlClass, IID_IClassFactory, nullptr), E_POINTER);
  EXPECT_EQ(library.GetClassObject(kControlClass, IID_IOleObject, &object), E_NOINTERFACE);
  EXPECT_EQ(library.Factory()->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
  EXPECT_EQ(library.CanUnload(), S_OK);
}

TEST(Lifetime, EveryInterfaceLeadsToTheOneIdentity) {
  const ControlLibrary library;
  const auto control = library.Make();
  const auto identity = As<::IUnknown>(control);
  const IID kInterfaces[] = {kTwainInterface,
                             IID_IDispatch,
                             IID_ISupportErrorInfo,
                             IID_IOleObject,
                             IID_IOleControl,
                             IID_IOleWindow,
                             IID_IOleInPlaceObject,
                             IID_IOleInPlaceActiveObject,
                             IID_IViewObject,
                             IID_IViewObject2,
                             IID_IPersist,
                             IID_IPersistStreamInit,
                             IID_IPersistPropertyBag,
                             IID_IConnectionPointContainer,
                             IID_IProvideClassInfo,
                             IID_IProvideClassInfo2,
                             IID_IObjectSafety};
  for (const IID& iid : kInterfaces) {
    ComPtr<::IUnknown> part;
    ASSERT_EQ(control->QueryInterface(iid, part.ReceiveVoid()), S_OK);
    EXPECT_EQ(As<::IUnknown>(part).get(), identity.get());
  }
}

// An object that the control is a part of.
class Outer : public ::IUnknown {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IUnknown) return inner->QueryInterface(iid, object);
    *object = this;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }

  ULONG references = 1;
  ComPtr<::IUnknown> inner;
};

TEST(Lifetime, AsPartOfAnotherObjectItHasThatOnesIdentity) {
  const ControlLibrary library;
  Outer outer;
  void* refused = nullptr;
  EXPECT_EQ(library.Factory()->CreateInstance(&outer, IID_IDispatch, &refused),
            CLASS_E_NOAGGREGATION);
  ASSERT_EQ(library.Factory()->CreateInstance(&outer, IID_IUnknown, outer.inner.ReceiveVoid()),
            S_OK);
  {
    const auto control = As<::_Twain>(outer.inner);
    EXPECT_EQ(As<::IUnknown>(control).get(), &outer);
    EXPECT_GT(outer.references, 1u);
    EXPECT_EQ(control->put_Quality(5), S_OK);
  }
  EXPECT_EQ(outer.references, 1u);
  outer.inner = {};
  EXPECT_EQ(library.CanUnload(), S_OK);
}

TEST(Lifetime, TwoControlsOfAProcessDoNotMeet) {
  const ControlLibrary library;
  Container container(300, 200);
  const auto first = library.Make(), second = library.Make();
  container.Show(*As<IOleObject>(first).get());
  container.place = {150, 0, 300, 200};
  container.Show(*As<IOleObject>(second).get());
  EventRecorder events(second);
  first->putref_Picture(BlackPicture(10, 10).get());
  first->Flip();
  EXPECT_TRUE(events.TakeLog().empty());
  LONG width = 0, box = 0, other = 0;
  second->get_BitmapWidth(&width);
  EXPECT_EQ(width, 0);
  first->get_hwnd(&box);
  second->get_hwnd(&other);
  EXPECT_NE(box, other);
  for (const auto& control : {first, second}) As<IOleObject>(control)->SetClientSite(nullptr);
}

struct Use {
  DWORD gdi = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
  DWORD user = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
  SIZE_T memory = [] {
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
  }();
};

// In parts, each of which ends long before a test's deadline on a busy machine too.
class ThousandControls : public testing::TestWithParam<int> {};

TEST_P(ThousandControls, ScanAndLeaveNothingBehind) {
  const ControlLibrary library;
  Container container(40, 30);
  const auto round = [&] {
    const auto control = library.Make();
    container.Show(*As<IOleObject>(control).get());
    EventRecorder events(control);
    control->putref_Picture(BlackPicture(60, 40).get());
    control->Rotate();
    control->put_Resolution(10);
    if (IsWine()) {
      EXPECT_EQ(control->Scan(nullptr), S_OK);
    }
    events.Disconnect();
    As<IOleObject>(control)->SetClientSite(nullptr);
  };
  for (int i = 0; i < 20; ++i) round();
  const Use before;
  for (int i = 0; i < 250; ++i) round();
  const Use after;
  EXPECT_EQ(after.gdi, before.gdi);
  EXPECT_EQ(after.user, before.user);
  // A page or a picture that stays behind in every round takes more.
  EXPECT_LT(after.memory, before.memory + 500'000);
  EXPECT_EQ(library.CanUnload(), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Lifetime, ThousandControls, testing::Range(1, 5));

}  // namespace
}  // namespace quillet
