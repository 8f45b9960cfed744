#include <gtest/gtest.h>

#include <functional>

#include "tests/server/container.h"
#include "tests/server/control_library.h"
#include "tests/server/event_recorder.h"
#include "tests/windows/test_page.h"
#include "tests/windows/wine.h"

namespace quillet {
namespace {

// Does something once from the message loop that runs then.
class Later {
 public:
  Later(HWND window, std::function<bool()> action) : m_window(window), m_action(std::move(action)) {
    ::SetTimer(m_window, reinterpret_cast<UINT_PTR>(this), 1, &Ticked);
  }
  Later(const Later&) = delete;
  Later& operator=(const Later&) = delete;
  ~Later() { ::KillTimer(m_window, reinterpret_cast<UINT_PTR>(this)); }

  bool IsDone() const { return m_isDone; }

 private:
  static void CALLBACK Ticked(HWND, UINT, UINT_PTR later, DWORD) {
    auto& self = *reinterpret_cast<Later*>(later);
    if (self.m_isDone) return;
    self.m_isDone = true;
    self.m_isDone = self.m_action();  // tried again until it could be done
  }

  HWND m_window;
  std::function<bool()> m_action;
  bool m_isDone = false;
};

LONG WidthOf(const ComPtr<::_Twain>& control) {
  LONG width = 0;
  control->get_BitmapWidth(&width);
  return width;
}

// Whole scans, from the source that the tests put in place of the scanners.
class Scanning : public testing::Test {
 protected:
  void SetUp() override {
    if (!IsWine()) GTEST_SKIP() << "the sources of a real machine are its owner's";
    ::SetEnvironmentVariableW(L"QUILLET_TEST_SOURCE", nullptr);
    container.Show(*As<IOleObject>(control).get());
    control->put_Resolution(50);
    control->put_ShowInterface(VARIANT_FALSE);
  }
  void TearDown() override {
    ::SetEnvironmentVariableW(L"QUILLET_TEST_SOURCE", nullptr);
    if (control) As<IOleObject>(control)->SetClientSite(nullptr);
  }

  ControlLibrary library;
  Container container{392, 300};
  ComPtr<::_Twain> control = library.Make();
};

TEST_F(Scanning, ATitleMayBeLeftOutOrComeInAnyFormAndStaysAsItWas) {
  const BSTR title = ::SysAllocString(L"A title");
  BSTR text = title;
  Value held(L"Another title");
  VARIANT reference, variant;
  reference.vt = VT_BYREF | VT_BSTR;
  reference.pbstrVal = &text;
  variant.vt = VT_BYREF | VT_VARIANT;
  variant.pvarVal = &held.get();
  const std::vector<std::vector<VARIANT>> kArguments = {
      {}, {Value::LeftOut().get()}, {Value(L"A title").get()}, {reference}, {variant}};
  for (const std::vector<VARIANT>& arguments : kArguments) {
    control->putref_Picture(nullptr);
    EXPECT_EQ(Call(control.get(), L"Scan", arguments).result, S_OK);
    EXPECT_EQ(WidthOf(control), TestPage({50, TWPT_RGB}).Width());
  }
  EXPECT_EQ(text, title);
  EXPECT_STREQ(text, L"A title");
  EXPECT_STREQ(held.get().bstrVal, L"Another title");

  control->putref_Picture(nullptr);
  EXPECT_EQ(control->Scan(nullptr), S_OK);
  EXPECT_EQ(control->Scan(&text), S_OK);
  EXPECT_EQ(WidthOf(control), TestPage({50, TWPT_RGB}).Width());
  EXPECT_EQ(text, title);
  ::SysFreeString(title);
}

TEST_F(Scanning, LeftOutTextsOfADialogAreEmptyAndNamedOnesArrive) {
  control->putref_Picture(BlackPicture(4, 3).get());
  std::wstring shown;
  const Later cancel(container.Window(), [&] {
    const HWND dialog = ::FindWindowW(L"#32770", nullptr);
    if (!dialog || !::IsWindowVisible(dialog)) return false;
    wchar_t title[64] = L"";
    ::GetWindowTextW(dialog, title, 64);
    shown = title;
    ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    return true;
  });
  wchar_t method[] = L"ShowSave", name[] = L"sTitle";
  LPOLESTR names[] = {method, name};
  DISPID numbers[2];
  ASSERT_EQ(control->GetIDsOfNames(IID_NULL, names, 2, 0, numbers), S_OK);
  Value title(L"Where to");
  DISPPARAMS parameters{&title.get(), numbers + 1, 1, 1};
  EXPECT_EQ(control->Invoke(numbers[0], IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                            nullptr),
            S_OK);
  EXPECT_TRUE(cancel.IsDone());
  EXPECT_EQ(shown, L"Where to");
}

TEST_F(Scanning, AControlThatIsClosedMeanwhileEndsTheScanOutsideItsContainer) {
  ::SetEnvironmentVariableW(L"QUILLET_TEST_SOURCE", L"window");
  const Later close(container.Window(), [&] {
    As<IOleObject>(control)->Close(OLECLOSE_NOSAVE);
    return true;
  });
  EXPECT_EQ(control->Scan(nullptr), S_OK);
  EXPECT_TRUE(close.IsDone());
  EXPECT_EQ(WidthOf(control), TestPage({50, TWPT_RGB}).Width());
  EXPECT_EQ(container.TakeCalls().back(), "OnInPlaceDeactivate");
}

TEST_F(Scanning, AHostMayLetGoOfEverythingMeanwhile) {
  for (const bool isWindowLostToo : {false, true}) {
    SCOPED_TRACE(isWindowLostToo);
    ::SetEnvironmentVariableW(L"QUILLET_TEST_SOURCE", L"window");
    if (!control) {
      control = library.Make();
      container.Show(*As<IOleObject>(control).get());
    }
    auto events = std::make_unique<EventRecorder>(control);
    ::_Twain* const called = control.get();
    const HWND timers = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr,
                                          nullptr, nullptr);
    const Later letGo(timers, [&] {
      events.reset();
      if (isWindowLostToo) ::DestroyWindow(container.Window());
      As<IOleObject>(control)->SetClientSite(nullptr);
      control = {};
      EXPECT_EQ(library.CanUnload(), S_FALSE);  // its code is at work
      return true;
    });
    called->Scan(nullptr);
    EXPECT_TRUE(letGo.IsDone());
    EXPECT_EQ(library.CanUnload(), S_OK);
    EXPECT_EQ(container.References(), 0u);
    ::DestroyWindow(timers);
  }
}

}  // namespace
}  // namespace quillet
