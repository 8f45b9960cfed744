#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "platform/win32/win32_platform.h"

namespace quillet {

// What the loaded library knows of itself: how much of it is in use, and the platform of each
// thread that has a control. May be asked from any thread.
class Module {
 public:
  constexpr Module() noexcept = default;
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  void AddUse() noexcept { ++m_uses; }
  void EndUse() noexcept { --m_uses; }
  // Objects, locks, and the platforms with their windows.
  bool IsInUse() const noexcept { return m_uses != 0; }

  // The platform that all controls of the calling thread share. It, and with it the library's use,
  // lasts until its last control, surface and window are gone.
  std::shared_ptr<Win32Platform> PlatformOfThisThread();

 private:
  std::atomic<long> m_uses = 0;
  SRWLOCK m_lock = SRWLOCK_INIT;
  std::vector<std::pair<DWORD, std::weak_ptr<Win32Platform>>> m_platforms;
};

// One use of the library.
class ModuleUse {
 public:
  explicit ModuleUse(Module& module) noexcept : m_module(module) { m_module.AddUse(); }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse() { m_module.EndUse(); }

  Module& Owner() const noexcept { return m_module; }

 private:
  Module& m_module;
};

}  // namespace quillet
