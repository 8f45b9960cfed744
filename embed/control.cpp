#include "embed/control.h"

#include "control/TWAIN.h"

namespace quillet {

Control::Control(Platform& platform, std::shared_ptr<Surface> surface, std::shared_ptr<Site> site)
    : m_control(TWAIN::Create(platform, std::move(surface), std::move(site))) {
  m_control->InitProperties();
}

Control::Control(Control&&) noexcept = default;
Control& Control::operator=(Control&&) noexcept = default;
Control::~Control() = default;

void Control::ReadProperties(PropertyBag& bag) {
  m_control->ReadProperties(bag);
}

void Control::WriteProperties(PropertyBag& bag) const {
  m_control->WriteProperties(bag);
}

Variant Control::Get(std::string_view name) const {
  return Invoke(NumberOf(name), Access::Get, {});
}

void Control::Put(std::string_view name, Variant value) {
  const Long number = NumberOf(name);
  const bool isObject = FindMember(number, Access::PutRef) != nullptr;
  Invoke(number, isObject ? Access::PutRef : Access::Put, {&value, 1});
}

Variant Control::Invoke(Long number, Access access, std::span<Variant> arguments) const {
  return quillet::Invoke(*m_control, number, access, arguments);
}

int Control::Connect(std::shared_ptr<EventSink> sink) {
  return m_control->Connect(std::move(sink));
}

bool Control::Disconnect(int cookie) {
  const auto alive = m_control;  // the sink may be what holds this control
  return alive->Disconnect(cookie);
}

}  // namespace quillet
