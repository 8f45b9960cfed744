#pragma once

#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"

namespace quillet {

// The container's ear for changes of how the control looks.
class ViewWatcher {
 public:
  void Set(DWORD aspects, DWORD flags, IAdviseSink* sink) {
    m_aspects = aspects;
    m_flags = flags;
    m_sink = ComPtr<IAdviseSink>(sink);
    if (sink && (flags & ADVF_PRIMEFIRST)) Changed();
  }
  DWORD Aspects() const noexcept { return m_aspects; }
  DWORD Flags() const noexcept { return m_flags; }
  const ComPtr<IAdviseSink>& Sink() const noexcept { return m_sink; }

  void Changed() {
    const ComPtr<IAdviseSink> sink = m_sink;
    if (!sink) return;
    if (m_flags & ADVF_ONLYONCE) m_sink = {};
    sink->OnViewChange(DVASPECT_CONTENT, -1);
  }

 private:
  DWORD m_aspects = 0;
  DWORD m_flags = 0;
  ComPtr<IAdviseSink> m_sink;
};

}  // namespace quillet
