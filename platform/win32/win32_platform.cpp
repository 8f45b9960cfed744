#include "platform/win32/win32_platform.h"

#include "platform/win32/sdk.h"

namespace quillet {

// Pictures and bitmaps work without it too, so a thread that was set up otherwise is no error.
OleSession::OleSession() : m_initialised(SUCCEEDED(::OleInitialize(nullptr))) {}

OleSession::~OleSession() {
  if (m_initialised) ::OleUninitialize();
}

CensusCounts Win32Platform::Census() const {
  return {.bitmaps = m_bitmaps.BitmapCount(),
          .deviceContexts = m_bitmaps.DeviceContextCount(),
          .pictures = m_pictures.Count(),
          .globalBlocks = m_memory.Count(),
          .windows = m_classes->Standing() + m_messages.Count()};
}

std::shared_ptr<Win32Surface> Win32Platform::CreateSurface(int insideWidth, int insideHeight) {
  return std::make_shared<Win32Surface>(m_classes, insideWidth, insideHeight);
}

}  // namespace quillet
