#pragma once

#include <atomic>

#include "platform/win32/sdk.h"
#include "server/module.h"

namespace quillet {

// Makes controls, on the thread of the caller.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(Module& module) noexcept : m_use(module) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP CreateInstance(::IUnknown* outer, REFIID iid, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  ~ClassFactory() = default;

  ModuleUse m_use;
  std::atomic<ULONG> m_references = 1;
};

}  // namespace quillet
