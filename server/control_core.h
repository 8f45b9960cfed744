#pragma once

#include <memory>

#include "control/TWAIN.h"
#include "platform/win32/sdk.h"
#include "platform/win32/win32_platform.h"
#include "server/embedding.h"
#include "server/property_notifier.h"
#include "server/view_watcher.h"

namespace quillet {

// What the interfaces of one control object share: the control itself on its surface, and what the
// container has told. It belongs to the thread that made it.
class ControlCore {
 public:
  // `identity` is the object that the container knows; it owns this.
  ControlCore(::IUnknown& identity, std::shared_ptr<Win32Platform> platform);
  ControlCore(const ControlCore&) = delete;
  ControlCore& operator=(const ControlCore&) = delete;
  ~ControlCore() = default;

  ::IUnknown& Identity() const noexcept { return m_identity; }
  bool OnOwnThread() const noexcept { return ::GetCurrentThreadId() == m_thread; }

  // The control, with the settings of a new instance when its container has given it none.
  TWAIN& Control();
  // Gives it the settings of a new instance.
  void InitNew();
  // The control as it is; and for its container to give it settings.
  TWAIN& ControlItself() noexcept { return *m_control; }
  TWAIN& ControlToLoad() noexcept;
  // Leaves the container: nothing is told to it any more.
  void Close();

  Win32Surface& Surface() const noexcept { return *m_surface; }
  Win32Pictures& Pictures() const noexcept { return m_platform->Pictures(); }
  Embedding& Container() noexcept { return m_embedding; }
  PropertyNotifier& Notifier() noexcept { return *m_notifier; }
  ViewWatcher& Watcher() noexcept { return m_watcher; }
  // How often the container has asked for silence; shared with those who keep it.
  const std::shared_ptr<int>& FrozenEvents() const noexcept { return m_frozenEvents; }

 private:
  ::IUnknown& m_identity;
  const DWORD m_thread = ::GetCurrentThreadId();
  std::shared_ptr<Win32Platform> m_platform;
  std::shared_ptr<Win32Surface> m_surface;
  std::shared_ptr<PropertyNotifier> m_notifier = std::make_shared<PropertyNotifier>();
  std::shared_ptr<int> m_frozenEvents = std::make_shared<int>(0);
  std::shared_ptr<TWAIN> m_control;
  ViewWatcher m_watcher;
  Embedding m_embedding;
  bool m_initialised = false;
};

}  // namespace quillet
