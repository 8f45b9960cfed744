#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/contracts/modal_forms.h"
#include "platform/win32/window_classes.h"

namespace quillet {

// Forms in dialog windows. Of the thread's other windows those that took input are disabled while
// one is shown.
class Win32Forms : public ModalForms {
 public:
  explicit Win32Forms(std::shared_ptr<WindowClasses> classes) : m_classes(std::move(classes)) {}

  // Plays the person in front of the forms: called whenever one is shown and no message waits;
  // false for nothing more to do, upon which the form is closed. Without one, forms wait for a real
  // person. Does not throw.
  using Person = std::function<bool()>;
  void Attend(Person person) { m_person = std::move(person); }

  bool IsOpen() const noexcept { return m_current != nullptr; }
  // Clicks a control of the form that is open; false when there is none of that name.
  bool Click(const std::string& control);
  // The open form's window, null without.
  HWND Window() const noexcept;

 private:
  class FormWindow;

  void Run(const Form& form, FormEvents& events) override;
  bool WaitForMessage(::MSG& message);

  std::shared_ptr<WindowClasses> m_classes;
  Person m_person;
  FormWindow* m_current = nullptr;
};

}  // namespace quillet
