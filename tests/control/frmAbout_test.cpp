#include "control/frmAbout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/runtime_error.h"
#include "tests/support/error_of.h"
#include "tests/support/hosted_control.h"
#include "tests/support/platform_with.h"

namespace quillet {
namespace {

// A machine whose clock and shell are the test's.
class ScriptedSystem : public SystemServices {
 public:
  int CurrentYear() const override { return year; }
  std::string ModuleName() const override { return "widget.v2"; }
  bool ShellExecuteA(WindowHandle window, const std::string& file) override {
    opened.push_back(file);
    parent = window;
    return false;
  }

  int year = 2031;
  std::vector<std::string> opened;
  WindowHandle parent = WindowHandle::None;
};

// Keeps the form that it is asked to show.
class RecordingForms : public ModalForms {
 public:
  std::vector<Form> shown;
  bool fails = false;

 private:
  void Run(const Form& form, FormEvents&) override {
    if (fails) throw RunTimeError(ErrorNumber::OutOfMemory);
    shown.push_back(form);
  }
};

class About : public testing::Test {
 protected:
  // A control on that machine, its forms shown by the platform or only kept.
  HostedControl::Replace Machine(ModalForms* shower) {
    return [this, shower](const Platform& all) {
      return PlatformWith(shower ? *shower : all.forms, PlatformWith(system, all));
    };
  }
  static const FormControl& Find(const Form& form, const std::string& name) {
    return *std::ranges::find(form.controls, name, &FormControl::name);
  }

  ScriptedSystem system;
  RecordingForms forms;
};

TEST_F(About, TheTextsAreFilledInWheneverItIsShown) {
  HostedControl host(100, 100, Machine(&forms));
  host.Call("About");
  system.year = 2032;
  host.Call("About");
  ASSERT_EQ(forms.shown.size(), 2u);
  EXPECT_EQ(forms.shown[0].caption, "About Quillet");
  EXPECT_EQ(Find(forms.shown[0], "lblAppTitle").caption, "Quillet - WIDGET.V2");
  EXPECT_TRUE(Find(forms.shown[0], "lblCopyright").caption.ends_with("/2031, the Quillet authors"));
  EXPECT_TRUE(Find(forms.shown[1], "lblCopyright").caption.ends_with("/2032, the Quillet authors"));
  EXPECT_EQ(Find(forms.shown[0], "lblAddress").caption, "Web: https://quillet.example.com");
  EXPECT_EQ(Find(forms.shown[0], "cmdOK").caption, "OK");
}

TEST_F(About, EverythingStandsInItsPlace) {
  HostedControl host(100, 100, Machine(&forms));
  host.Call("About");
  const Form& form = forms.shown.at(0);
  EXPECT_EQ(form.scaleWidth, 5055);
  EXPECT_EQ(form.scaleHeight, 2490);
  const struct {
    const char* name;
    Single left, top;
    std::optional<Single> width, height;
  } places[] = {{"lblAppTitle", 300, 180, {}, 195},
                {"lblCopyright", 300, 420, {}, 195},
                {"lblDisclaimer", 300, 960, 4410, 885},
                {"lblAddress", 300, 2040, 2445, 195},
                {"cmdOK", 3720, 1980, 975, 375}};
  for (const auto& place : places) {
    SCOPED_TRACE(place.name);
    const FormControl& control = Find(form, place.name);
    EXPECT_EQ(control.left, place.left);
    EXPECT_EQ(control.top, place.top);
    EXPECT_EQ(control.width, place.width.value_or(control.width));
    EXPECT_EQ(control.height, place.height.value_or(control.height));
  }
  std::string lines;
  for (const FormControl& control : form.controls)
    if (control.kind == FormControl::Kind::Line)
      lines += std::to_string(static_cast<int>(control.left)) + "-" +
               std::to_string(static_cast<int>(control.left + control.width)) + "@" +
               std::to_string(static_cast<int>(control.top)) +
               (control.color == 0xFFFFFFu ? " white; " : " grey; ");
  EXPECT_EQ(lines,
            "240-4740@840 grey; 255-4740@855 white; 240-4740@1800 grey; 255-4740@1815 white; ");
  EXPECT_EQ(Find(form, "lblAddress").color, 0xFF0000u);
  EXPECT_NE(Find(form, "lblAddress").pointer, nullptr);
}

TEST_F(About, StaysOpenUntilItsButtonIsPressed) {
  HostedControl host(100, 100, Machine(nullptr));
  host.Assign(300, 300);
  const Snapshot before = host.window->Capture();
  host.TakeLog();
  int step = 0;
  host.window->WhileAFormIsOpen([&] {
    switch (++step) {
      case 1:
      case 2:
        EXPECT_TRUE(host.window->ClickOnForm("lblAddress"));
        return true;
      case 3:
        EXPECT_NE(host.window->Capture().rgb, before.rgb);
        // The control's own window takes no input meanwhile.
        host.window->Mouse(MouseAction::Click, 5, 5, 1, 0);
        host.window->Key(KeyAction::Down, 65, 0);
        host.window->ClickArrow(Bar::Vertical, true);
        return true;
      case 4:
        host.Call("About");  // it is open
        return true;
      case 5:
        EXPECT_FALSE(host.window->ClickOnForm("cmdCancel"));
        EXPECT_TRUE(host.window->ClickOnForm("cmdOK"));
        return true;
      default:
        ADD_FAILURE() << "still open";
        return false;
    }
  });
  host.Call("About");
  EXPECT_EQ(step, 5);
  EXPECT_EQ(system.opened, std::vector<std::string>(2, "https://quillet.example.com"));
  EXPECT_NE(system.parent, WindowHandle::None);
  EXPECT_TRUE(host.TakeLog().empty());
  EXPECT_FALSE(host.window->ClickOnForm("cmdOK"));
  EXPECT_EQ(host.window->Capture().rgb, before.rgb);
}

TEST_F(About, IsClosedByAPersonWhoGoesAwayAndCanBeShownAgain) {
  HostedControl host(100, 100, Machine(nullptr));
  int shown = 0;
  host.window->WhileAFormIsOpen([&] {
    ++shown;
    return false;
  });
  host.Call("About");
  host.Call("About");
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(host.stage->Census().windows, HostedControl(100, 100).stage->Census().windows);
}

TEST_F(About, AWindowThatCannotBeMadeIsAnErrorOnce) {
  HostedControl host(100, 100, Machine(&forms));
  forms.fails = true;
  EXPECT_EQ(ErrorOf([&] { host.Call("About"); }), ErrorNumber::OutOfMemory);
  forms.fails = false;
  host.Call("About");
  EXPECT_EQ(forms.shown.size(), 1u);
}

TEST_F(About, TheHostMayLetGoOfTheControlMeanwhile) {
  HostedControl host(100, 100, Machine(nullptr));
  TWAIN& control = *host.control;
  host.window->WhileAFormIsOpen([&] {
    host.control.reset();
    return host.window->ClickOnForm("cmdOK");
  });
  Invoke(control, NumberOf("About"), Access::Method, {});
  EXPECT_EQ(host.control, nullptr);
}

}  // namespace
}  // namespace quillet
