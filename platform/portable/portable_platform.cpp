#include "platform/portable/portable_platform.h"

#include "platform/portable/portable_bitmaps.h"
#include "platform/portable/portable_pictures.h"
#include "platform/portable/window_table.h"

namespace quillet {

PortablePlatform::PortablePlatform(InstructionSet instructions)
    : m_bitmaps(std::make_shared<PortableBitmaps>(instructions)),
      m_pictures(std::make_shared<PortablePictures>(m_bitmaps)),
      m_windows(std::make_shared<WindowTable>()),
      m_contracts{*m_bitmaps, *m_pictures} {}

PortablePlatform::~PortablePlatform() = default;

CensusCounts PortablePlatform::Census() const {
  return {.bitmaps = m_bitmaps->BitmapCount(),
          .deviceContexts = m_bitmaps->DeviceContextCount(),
          .pictures = m_pictures->Count(),
          .windows = m_windows->Count()};
}

}  // namespace quillet
