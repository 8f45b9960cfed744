#pragma once

#include <utility>

#include "platform/win32/com_ptr.h"
#include "server/control_core.h"
#include "server/entry.h"

namespace quillet {

// One interface of the control object. Identity and lifetime are the object's.
//
// Every method that does something runs in Enter.
template <typename Interface>
class Part : public Interface {
 public:
  explicit Part(ControlCore& core) noexcept : m_core(core) {}
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    return m_core.Identity().QueryInterface(iid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return m_core.Identity().AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return m_core.Identity().Release(); }

 protected:
  ~Part() = default;

  template <typename Action>
  HRESULT Enter(Action&& action) noexcept {
    return EnterControl(m_core, std::forward<Action>(action), __uuidof(Interface));
  }

  ControlCore& m_core;
};

}  // namespace quillet
