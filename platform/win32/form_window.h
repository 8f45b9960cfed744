#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/contracts/modal_forms.h"
#include "platform/win32/native_window.h"
#include "platform/win32/twip_scale.h"
#include "platform/win32/win32_forms.h"

namespace quillet {

// The window of one form, with a child window for each button. Labels and lines are drawn, lines on
// top: they may lie on one another.
class Win32Forms::FormWindow : public NativeWindow, public ShownForm {
 public:
  // Run-time error 7 when a window cannot be made. Form and events outlive the window.
  FormWindow(std::shared_ptr<WindowClasses> classes, const Form& form, FormEvents& events);
  ~FormWindow() override;

  WindowHandle hWnd() const override { return Handle(); }
  void Unload() override { m_loaded = false; }
  bool IsLoaded() const noexcept { return m_loaded && Stands(); }

  void Show() noexcept;
  // A click of the mouse on that control; false when there is none of that name.
  bool Press(const std::string& control);

 private:
  struct DeleteFont {
    void operator()(HFONT font) const noexcept { ::DeleteObject(font); }
  };
  struct DestroyPointer {
    void operator()(HCURSOR pointer) const noexcept { ::DestroyCursor(pointer); }
  };
  using UniqueFont = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;
  using UniquePointer = std::unique_ptr<std::remove_pointer_t<HCURSOR>, DestroyPointer>;

  struct Button {
    const FormControl* control;
    HWND window;
  };
  struct Label {
    const FormControl* control;
    RECT place;
    UniquePointer pointer;  // null for the arrow
  };

  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  RECT PlaceOf(const FormControl& control) const;
  void AddButton(const FormControl& control);
  void AddLabel(const FormControl& control);
  const Label* LabelAt(::POINT point) const noexcept;
  bool ShowPointer() const noexcept;
  void Paint() const;

  const Form& m_form;
  FormEvents& m_events;
  TwipScale m_scale;
  UniqueFont m_font;
  std::vector<Button> m_buttons;
  std::vector<Label> m_labels;
  const Label* m_pressed = nullptr;
  bool m_loaded = true;
};

}  // namespace quillet
