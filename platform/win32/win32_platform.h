#pragma once

#include <memory>

#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"
#include "platform/win32/win32_bitmaps.h"
#include "platform/win32/win32_codecs.h"
#include "platform/win32/win32_dialogs.h"
#include "platform/win32/win32_files.h"
#include "platform/win32/win32_forms.h"
#include "platform/win32/win32_memory.h"
#include "platform/win32/win32_messages.h"
#include "platform/win32/win32_pictures.h"
#include "platform/win32/win32_source_manager.h"
#include "platform/win32/win32_surface.h"
#include "platform/win32/win32_system.h"

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

// The contracts over the system itself. Pictures and surfaces made here may outlive it.
class Win32Platform {
 public:
  // Surfaces share the window classes, which live as long as the last of them.
  explicit Win32Platform(std::shared_ptr<WindowClasses> classes = std::make_shared<WindowClasses>())
      : m_classes(std::move(classes)) {}
  Win32Platform(const Win32Platform&) = delete;
  Win32Platform& operator=(const Win32Platform&) = delete;

  Platform& Contracts() noexcept { return m_contracts; }
  // Picture objects in and out, for a COM server.
  Win32Pictures& Pictures() noexcept { return m_pictures; }
  // For the one who plays the person in front of the forms.
  Win32Forms& Forms() noexcept { return m_forms; }
  CensusCounts Census() const;

  // A surface without host, on the calling thread. Sizes and errors as of Win32Surface.
  std::shared_ptr<Win32Surface> CreateSurface(int insideWidth, int insideHeight);

 private:
  OleSession m_ole;
  Win32Bitmaps m_bitmaps;
  Win32Pictures m_pictures{m_bitmaps};
  std::shared_ptr<WindowClasses> m_classes;
  Win32Memory m_memory;
  Win32Messages m_messages;
  Win32SourceManager m_sources;
  Win32Files m_files;
  Win32Codecs m_codecs;
  Win32Dialogs m_dialogs;
  Win32Forms m_forms{m_classes};
  Win32System m_system;
  Platform m_contracts{m_bitmaps, m_pictures, m_memory,  m_messages, m_sources,
                       m_files,   m_codecs,   m_dialogs, m_forms,    m_system};
};

}  // namespace quillet
