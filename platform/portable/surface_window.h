#pragma once

#include <memory>
#include <utility>

#include "platform/portable/window_table.h"

namespace quillet {

// Owns the window of one part of a surface. The handle can be read after the window is gone.
class SurfaceWindow {
 public:
  explicit SurfaceWindow(std::shared_ptr<WindowTable> windows)
      : m_windows(std::move(windows)), m_handle(m_windows->Create()) {}
  SurfaceWindow(const SurfaceWindow&) = delete;
  SurfaceWindow& operator=(const SurfaceWindow&) = delete;
  ~SurfaceWindow() { Destroy(); }

  WindowHandle Handle() const noexcept { return m_handle; }
  void Destroy() { m_windows->Destroy(m_handle); }

 private:
  std::shared_ptr<WindowTable> m_windows;
  WindowHandle m_handle;
};

}  // namespace quillet
