#include "host/session.h"

#include <stdexcept>

#include "embed/property_file.h"
#include "host/enumerations.h"
#include "host/step.h"

namespace quillet {

// The host's ear, held by the control. Deaf once the session has begun to end.
class Session::Listener : public HostListener {
 public:
  explicit Listener(SessionEvents& events) : m_events(&events) {}

  void Close() noexcept { m_events = nullptr; }

  void Invoke(Event event, std::span<Variant> arguments) override {
    if (m_events) m_events->EventRaised(event, arguments);
  }
  void PropertyChanged(std::string_view name) override {
    if (m_events) m_events->PropertyChanged(name);
  }

 private:
  SessionEvents* m_events;
};

Session::Session(Platform& platform, std::unique_ptr<HostedControl> control, SessionEvents& events)
    : m_platform(platform),
      m_listener(std::make_shared<Listener>(events)),
      m_control(std::move(control)) {
  m_control->Listen(m_listener);
}

Session::~Session() {
  m_listener->Close();
}

HostedControl& Session::Hosted() {
  if (!m_control) throw std::runtime_error("the control is gone");
  return *m_control;
}

void Session::Close() {
  m_control.reset();
}

Variant Session::Invoke(const Member& member, std::span<Variant> arguments) {
  return Hosted().Invoke(member, arguments);
}

Variant Session::Argument(ValueKind kind, const std::string& text) {
  if (kind == ValueKind::Picture) return PictureNamed(text);
  if (const auto value = EnumerationValue(kind, text)) return std::to_string(*value);
  return text;
}

void Session::LoadProperties(const std::string& fileName) {
  HostedControl& control = Hosted();
  PropertyFile file(m_platform);
  file.Load(fileName);
  control.ReadProperties(file);
}

void Session::SaveProperties(const std::string& fileName) {
  HostedControl& control = Hosted();
  PropertyFile file(m_platform);
  control.WriteProperties(file);
  file.Save(fileName);
}

void Session::KeepPicture(const std::string& name) {
  const Member* picture = FindMember(NumberOf("Picture"), Access::Get);
  m_kept[name] = VariantToObject(Invoke(*picture, {}));
}

ObjectRef Session::PictureNamed(const std::string& text) {
  if (text.empty()) return nullptr;
  const auto name = KeptName(text);
  if (!name) return m_platform.pictures.LoadPicture(text);
  const auto kept = m_kept.find(*name);
  if (kept == m_kept.end()) throw std::runtime_error("nothing is kept as " + *name + " yet");
  return kept->second;
}

}  // namespace quillet
