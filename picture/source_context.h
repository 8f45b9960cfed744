#pragma once

#include <optional>

#include "base/runtime_error.h"
#include "picture/dib_section.h"
#include "platform/contracts/owned_handles.h"

namespace quillet {

// A device context with the bitmap selected as the source of a transfer. A bitmap can be in one
// context at a time: of one that is selected elsewhere, by the host say, a private copy serves.
class SourceContext {
 public:
  SourceContext(BitmapServices& services, BitmapHandle bitmap, Long width, Long height)
      : m_dc(services) {
    m_selected.emplace(services, m_dc.get(), bitmap);
    if (*m_selected) return;
    // Not by CopyImage, which may hand back the bitmap itself.
    m_copy = DibSection::CopyOf(services, bitmap, width, height);
    m_selected.emplace(services, m_dc.get(), m_copy->Bitmap());
    if (!*m_selected) throw RunTimeError(ErrorNumber::OutOfMemory);
  }

  DCHandle get() const noexcept { return m_dc.get(); }

 private:
  std::optional<DibSection> m_copy;
  UniqueDC m_dc;
  std::optional<SelectGuard> m_selected;
};

}  // namespace quillet
