#include "platform/portable/portable_forms.h"

#include <algorithm>
#include <utility>

#include "base/runtime_error.h"
#include "platform/portable/form_painter.h"
#include "platform/portable/portable_messages.h"

namespace quillet {

class PortableForms::Window : public ShownForm {
 public:
  Window(PortableForms& owner, const Form& form, FormEvents& events)
      : m_owner(owner),
        m_form(form),
        m_events(events),
        m_handle(owner.m_messages.CreateWindowExA("QuilletForm", form.caption.c_str(), 0, 0, 0, 0)),
        m_below(owner.m_current) {
    if (m_handle == WindowHandle::None) throw RunTimeError(ErrorNumber::OutOfMemory);
    owner.m_current = this;
    ++owner.m_count;
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() override {
    m_owner.m_current = m_below;
    m_owner.m_messages.DestroyWindow(m_handle);
  }

  WindowHandle hWnd() const override { return m_handle; }
  void Unload() override { m_loaded = false; }

  bool IsLoaded() const noexcept { return m_loaded; }
  const Form& Design() const noexcept { return m_form; }
  void Click(const std::string& control) { m_events.Click(*this, control); }

 private:
  PortableForms& m_owner;
  const Form& m_form;
  FormEvents& m_events;
  WindowHandle m_handle;
  Window* m_below;
  bool m_loaded = true;
};

bool PortableForms::Click(const std::string& control) {
  if (!m_current || !m_current->IsLoaded()) return false;
  const auto& controls = m_current->Design().controls;
  if (std::ranges::find(controls, control, &FormControl::name) == controls.end()) return false;
  m_current->Click(control);
  return true;
}

Raster PortableForms::Render() const {
  if (!m_current) throw RunTimeError(ErrorNumber::InvalidProcedureCall, "no form is open");
  return PaintForm(m_current->Design());
}

void PortableForms::Run(const Form& form, FormEvents& events) {
  Window window(*this, form, events);
  while (window.IsLoaded()) {
    const bool goesOn = m_messages.RunWaiting();
    const Person person = m_person;  // who may be sent away meanwhile
    if (!goesOn || (window.IsLoaded() && (!person || !person()))) window.Unload();
  }
}

}  // namespace quillet
