#pragma once

#include <functional>
#include <string>

#include "platform/contracts/modal_forms.h"
#include "platform/portable/raster.h"

namespace quillet {

class PortableMessages;

// Forms in memory. The person in front of them is played by whoever calls Attend; without one, or
// when that one has nothing more to do, the form's window is closed.
class PortableForms : public ModalForms {
 public:
  explicit PortableForms(PortableMessages& messages) : m_messages(messages) {}

  // Called whenever a form is shown and nothing else is to do; false for nothing more. Does not
  // throw.
  using Person = std::function<bool()>;
  void Attend(Person person) { m_person = std::move(person); }

  bool IsOpen() const noexcept { return m_current != nullptr; }
  // How many there were so far.
  int Count() const noexcept { return m_count; }
  // Clicks a control of the form that is open; false when there is none of that name.
  bool Click(const std::string& control);
  // The open form as a person sees it, title bar and frame included.
  Raster Render() const;

 private:
  class Window;

  void Run(const Form& form, FormEvents& events) override;

  PortableMessages& m_messages;
  Person m_person;
  Window* m_current = nullptr;
  int m_count = 0;
};

}  // namespace quillet
