#pragma once

#include "platform/win32/com_ptr.h"
#include "server/com_error.h"
#include "server/control_core.h"

namespace quillet {

// The way of every call into the control's object. One from another thread than the control's is
// refused; the object lives until the call is over, whatever the container lets go of meanwhile; no
// exception leaves. The action gives a result or throws; what it throws is described to callers of
// that interface.
template <typename Action>
HRESULT EnterControl(ControlCore& core, Action&& action, REFIID iid = IID_NULL) noexcept {
  if (!core.OnOwnThread()) return RPC_E_WRONG_THREAD;
  const ComPtr<::IUnknown> alive(&core.Identity());
  try {
    return action();
  } catch (...) {
    return Report(CurrentError(), iid);
  }
}

}  // namespace quillet
