#include "server/control_core.h"

#include "server/entry.h"

namespace quillet {
namespace {

// The outer size, in pixels, of a control that no container has given one.
constexpr int kFirstSize = 240;

// The control refers to its platform and may outlive the object that the container knows: in an
// event in which the container lets go of it. What it holds of us keeps the platform.
struct NotifierWithPlatform {
  std::shared_ptr<Win32Platform> platform;
  PropertyNotifier notifier;
};

std::shared_ptr<PropertyNotifier> NotifierOn(std::shared_ptr<Win32Platform> platform) {
  const auto both = std::make_shared<NotifierWithPlatform>();
  both->platform = std::move(platform);
  return {both, &both->notifier};
}

}  // namespace

ControlCore::ControlCore(::IUnknown& identity, std::shared_ptr<Win32Platform> platform)
    : m_identity(identity),
      m_platform(std::move(platform)),
      m_surface(m_platform->CreateSurface(kFirstSize, kFirstSize)),
      m_notifier(NotifierOn(m_platform)),
      m_control(TWAIN::Create(m_platform->Contracts(), m_surface, m_notifier)),
      m_embedding(*this) {
  m_surface->Site(HWND_MESSAGE, {0, 0, kFirstSize, kFirstSize});
  // A container that is told of it may let go of the control.
  m_surface->UserControl().OnEntered([this] {
    EnterControl(*this, [this] {
      m_embedding.Entered();
      return S_OK;
    });
  });
}

void ControlCore::Close() {
  m_surface->UserControl().OnEntered({});
  m_notifier->Close();
  m_watcher.Set(0, 0, nullptr);
  m_embedding.SetClientSite(nullptr);
}

TWAIN& ControlCore::Control() {
  if (!m_initialised) InitNew();
  return *m_control;
}

void ControlCore::InitNew() {
  m_initialised = true;
  m_control->InitProperties();
}

TWAIN& ControlCore::ControlToLoad() noexcept {
  m_initialised = true;
  return *m_control;
}

}  // namespace quillet
