#include "host/hosted_control.h"

namespace quillet {

void CoreHostedControl::Listen(std::shared_ptr<HostListener> listener) {
  m_control.emplace(m_platform, m_window->ControlsSurface(), listener);
  m_control->Connect(std::move(listener));
}

Variant CoreHostedControl::Invoke(const Member& member, std::span<Variant> arguments) {
  return m_control->Invoke(member.number, member.access, arguments);
}

}  // namespace quillet
