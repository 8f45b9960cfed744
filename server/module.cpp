#include "server/module.h"

namespace quillet {
namespace {

// Every surface holds the window classes, so they are the last of a platform to go.
class CountedClasses : private ModuleUse, public WindowClasses {
 public:
  explicit CountedClasses(Module& module) : ModuleUse(module) {}
};

class ExclusiveLock {
 public:
  explicit ExclusiveLock(SRWLOCK& lock) noexcept : m_lock(lock) {
    ::AcquireSRWLockExclusive(&m_lock);
  }
  ExclusiveLock(const ExclusiveLock&) = delete;
  ExclusiveLock& operator=(const ExclusiveLock&) = delete;
  ~ExclusiveLock() { ::ReleaseSRWLockExclusive(&m_lock); }

 private:
  SRWLOCK& m_lock;
};

}  // namespace

std::shared_ptr<Win32Platform> Module::PlatformOfThisThread() {
  const DWORD thread = ::GetCurrentThreadId();
  {
    const ExclusiveLock locked(m_lock);
    std::erase_if(m_platforms, [](const auto& entry) { return entry.second.expired(); });
    for (const auto& [owner, platform] : m_platforms)
      if (owner == thread) return platform.lock();
  }
  auto platform = std::make_shared<Win32Platform>(std::make_shared<CountedClasses>(*this));
  const ExclusiveLock locked(m_lock);
  m_platforms.emplace_back(thread, platform);
  return platform;
}

}  // namespace quillet
