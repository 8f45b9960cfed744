#pragma once

#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"
#include "platform/win32/win32_bitmaps.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// OLE on the thread that makes it, which is also the one that lets it go. Where the host has set it
// up already, this only counts.
class OleSession {
 public:
  OleSession();
  OleSession(const OleSession&) = delete;
  OleSession& operator=(const OleSession&) = delete;
  ~OleSession();

 private:
  bool m_initialised;
};

// The contracts over the system itself. Pictures made here may outlive it.
class Win32Platform {
 public:
  Win32Platform() = default;
  Win32Platform(const Win32Platform&) = delete;
  Win32Platform& operator=(const Win32Platform&) = delete;

  Platform& Contracts() noexcept { return m_contracts; }
  // Picture objects in and out, for a COM server.
  Win32Pictures& Pictures() noexcept { return m_pictures; }
  CensusCounts Census() const;

 private:
  OleSession m_ole;
  Win32Bitmaps m_bitmaps;
  Win32Pictures m_pictures{m_bitmaps};
  Platform m_contracts{m_bitmaps, m_pictures};
};

}  // namespace quillet
